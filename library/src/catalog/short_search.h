// Ranks a search for one or two letters from the blocks of short_hits.h, in exactly the order of FTS5.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "catalog/database.h"
#include "catalog/ranked.h"

namespace brindlehum {

// Which files count, indexed by id; ids beyond its size don't.
using FileSet = std::vector<bool>;

// The best `limit` files for a match expression. With `within`, returns only those files, but
// ranks them as if among all. None when the expression isn't one word of one or two letters, or when too many recent
// changes would make this slow. Call it in a read transaction.
Ranking rankShort(const Database& database, const std::string& expression, int limit,
                  const std::optional<FileSet>& within);

// True when the expression is one that rankShort can answer.
bool isShort(const Database& database, const std::string& expression);

}  // namespace brindlehum
