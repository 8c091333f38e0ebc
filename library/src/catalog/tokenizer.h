// Tokenizer: splits a text into the words that the full-text table indexes.
#pragma once

#include <sqlite3.h>

#include <string_view>

#include "catalog/database.h"

namespace brindlehum {

// Must not outlive its database; one thread at a time.
class Tokenizer {
public:
    // Throws Error (catalog) when this SQLite has no full-text search.
    explicit Tokenizer(const Database& database);
    ~Tokenizer();
    Tokenizer(const Tokenizer&) = delete;
    Tokenizer& operator=(const Tokenizer&) = delete;

    // Calls `use` with each word in UTF-8, in lower case and without diacritics.
    template <class Use>
    void eachWord(std::string_view text, Use use) {
        const auto give = [](void* context, int, const char* word, int length, int, int) {
            (*static_cast<Use*>(context))(std::string_view(word, size_t(length)));
            return SQLITE_OK;
        };
        tokenizer_.xTokenize(instance_, &use, FTS5_TOKENIZE_DOCUMENT, text.data(), int(text.size()), give);
    }

private:
    fts5_tokenizer tokenizer_ = {};
    Fts5Tokenizer* instance_ = nullptr;
};

}  // namespace brindlehum
