// Checks the tables of short_hits.h against FTS5's own ranking.
#pragma once

#include <atomic>

#include "catalog/database.h"

namespace brindlehum {

// Any thread.
class ShortCheck {
public:
    // True unless FTS5 ranked some of the rarest beginnings otherwise: another version of SQLite may do so, or another
    // program may have damaged the tables. Compares only until there was something to compare, which takes
    // milliseconds. Call it in a read transaction.
    bool passes(const Database& database);

private:
    enum class Result { unknown, equal, different };
    std::atomic<Result> result_ = Result::unknown;
};

}  // namespace brindlehum
