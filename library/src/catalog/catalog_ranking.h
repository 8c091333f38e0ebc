// The ranking of a search by shorter ways than the statement that defines it, to the same result.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "catalog/database.h"
#include "library/catalog/catalog.h"

namespace brindlehum {

// What a filter asks of a file besides its words, as SQL on the columns of `files f`; empty when nothing is asked.
struct Conditions {
    std::string sql;
    std::vector<std::string> texts;  // for its parameters, in order
};
Conditions conditionsOf(const Catalog::Filter& filter);

// The ids of the best `limit` files, best first. None where the statement has to say. Inside of a read transaction.
std::optional<std::vector<int64_t>> rankedIds(const Database& database, const Catalog::Filter& filter, int limit);

}  // namespace brindlehum
