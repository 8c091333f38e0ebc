// Snapshot: one read transaction, so that all reads in it see the same state.
#pragma once

#include "catalog/database.h"

namespace brindlehum {

class Snapshot {
public:
    explicit Snapshot(Database& database) : handle_(database.handle()) { database.exec("BEGIN"); }
    ~Snapshot() { sqlite3_exec(handle_, "COMMIT", nullptr, nullptr, nullptr); }
    Snapshot(const Snapshot&) = delete;
    Snapshot& operator=(const Snapshot&) = delete;

private:
    sqlite3* handle_;
};

}  // namespace brindlehum
