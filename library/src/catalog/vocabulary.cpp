// Vocabulary: looks up index words by their beginning and by their parts.
#include "catalog/vocabulary.h"

#include "base/error.h"
#include "catalog/tokenizer.h"

namespace brindlehum {

namespace {

constexpr int maxHolders = 64;
constexpr size_t fewestLetters = 3;  // shorter parts stand in too many words

size_t lettersIn(std::string_view word) {
    size_t letters = 0;
    for (const char c : word) { letters += (uint8_t(c) & 0xC0) != 0x80 ? 1 : 0; }
    return letters;
}

// The word as the index has it; empty when that splits it.
std::string indexed(Tokenizer& tokenizer, const std::string& text) {
    std::string only;
    int words = 0;
    tokenizer.eachWord(text, [&](std::string_view word) {
        ++words;
        only = word;
    });
    return words == 1 ? only : "";
}

bool beginsAWord(const Database& database, const std::string& part) {
    Statement select(database, "SELECT 1 FROM temp.words WHERE term >= ? AND term <= ? LIMIT 1");
    return select.bind(part, part + "\xF4\x8F\xBF\xBF").step() || !select.ok();
}

std::vector<std::string> wordsThatHold(const Database& database, const std::string& part) {
    Statement select(database, "SELECT term FROM temp.words WHERE instr(term, ?) > 0 LIMIT ?");
    std::vector<std::string> words;
    for (select.bind(part, maxHolders); select.step();) { words.emplace_back(select.text(0)); }
    return words;
}

}  // namespace

bool widenToParts(Database& database, SearchQuery& query) {
    // A connection for queries may not even make a temporary table.
    database.exec("PRAGMA query_only=0");
    database.exec("CREATE VIRTUAL TABLE IF NOT EXISTS temp.words USING fts5vocab(main, fts, row)");
    database.exec("PRAGMA query_only=1");
    Tokenizer tokenizer(database);
    bool changed = false;
    for (auto& group : query.wanted) {
        for (QueryTerm& term : group) {
            for (QueryWord& word : term.words) {
                const std::string part = word.isPhrase || !term.field.empty() ? "" : indexed(tokenizer, word.text);
                if (lettersIn(part) < fewestLetters || beginsAWord(database, part)) { continue; }
                word.holders = wordsThatHold(database, part);
                changed = changed || !word.holders.empty();
            }
        }
    }
    return changed;
}

}  // namespace brindlehum
