// Conditions: a filter as SQL, with the texts for its parameters.
#pragma once

#include <string>
#include <vector>

namespace brindlehum {

// On the columns of `files f`; empty when there are none.
struct Conditions {
    std::string sql;
    std::vector<std::string> texts;  // for its parameters, in order

    void add(const std::string& condition, const std::vector<std::string>& parameters = {}) {
        sql += (sql.empty() ? "" : " AND ") + condition;
        texts.insert(texts.end(), parameters.begin(), parameters.end());
    }
};

}  // namespace brindlehum
