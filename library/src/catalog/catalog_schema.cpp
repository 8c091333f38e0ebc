// The catalog's tables.
#include <chrono>
#include <filesystem>
#include <string>

#include "base/error.h"
#include "catalog/catalog_parts.h"
#include "library/catalog/field_edit.h"
#include "library/meta/meta_io.h"
#include "meta/meta_codec.h"

namespace brindlehum {

namespace {

// The `user_version` of a catalog. 1 has `ownTables`; 2 has `edits`, too. A higher one comes from a newer program.
constexpr int knownVersion = 2;

constexpr const char* pragmas[] = {
    "PRAGMA journal_mode=WAL;",
    "PRAGMA synchronous=NORMAL;",
};

constexpr const char* schema[] = {
    "CREATE TABLE IF NOT EXISTS files (id INTEGER PRIMARY KEY, path TEXT UNIQUE NOT NULL, root TEXT NOT NULL, "
    "size INTEGER, mtime REAL, duration REAL, sr REAL, channels INTEGER, bits INTEGER, codec TEXT, "
    "meta TEXT NOT NULL, category TEXT, library TEXT, rating INTEGER DEFAULT 0, indexed REAL);",
    "CREATE INDEX IF NOT EXISTS files_root ON files(root);",
    "CREATE INDEX IF NOT EXISTS files_category ON files(category);",
    "CREATE INDEX IF NOT EXISTS files_library ON files(library);",
    ("CREATE VIRTUAL TABLE IF NOT EXISTS fts USING fts5(name, folders, body, "
     "tokenize='unicode61 remove_diacritics 2');"),
    "CREATE TABLE IF NOT EXISTS log_offsets (logfile TEXT PRIMARY KEY, offset INTEGER NOT NULL);",
    // CatalogEdits; times in microseconds since 1970.
    "CREATE TABLE IF NOT EXISTS edits (path TEXT NOT NULL, field TEXT NOT NULL, root TEXT NOT NULL, "
    "value TEXT NOT NULL, time INTEGER NOT NULL, writer TEXT NOT NULL, embedded INTEGER NOT NULL, "
    "unsent INTEGER NOT NULL, PRIMARY KEY (path, field)) WITHOUT ROWID;",
    "CREATE INDEX IF NOT EXISTS edits_unsent ON edits(root) WHERE unsent;",
    "CREATE TABLE IF NOT EXISTS moves (source TEXT NOT NULL, time INTEGER NOT NULL, target TEXT NOT NULL, "
    "root TEXT NOT NULL, unsent INTEGER NOT NULL, PRIMARY KEY (source, time, target)) WITHOUT ROWID;",
};

// Reads a page of each table: a damaged root page must fail now, not give empty results later.
constexpr const char* look[] = {
    "SELECT count(*) FROM (SELECT id FROM files LIMIT 1)",
    "SELECT count(*) FROM (SELECT rowid FROM fts LIMIT 1)",
    "SELECT count(*) FROM (SELECT logfile FROM log_offsets LIMIT 1)",
    "SELECT count(*) FROM (SELECT path FROM edits LIMIT 1)",
    "SELECT count(*) FROM (SELECT source FROM moves LIMIT 1)",
};

// Extra tables for fast answers: the number of files by root, category and library ('' for none, else '=' and the
// name), and which files hold words that begin with given letters (short_hits.h). Triggers keep them true whichever
// program writes to `files`; they use ON CONFLICT, since an OR IGNORE in a trigger gives way to the statement that
// fires it. All of them can be rebuilt from `files` and `fts`.
constexpr const char* ownTables[] = {
    "CREATE TABLE file_counts (root TEXT NOT NULL, category TEXT NOT NULL, library TEXT NOT NULL, "
    "files INTEGER NOT NULL, PRIMARY KEY (root, category, library)) WITHOUT ROWID",
    "INSERT INTO file_counts SELECT root, ifnull('=' || category, ''), ifnull('=' || library, ''), count(*) "
    "FROM files GROUP BY 1, 2, 3",
    "CREATE TABLE short_hits (id INTEGER PRIMARY KEY, hits BLOB NOT NULL)",
    "CREATE TABLE short_changed (id INTEGER PRIMARY KEY)",
    "INSERT INTO short_changed SELECT id FROM files",
    "CREATE TRIGGER file_added AFTER INSERT ON files BEGIN "
    "INSERT INTO file_counts VALUES (NEW.root, ifnull('=' || NEW.category, ''), ifnull('=' || NEW.library, ''), 1) "
    "ON CONFLICT DO UPDATE SET files = files + 1; "
    "INSERT INTO short_changed VALUES (NEW.id) ON CONFLICT DO NOTHING; END",
    "CREATE TRIGGER file_removed AFTER DELETE ON files BEGIN "
    "UPDATE file_counts SET files = files - 1 WHERE root = OLD.root AND category = ifnull('=' || OLD.category, '') "
    "AND library = ifnull('=' || OLD.library, ''); "
    "DELETE FROM file_counts WHERE files = 0 AND root = OLD.root AND category = ifnull('=' || OLD.category, '') "
    "AND library = ifnull('=' || OLD.library, ''); "
    "INSERT INTO short_changed VALUES (OLD.id) ON CONFLICT DO NOTHING; END",
    "CREATE TRIGGER file_changed AFTER UPDATE ON files BEGIN "
    "INSERT INTO short_changed VALUES (NEW.id), (OLD.id) ON CONFLICT DO NOTHING; END",
    "CREATE TRIGGER file_moved AFTER UPDATE OF root, category, library ON files "
    "WHEN OLD.root IS NOT NEW.root OR OLD.category IS NOT NEW.category OR OLD.library IS NOT NEW.library BEGIN "
    "UPDATE file_counts SET files = files - 1 WHERE root = OLD.root AND category = ifnull('=' || OLD.category, '') "
    "AND library = ifnull('=' || OLD.library, ''); "
    "DELETE FROM file_counts WHERE files = 0 AND root = OLD.root AND category = ifnull('=' || OLD.category, '') "
    "AND library = ifnull('=' || OLD.library, ''); "
    "INSERT INTO file_counts VALUES (NEW.root, ifnull('=' || NEW.category, ''), ifnull('=' || NEW.library, ''), 1) "
    "ON CONFLICT DO UPDATE SET files = files + 1; END",
};

int64_t version(const Database& database) {
    Statement select(database, "PRAGMA user_version");
    return select.step() ? select.integer(0) : 0;
}

// Words that only a row has would end with the next change of its file. They become edits, older than any that a log
// holds. A fresh name of a file isn't such a word.
void keepWordsOfRows(Database& database) {
    Statement select(database, "SELECT path, root, meta FROM files");
    Statement insert(database, "INSERT INTO edits VALUES (?, ?, ?, ?, 0, '', 0, 0) ON CONFLICT DO NOTHING");
    while (select.step()) {
        const std::string path(select.text(0));
        if (MetaIO::canWrite(path)) { continue; }
        SoundMeta meta = decodeMeta(select.text(2));
        if (meta.fxName == std::filesystem::path(path).stem()) { meta.fxName.clear(); }
        for (const SoundMeta::Tag& tag : SoundMeta::ixmlTags) {
            const std::string& value = meta.*tag.field;
            if (!value.empty()) { insert.bind(path, tag.name, select.text(1), value).run(); }
        }
        const std::string rating = std::to_string(meta.rating);
        if (meta.rating != 0) { insert.bind(path, FieldEdit::rating, select.text(1), rating).run(); }
    }
    if (!select.ok() || !insert.ok()) { throw Error(ErrorKind::catalog, sqlite3_errmsg(database.handle())); }
}

// Version 1 wrote what a log told into rows without reading their files, in the order of the logs' names. So the logs
// are read again from their starts, and the files of roots that have others' logs are, too.
void makeEdits(Database& database) {
    keepWordsOfRows(database);
    database.exec(
        "UPDATE files SET mtime = 0 WHERE root IN (SELECT DISTINCT "
        "substr(logfile, 1, instr(logfile, '/.brindlehum/changes/') - 1) FROM log_offsets)");
    database.exec("DELETE FROM log_offsets");
}

// Uses one transaction, so that a program beside a busy one needs to wait for its turn only once. That may take long.
void makeTables(Database& database) {
    database.setPatience(std::chrono::seconds(20));
    database.exec("BEGIN IMMEDIATE");
    for (const char* statement : schema) { database.exec(statement); }
    // Another program may have made these tables meanwhile.
    const int64_t before = version(database);
    if (before < 1) {
        for (const char* statement : ownTables) { database.exec(statement); }
    }
    if (before < 2) { makeEdits(database); }
    database.exec("PRAGMA user_version=2");
    database.exec("COMMIT");
}

}  // namespace

void prepareCatalog(Database& database) {
    if (version(database) > knownVersion) {
        throw Error(ErrorKind::catalog, "The library catalog was made by a newer version");
    }
    for (const char* pragma : pragmas) { database.exec(pragma); }
    // SQLite opens a write-protected file read-only, and the schema of a finished catalog writes nothing.
    if (sqlite3_db_readonly(database.handle(), "main") != 0) {
        throw Error(ErrorKind::catalog, "attempt to write a readonly database");
    }
    if (version(database) != knownVersion) { makeTables(database); }
    for (const char* statement : schema) { database.exec(statement); }
    for (const char* statement : look) { database.exec(statement); }
}

}  // namespace brindlehum
