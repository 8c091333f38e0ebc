// Ranks a search faster than the statement that defines it, with the same result.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "catalog/database.h"
#include "library/catalog/catalog.h"

namespace brindlehum {

// A filter's conditions, apart from its words, as SQL on the columns of `files f`; empty when there are none.
struct Conditions {
    std::string sql;
    std::vector<std::string> texts;  // for its parameters, in order
};
Conditions conditionsOf(const Catalog::Filter& filter);

// The ids of the best `limit` files, best first. None if only the statement can answer. Use a read transaction.
std::optional<std::vector<int64_t>> rankedIds(const Database& database, const Catalog::Filter& filter, int limit);

}  // namespace brindlehum
