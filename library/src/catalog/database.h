// Database: one SQLite connection. Statement: one prepared statement on it.
#pragma once

#include <sqlite3.h>

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "library/catalog/lock_wait.h"

namespace brindlehum {

// One thread at a time.
class Database {
public:
    enum class Access { readWrite, queryOnly };
    // Creates the file if it doesn't exist. Throws Error (catalogUnopenable). Waits up to `patience` for other
    // connections' locks.
    Database(const std::filesystem::path& file, Access access, std::chrono::milliseconds patience, LockWait wait = {});
    // Runs statements that return no rows. Throws CatalogLocked, or Error (catalog) with SQLite's message.
    void exec(const char* sql);
    void setPatience(std::chrono::milliseconds patience);
    void ignoreStop() { waiting_->wait.stop = {}; }  // from now on
    sqlite3* handle() const { return handle_.get(); }

private:
    struct Close {
        void operator()(sqlite3* handle) const { sqlite3_close_v2(handle); }
    };
    struct Waiting {
        std::chrono::milliseconds patience;
        LockWait wait;
        std::chrono::steady_clock::time_point since;  // when the first try met a lock
        bool told = false;
    };
    static int goOnWaiting(void* waiting, int tries);

    std::unique_ptr<Waiting> waiting_;  // never moves, since SQLite holds its address
    std::unique_ptr<sqlite3, Close> handle_;
};

// Doesn't throw: a failure ends the rows, and ok() returns false.
class Statement {
public:
    // If SQLite can't prepare it, ok() returns false.
    Statement(const Database& database, std::string_view sql);

    // Restarts with these values for the parameters, in order. Texts must stay valid until the last step.
    template <class... Values>
    Statement& bind(const Values&... values) {
        reset();
        int index = 0;
        (set(++index, values), ...);
        return *this;
    }
    void reset();
    void set(int index, std::string_view text);
    void set(int index, const std::string& text) { set(index, std::string_view(text)); }
    void set(int index, const std::optional<std::string>& text);  // none binds NULL
    void set(int index, int64_t value);
    void set(int index, int value) { set(index, int64_t(value)); }
    void set(int index, double value);
    void setBlob(int index, std::string_view bytes);
    void setPointer(int index, void* pointer, const char* type);

    bool step();  // true when there is a row to read
    // Runs all steps; false on a failure.
    bool run();
    bool ok() const { return result_ == SQLITE_OK || result_ == SQLITE_ROW || result_ == SQLITE_DONE; }

    // Columns of the current row, counted from 0. Views are valid until the next call. NULLs read as 0 or empty.
    int64_t integer(int column) const { return sqlite3_column_int64(statement_.get(), column); }
    double real(int column) const { return sqlite3_column_double(statement_.get(), column); }
    std::string_view text(int column) const;
    std::string_view blob(int column) const;

private:
    struct Finalize {
        void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
    };
    std::unique_ptr<sqlite3_stmt, Finalize> statement_;
    int result_ = SQLITE_OK;  // of the last step, or of preparing
};

}  // namespace brindlehum
