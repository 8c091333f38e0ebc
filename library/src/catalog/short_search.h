// Ranks a search for one or two letters from the blocks of short_hits.h, in exactly the order that FTS5 would give.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "catalog/database.h"

namespace brindlehum {

// The files that count, by id; ids beyond its size don't.
using FileSet = std::vector<bool>;

// The ids of the best `limit` files for a match expression, best first; with `within` only of those, ranked as among
// all. None when the expression isn't one word of one or two letters, or too much has changed lately for this to be
// fast. Inside of a read transaction.
std::optional<std::vector<int64_t>> rankShort(const Database& database, const std::string& expression, int limit,
                                              const std::optional<FileSet>& within);

// True when the expression alone lets rankShort answer.
bool isShort(const Database& database, const std::string& expression);

}  // namespace brindlehum
