// Database: one SQLite connection, and Statement: one prepared statement of it.
#pragma once

#include <sqlite3.h>

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace brindlehum {

// One thread at a time.
class Database {
public:
    enum class Access { readWrite, queryOnly };
    // Creates the file if it isn't there. Throws Error (catalogUnopenable). Waits for other connections' locks as long
    // as `patience`.
    Database(const std::filesystem::path& file, Access access, std::chrono::milliseconds patience);
    // Runs statements that give no rows. Throws Error (catalog) with SQLite's message.
    void exec(const char* sql);
    void setPatience(std::chrono::milliseconds patience);
    sqlite3* handle() const { return handle_.get(); }

private:
    struct Close {
        void operator()(sqlite3* handle) const { sqlite3_close_v2(handle); }
    };
    struct Waiting {
        std::chrono::milliseconds patience;
        std::chrono::steady_clock::time_point since;  // the first try that met a lock
    };
    static int goOnWaiting(void* waiting, int tries);

    std::unique_ptr<Waiting> waiting_;  // never moves, since SQLite holds its address
    std::unique_ptr<sqlite3, Close> handle_;
};

// A failure isn't thrown: it ends the rows, and ok() is false.
class Statement {
public:
    // Not ok() when SQLite can't prepare it.
    Statement(const Database& database, std::string_view sql);

    // Starts anew with these values for the parameters, in order. Texts must stay until the last step.
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
    void set(int index, const std::optional<std::string>& text);  // none: NULL
    void set(int index, int64_t value);
    void set(int index, int value) { set(index, int64_t(value)); }
    void set(int index, double value);
    void setBlob(int index, std::string_view bytes);
    void setPointer(int index, void* pointer, const char* type);

    bool step();  // true when a row is there to read
    // Steps to the end; false on a failure.
    bool run();
    bool ok() const { return result_ == SQLITE_OK || result_ == SQLITE_ROW || result_ == SQLITE_DONE; }

    // Columns from 0, of the row of the last step; views hold until the next call. NULLs read as 0 or empty.
    int64_t integer(int column) const { return sqlite3_column_int64(statement_.get(), column); }
    double real(int column) const { return sqlite3_column_double(statement_.get(), column); }
    std::string_view text(int column) const;
    std::string_view blob(int column) const;

private:
    struct Finalize {
        void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
    };
    std::unique_ptr<sqlite3_stmt, Finalize> statement_;
    int result_ = SQLITE_OK;  // of preparing, else of the last step
};

}  // namespace brindlehum
