// Catalog::Parts: the connections and counters behind the header.
#pragma once

#include <atomic>
#include <cstdint>
#include <filesystem>

#include "catalog/database.h"
#include "catalog/reader_pool.h"
#include "catalog/short_check.h"
#include "library/catalog/catalog.h"

namespace brindlehum {

// Brings the database's schema up to date. Throws Error (catalog).
void prepareCatalog(Database& database);

struct Catalog::Parts {
    Parts(const std::filesystem::path& file, LockWait wait);

    Database writer;  // under the catalog's lock
    Statement insertFile, deleteText, insertText, findStamp, findEdits, mergeEdit;
    static constexpr const char* findEditsText =
        "SELECT field, value, time, writer, embedded, unsent FROM edits WHERE path = ?";
    // `held` with the newer words of `edits` over it that the file doesn't hold.
    static SoundMeta over(Statement& findEdits, const std::string& path, SoundMeta held);
    // Full-text rows of the running transaction, written together at its end: between two upserts into `files`, FTS5
    // would flush what it has gathered and leave a tiny segment for each file.
    struct Text {
        int64_t id;
        std::string name, folders, body;
    };
    std::vector<Text> texts;
    std::string failure;  // SQLite's text for the transaction's first failed statement
    void writeTexts();
    void expect(bool done);  // records a failure of the last statement
    ReaderPool readers;
    ShortCheck shortCheck;
    std::atomic<uint64_t> interrupts = 0;  // a search ends when this changes after its start
};

}  // namespace brindlehum
