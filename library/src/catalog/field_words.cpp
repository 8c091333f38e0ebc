// holds_words: compares the words of a field with those of a query, by the tokenizer of the full-text table.
#include "catalog/field_words.h"

#include <algorithm>
#include <string>
#include <vector>

#include "base/error.h"
#include "catalog/tokenizer.h"

namespace brindlehum {

namespace {

std::vector<std::string> split(Tokenizer& tokenizer, std::string_view text) {
    std::vector<std::string> words;
    tokenizer.eachWord(text, [&](std::string_view word) { words.emplace_back(word); });
    return words;
}

// True when `wanted` stands in `words`, one after another. The last may be longer there if it is a prefix.
bool holds(const std::vector<std::string>& words, const std::vector<std::string>& wanted, bool isPrefix) {
    const auto fits = [&](const std::string& word, const std::string& of) {
        return isPrefix && &of == &wanted.back() ? word.starts_with(of) : word == of;
    };
    return std::search(words.begin(), words.end(), wanted.begin(), wanted.end(), fits) != words.end();
}

struct Wanted {
    std::vector<std::string> words;
    bool isPrefix = false;
};

std::vector<Wanted> wantedIn(Tokenizer& tokenizer, std::string_view lines) {
    std::vector<Wanted> all;
    while (!lines.empty()) {
        const std::string_view line = lines.substr(0, lines.find('\n'));
        lines.remove_prefix(std::min(line.size() + 1, lines.size()));
        all.push_back({split(tokenizer, line.substr(1)), line[0] == '*'});
    }
    return all;
}

std::string_view textOf(sqlite3_value* value) {
    const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(value));
    return text == nullptr ? std::string_view() : std::string_view(text, size_t(sqlite3_value_bytes(value)));
}

void call(sqlite3_context* context, int, sqlite3_value** values) {
    auto& tokenizer = *static_cast<Tokenizer*>(sqlite3_user_data(context));
    try {
        // The query is the same for every row of a search, and SQLite keeps what was made of it.
        const auto* query = static_cast<const std::vector<Wanted>*>(sqlite3_get_auxdata(context, 1));
        std::unique_ptr<std::vector<Wanted>> made;
        if (query == nullptr) {
            made = std::make_unique<std::vector<Wanted>>(wantedIn(tokenizer, textOf(values[1])));
            query = made.get();
        }
        const std::vector<std::string> words = split(tokenizer, textOf(values[0]));
        const bool all =
            std::ranges::all_of(*query, [&](const Wanted& one) { return holds(words, one.words, one.isPrefix); });
        sqlite3_result_int(context, all ? 1 : 0);
        const auto forget = [](void* owned) { delete static_cast<std::vector<Wanted>*>(owned); };
        if (made) { sqlite3_set_auxdata(context, 1, made.release(), forget); }
    } catch (const std::bad_alloc&) { sqlite3_result_error_nomem(context); }
}

}  // namespace

void defineHoldsWords(Database& database) {
    auto tokenizer = std::make_unique<Tokenizer>(database);
    const auto forget = [](void* owned) { delete static_cast<Tokenizer*>(owned); };
    // SQLite owns the tokenizer from here on, and frees it on a failure, too.
    const int result =
        sqlite3_create_function_v2(database.handle(), "holds_words", 2, SQLITE_UTF8 | SQLITE_DETERMINISTIC,
                                   tokenizer.release(), call, nullptr, nullptr, forget);
    if (result != SQLITE_OK) { throw Error(ErrorKind::catalog, sqlite3_errmsg(database.handle())); }
}

}  // namespace brindlehum
