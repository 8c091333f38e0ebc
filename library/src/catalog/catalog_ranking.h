// Ranks a search faster than the statement that defines it, with the same result.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "catalog/database.h"
#include "library/catalog/catalog.h"

namespace brindlehum {

// The conditions of a filter besides its words, as SQL on the columns of `files f`; empty when there are none.
struct Conditions {
    std::string sql;
    std::vector<std::string> texts;  // for its parameters, in order
};
Conditions conditionsOf(const Catalog::Filter& filter);

// The ids of the best `limit` files, best first. None when only the statement can answer. In a read transaction.
std::optional<std::vector<int64_t>> rankedIds(const Database& database, const Catalog::Filter& filter, int limit);

}  // namespace brindlehum
