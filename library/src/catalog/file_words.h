// The words of recently changed files, read straight from the full-text table.
#pragma once

#include <algorithm>
#include <string_view>
#include <unordered_map>

#include "catalog/database.h"
#include "catalog/short_hits.h"
#include "catalog/tokenizer.h"

namespace brindlehum {

// Calls `use(id, words, hits)`, in rising order, for each changed file with an id in [first, last] and a full-text row:
// `words` is the number of its words, `hits` maps each beginning of one or two letters to its weighted count.
template <class Use>
bool eachChangedFile(const Database& database, Tokenizer& tokenizer, int64_t first, int64_t last, Use use) {
    Statement select(database,
                     "SELECT c.id, c.c0, c.c1, c.c2 FROM short_changed s JOIN fts_content c ON c.id = s.id "
                     "WHERE s.id BETWEEN ? AND ? ORDER BY s.id");
    select.bind(first, last);
    std::unordered_map<Letters, uint32_t> hits;
    while (select.step()) {
        uint32_t words = 0;
        hits.clear();
        for (int column = 0; column < 3; ++column) {
            tokenizer.eachWord(select.text(column + 1), [&](std::string_view word) {
                const Beginning letters = beginning(word);
                ++words;
                if (letters.one != 0) { hits[letters.one] += columnWeights[column]; }
                if (letters.two != 0) { hits[letters.two] += columnWeights[column]; }
            });
        }
        use(select.integer(0), words, hits);
    }
    return select.ok();
}

}  // namespace brindlehum
