// ReaderPool: query connections to one database file, so that readers wait neither for each other nor for the writer.
#pragma once

#include <filesystem>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

#include "catalog/database.h"

namespace brindlehum {

// Any thread.
class ReaderPool {
public:
    explicit ReaderPool(std::filesystem::path file) : file_(std::move(file)) {}

    // A connection for one reader; the destructor returns it to the pool.
    class Lease {
    public:
        Lease(ReaderPool& pool, std::unique_ptr<Database> database) : pool_(pool), database_(std::move(database)) {}
        ~Lease();
        Lease(const Lease&) = delete;
        Lease& operator=(const Lease&) = delete;
        Database& operator*() const { return *database_; }

    private:
        ReaderPool& pool_;
        std::unique_ptr<Database> database_;
    };
    // Throws Error (catalogUnopenable, catalog) when it needs a further connection and can't open one.
    Lease lease();

private:
    void giveBack(std::unique_ptr<Database> database);

    const std::filesystem::path file_;
    std::mutex lock_;
    std::vector<std::unique_ptr<Database>> idle_;
};

}  // namespace brindlehum
