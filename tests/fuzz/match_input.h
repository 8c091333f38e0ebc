// Any typed text, as a full-text query against a real table: shared by the fuzzer and the replay of its corpus.
#pragma once

#include <sqlite3.h>

#include <filesystem>
#include <string>

#include "fuzz/require.h"
#include "library/catalog/catalog.h"
#include "support/audio_files.h"

namespace brindlehum::test {

inline sqlite3_stmt* matchStatement() {
    sqlite3* database = nullptr;
    sqlite3_stmt* select = nullptr;
    sqlite3_open(":memory:", &database);
    sqlite3_exec(database,
                 "CREATE VIRTUAL TABLE fts USING fts5(name, folders, body, tokenize='unicode61 remove_diacritics 2');"
                 "INSERT INTO fts VALUES ('door slam', 'wood', 'heavy door'), ('rain', '', 'b'), ('a b c', 'd', 'e')",
                 nullptr, nullptr, nullptr);
    sqlite3_prepare_v2(database, "SELECT rowid FROM fts WHERE fts MATCH ? ORDER BY bm25(fts, 4.0, 1.0, 2.0)", -1,
                       &select, nullptr);
    return select;
}

inline void matchBytes(const std::string& query, const std::filesystem::path&) {
    static sqlite3_stmt* const select = matchStatement();
    const std::optional<std::string> expression = Catalog::matchExpression(query);
    if (!expression) { return; }
    sqlite3_bind_text64(select, 1, expression->data(), expression->size(), SQLITE_STATIC, SQLITE_UTF8);
    int result = SQLITE_ROW;
    while (result == SQLITE_ROW) { result = sqlite3_step(select); }
    sqlite3_reset(select);
    require(result == SQLITE_DONE, "an expression that FTS5 accepts");
}

}  // namespace brindlehum::test
