// The catalog's tables searched and written by SQLite's plain statements, to compare the catalog with.
#pragma once

#include <sqlite3.h>

#include <cstdlib>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "corpus.h"
#include "library/catalog/catalog.h"

namespace brindlehum::bench {

// The first rows of the ranking by the plain statement, stepped through with every column at hand.
class PlainSearch {
public:
    PlainSearch(const std::filesystem::path& file, int limit) : limit_(limit) {
        sqlite3_open_v2(file.c_str(), &database_, SQLITE_OPEN_READWRITE | SQLITE_OPEN_FULLMUTEX, nullptr);
    }
    ~PlainSearch() { sqlite3_close(database_); }
    PlainSearch(const PlainSearch&) = delete;
    PlainSearch& operator=(const PlainSearch&) = delete;

    std::vector<std::string> paths(const Catalog::Filter& filter) {
        std::string sql =
            "SELECT f.path, f.root, f.duration, f.sr, f.channels, f.bits, f.codec, f.meta FROM files f "
            "JOIN fts ON fts.rowid = f.id WHERE fts MATCH ?1";
        if (filter.category) { sql += " AND f.category = '" + *filter.category + "'"; }
        for (size_t i = 0; i < filter.roots.size(); ++i) {
            sql += (i == 0 ? " AND f.root IN ('" : "','") + filter.roots[i];
        }
        if (!filter.roots.empty()) { sql += "')"; }
        sql += " ORDER BY bm25(fts, 4.0, 1.0, 2.0) LIMIT " + std::to_string(limit_);
        sqlite3_stmt* select = nullptr;
        sqlite3_prepare_v2(database_, sql.c_str(), -1, &select, nullptr);
        const std::string match = Catalog::matchExpression(filter.query).value();
        sqlite3_bind_text(select, 1, match.c_str(), -1, SQLITE_STATIC);
        std::vector<std::string> paths;
        while (sqlite3_step(select) == SQLITE_ROW) {
            paths.emplace_back(reinterpret_cast<const char*>(sqlite3_column_text(select, 0)));
            for (int column = 1; column < 8; ++column) {
                if (sqlite3_column_text(select, column) == nullptr) { std::abort(); }
            }
        }
        sqlite3_finalize(select);
        return paths;
    }

private:
    sqlite3* database_ = nullptr;
    const int limit_;
};

// The plain statements in their plain order, with no tables of the catalog's own beside.
class PlainWriter {
public:
    explicit PlainWriter(const std::filesystem::path& file) {
        { const Catalog catalog(file); }
        sqlite3_open(file.c_str(), &database_);
        for (const char* sql : {"PRAGMA synchronous=NORMAL", "DROP TRIGGER file_added", "DROP TRIGGER file_removed",
                                "DROP TRIGGER file_changed", "DROP TRIGGER file_moved"}) {
            exec(sql);
        }
        insert_ = prepare(
            "INSERT INTO files (path, root, meta, category, library, size, mtime, duration, sr, channels, bits, codec, "
            "rating, indexed) VALUES (?,?,?,?,?,1,1,1,48000,2,24,'PCM',0,1) ON CONFLICT(path) DO UPDATE SET "
            "meta=excluded.meta RETURNING id");
        remove_ = prepare("DELETE FROM fts WHERE rowid = ?1");
        text_ = prepare("INSERT INTO fts (rowid, name, folders, body) VALUES (?,?,?,?)");
    }
    ~PlainWriter() {
        for (sqlite3_stmt* statement : {insert_, remove_, text_}) { sqlite3_finalize(statement); }
        sqlite3_close(database_);
    }
    PlainWriter(const PlainWriter&) = delete;
    PlainWriter& operator=(const PlainWriter&) = delete;

    void write(const std::vector<Corpus::File>& files) {
        exec("BEGIN");
        for (const auto& file : files) {
            const std::filesystem::path path = file.path;
            const std::string json = nlohmann::json(file.meta).dump(), body = file.meta.searchText();
            run(insert_, {file.path, file.root, json, file.meta.category, file.meta.library}, 0);
            const int64_t id = sqlite3_last_insert_rowid(database_);
            run(remove_, {}, id);
            run(text_, {path.stem(), path.parent_path().string().substr(file.root.size()), body}, id);
        }
        exec("COMMIT");
    }

private:
    void exec(const char* sql) {
        if (sqlite3_exec(database_, sql, nullptr, nullptr, nullptr) != SQLITE_OK) { std::abort(); }
    }
    sqlite3_stmt* prepare(const char* sql) {
        sqlite3_stmt* statement = nullptr;
        if (sqlite3_prepare_v2(database_, sql, -1, &statement, nullptr) != SQLITE_OK) { std::abort(); }
        return statement;
    }
    // An id goes before the texts.
    static void run(sqlite3_stmt* statement, const std::vector<std::string>& texts, int64_t id) {
        int index = 0;
        if (id != 0) { sqlite3_bind_int64(statement, ++index, id); }
        for (const std::string& text : texts) {
            sqlite3_bind_text(statement, ++index, text.c_str(), -1, SQLITE_TRANSIENT);
        }
        int result = SQLITE_ROW;
        while (result == SQLITE_ROW) { result = sqlite3_step(statement); }
        if (result != SQLITE_DONE) { std::abort(); }
        sqlite3_reset(statement);
    }

    sqlite3* database_ = nullptr;
    sqlite3_stmt *insert_ = nullptr, *remove_ = nullptr, *text_ = nullptr;
};

}  // namespace brindlehum::bench
