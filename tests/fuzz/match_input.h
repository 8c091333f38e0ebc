// Any typed text, as a full-text query against a real table: shared by the fuzzer and the replay of its corpus.
#pragma once

#include <sqlite3.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

#include "library/catalog/catalog.h"

namespace brindlehum::test {

// Ends the program when an expression is refused.
class MatchProbe {
public:
    MatchProbe() {
        sqlite3_open(":memory:", &database_);
        exec("CREATE VIRTUAL TABLE fts USING fts5(name, folders, body, tokenize='unicode61 remove_diacritics 2')");
        exec("INSERT INTO fts VALUES ('door slam', 'wood', 'heavy door'), ('rain', '', 'b'), ('a b c', 'd', 'e')");
        sqlite3_prepare_v2(database_, "SELECT rowid FROM fts WHERE fts MATCH ? ORDER BY bm25(fts, 4.0, 1.0, 2.0)", -1,
                           &select_, nullptr);
    }
    ~MatchProbe() {
        sqlite3_finalize(select_);
        sqlite3_close(database_);
    }
    MatchProbe(const MatchProbe&) = delete;
    MatchProbe& operator=(const MatchProbe&) = delete;

    void look(std::string_view query) {
        const std::optional<std::string> expression = Catalog::matchExpression(query);
        if (!expression) { return; }
        sqlite3_bind_text64(select_, 1, expression->data(), expression->size(), SQLITE_STATIC, SQLITE_UTF8);
        int result = SQLITE_ROW;
        while (result == SQLITE_ROW) { result = sqlite3_step(select_); }
        sqlite3_reset(select_);
        if (result == SQLITE_DONE) { return; }
        std::fprintf(stderr, "refused: %s\n%s\n", expression->c_str(), sqlite3_errmsg(database_));
        std::abort();
    }
    void lookAtFile(const std::filesystem::path& file) {
        std::ifstream stream(file, std::ios::binary);
        look(std::string{std::istreambuf_iterator<char>(stream), {}});
    }

private:
    void exec(const char* sql) {
        if (sqlite3_exec(database_, sql, nullptr, nullptr, nullptr) != SQLITE_OK) { std::abort(); }
    }

    sqlite3* database_ = nullptr;
    sqlite3_stmt* select_ = nullptr;
};

}  // namespace brindlehum::test
