// The catalog's tables.
#include <string>

#include "audio/error.h"
#include "catalog_parts.h"

namespace brindlehum {

namespace {

// Of the tables that are ours beside the ones below. A catalog that tells more comes from a newer version.
constexpr int knownVersion = 1;

constexpr const char* schema[] = {
    "PRAGMA journal_mode=WAL;",
    "PRAGMA synchronous=NORMAL;",
    "CREATE TABLE IF NOT EXISTS files (id INTEGER PRIMARY KEY, path TEXT UNIQUE NOT NULL, root TEXT NOT NULL, "
    "size INTEGER, mtime REAL, duration REAL, sr REAL, channels INTEGER, bits INTEGER, codec TEXT, "
    "meta TEXT NOT NULL, category TEXT, library TEXT, rating INTEGER DEFAULT 0, indexed REAL);",
    "CREATE INDEX IF NOT EXISTS files_root ON files(root);",
    "CREATE INDEX IF NOT EXISTS files_category ON files(category);",
    "CREATE INDEX IF NOT EXISTS files_library ON files(library);",
    ("CREATE VIRTUAL TABLE IF NOT EXISTS fts USING fts5(name, folders, body, "
     "tokenize='unicode61 remove_diacritics 2');"),
    "CREATE TABLE IF NOT EXISTS log_offsets (logfile TEXT PRIMARY KEY, offset INTEGER NOT NULL);",
};

// Reads a page of each of the tables, so that what is damaged at its root is told now and not as an empty result.
constexpr const char* look[] = {
    "SELECT count(*) FROM (SELECT id FROM files LIMIT 1)",
    "SELECT count(*) FROM (SELECT rowid FROM fts LIMIT 1)",
    "SELECT count(*) FROM (SELECT logfile FROM log_offsets LIMIT 1)",
};

void refuseNewer(Database& database) {
    Statement version(database, "PRAGMA user_version");
    if (version.step() && version.integer(0) > knownVersion) {
        throw Error(81, "The library catalog was made by a newer version");
    }
}

}  // namespace

void prepareCatalog(Database& database) {
    refuseNewer(database);
    for (const char* statement : schema) database.exec(statement);
    for (const char* statement : look) database.exec(statement);
    // SQLite opens what it may not write for reading alone, and the schema of a finished catalog writes nothing.
    if (sqlite3_db_readonly(database.handle(), "main") != 0) throw Error(81, "attempt to write a readonly database");
}

}  // namespace brindlehum
