// A catalog in a folder of its own, and the same file seen through SQLite alone.
#pragma once

#include <sqlite3.h>

#include "library/catalog/catalog.h"
#include "support/audio_files.h"

namespace brindlehum::test {

// Another program at the database, without any code of the catalog.
class PlainDatabase {
public:
    explicit PlainDatabase(const std::filesystem::path& file) {
        if (sqlite3_open(file.c_str(), &database_) != SQLITE_OK) {
            throw std::runtime_error(sqlite3_errmsg(database_));
        }
    }
    ~PlainDatabase() { sqlite3_close(database_); }
    PlainDatabase(const PlainDatabase&) = delete;
    PlainDatabase& operator=(const PlainDatabase&) = delete;

    // The rows of a statement, columns joined by '|'; NULL reads as "NULL".
    std::vector<std::string> rows(const std::string& sql, const std::vector<std::string>& texts = {}) {
        sqlite3_stmt* select = nullptr;
        if (sqlite3_prepare_v2(database_, sql.c_str(), -1, &select, nullptr) != SQLITE_OK) {
            throw std::runtime_error(sql + ": " + sqlite3_errmsg(database_));
        }
        for (size_t i = 0; i < texts.size(); ++i) {
            sqlite3_bind_text(select, int(i) + 1, texts[i].c_str(), -1, SQLITE_STATIC);
        }
        std::vector<std::string> all;
        int result = sqlite3_step(select);
        for (; result == SQLITE_ROW; result = sqlite3_step(select)) {
            std::string& row = all.emplace_back();
            for (int column = 0; column < sqlite3_column_count(select); ++column) {
                const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(select, column));
                row.append(column == 0 ? "" : "|").append(text != nullptr ? text : "NULL");
            }
        }
        sqlite3_finalize(select);
        if (result != SQLITE_DONE) { throw std::runtime_error(sql + ": " + sqlite3_errmsg(database_)); }
        return all;
    }
    void exec(const std::string& sql) { rows(sql); }

private:
    sqlite3* database_ = nullptr;
};

class CatalogTest : public testing::Test {
protected:
    // In a transaction of its own.
    static void put(Catalog& catalog, const std::string& path, const std::string& root, const SoundMeta& meta = {},
                    const std::optional<AudioFileInfo>& info = {}) {
        catalog.write([&] { catalog.upsert(path, root, {10, 1.5}, info, meta); });
    }

    const TempFolder temp;
    const std::filesystem::path folder = temp.path();
    const std::filesystem::path file = folder / "made by the way" / "Catalog.sqlite";
};

inline std::vector<std::string> paths(const std::vector<Catalog::Row>& rows) {
    std::vector<std::string> all;
    for (const Catalog::Row& row : rows) { all.push_back(row.path); }
    return all;
}

}  // namespace brindlehum::test
