// Ranked: a file found, with its rank.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "catalog/database.h"

namespace brindlehum {

struct Ranked {
    double rank = 0;  // by FTS5's bm25(); lower is better
    int64_t id = 0;
    auto operator<=>(const Ranked&) const = default;
};

// The best first, equal ranks by id; none if a read failed or only the whole statement can answer.
using Ranking = std::optional<std::vector<Ranked>>;

// The best `limit` files by FTS5 itself. It ranks ids alone, so that SQLite needn't sort whole rows.
Ranking rankByEngine(const Database& database, const std::string& expression, int limit);

}  // namespace brindlehum
