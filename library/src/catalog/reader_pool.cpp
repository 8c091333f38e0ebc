// ReaderPool: keeps a few idle connections, and opens more when all are in use.
#include "catalog/reader_pool.h"

#include <chrono>

#include "catalog/field_words.h"

namespace brindlehum {

namespace {

constexpr size_t maxIdle = 3;
// Readers of a write-ahead log wait only while another process recovers it.
constexpr std::chrono::seconds patience(5);

}  // namespace

ReaderPool::Lease::~Lease() {
    pool_.giveBack(std::move(database_));
}

ReaderPool::Lease ReaderPool::lease() {
    std::unique_ptr<Database> database;
    {
        const std::lock_guard hold(lock_);
        if (!idle_.empty()) {
            database = std::move(idle_.back());
            idle_.pop_back();
        }
    }
    if (!database) {
        database = std::make_unique<Database>(file_, Database::Access::queryOnly, patience);
        defineHoldsWords(*database);
    }
    return {*this, std::move(database)};
}

void ReaderPool::giveBack(std::unique_ptr<Database> database) {
    const std::lock_guard hold(lock_);
    if (idle_.size() < maxIdle) { idle_.push_back(std::move(database)); }
}

}  // namespace brindlehum
