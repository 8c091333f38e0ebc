// What a Catalog is made of behind its header.
#pragma once

#include <atomic>
#include <cstdint>
#include <filesystem>

#include "database.h"
#include "library/catalog.h"
#include "reader_pool.h"

namespace brindlehum {

// Brings the database into shape. Throws Error 81.
void prepareCatalog(Database& database);

struct Catalog::Parts {
    explicit Parts(const std::filesystem::path& file);

    Database writer;  // under the catalog's lock
    Statement insertFile, deleteText, insertText, findStamp;
    bool failed = false;  // a statement of the transaction that runs
    ReaderPool readers;
    std::atomic<uint64_t> interrupts = 0;  // a search gives up when this is no longer what it began with
};

}  // namespace brindlehum
