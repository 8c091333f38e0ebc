// Database and Statement: thin wrappers of SQLite's C interface.
#include "catalog/database.h"

#include <thread>
#include <utility>

#include "base/error.h"

namespace brindlehum {

namespace {

[[noreturn]] void cannotOpen() {
    throw Error(ErrorKind::catalogUnopenable, "Can't open the library catalog");
}

}  // namespace

Database::Database(const std::filesystem::path& file, Access access, std::chrono::milliseconds patience, LockWait wait)
    : waiting_(std::make_unique<Waiting>(Waiting{patience, std::move(wait), {}, false})) {
    sqlite3* handle = nullptr;
    const int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_FULLMUTEX;
    const int result = sqlite3_open_v2(file.c_str(), &handle, flags, nullptr);
    handle_.reset(handle);  // must be closed even if opening failed
    if (result != SQLITE_OK) { cannotOpen(); }
    sqlite3_busy_handler(handle, goOnWaiting, waiting_.get());
    if (access == Access::queryOnly) { exec("PRAGMA query_only=1"); }
}

void Database::setPatience(std::chrono::milliseconds patience) {
    waiting_->patience = patience;
}

// SQLite's own handler waits longer each time, so it hardly gets a turn beside a program that writes again and again.
int Database::goOnWaiting(void* context, int tries) {
    constexpr std::chrono::seconds isLong(2);
    Waiting& waiting = *static_cast<Waiting*>(context);
    const auto now = std::chrono::steady_clock::now();
    if (tries == 0) {
        waiting.since = now;
        waiting.told = false;
    }
    if (now - waiting.since >= waiting.patience || waiting.wait.stop.stop_requested()) { return 0; }
    if (now - waiting.since >= isLong && !std::exchange(waiting.told, true) && waiting.wait.onLong) {
        waiting.wait.onLong();
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
    return 1;
}

void Database::exec(const char* sql) {
    char* text = nullptr;
    if (sqlite3_exec(handle_.get(), sql, nullptr, nullptr, &text) == SQLITE_OK) { return; }
    const std::string message = text != nullptr ? text : "SQL error";
    sqlite3_free(text);
    if ((sqlite3_errcode(handle()) & 0xFF) == SQLITE_BUSY) { throw CatalogLocked(); }
    throw Error(ErrorKind::catalog, message);
}

Statement::Statement(const Database& database, std::string_view sql) {
    sqlite3_stmt* statement = nullptr;
    result_ = sqlite3_prepare_v2(database.handle(), sql.data(), int(sql.size()), &statement, nullptr);
    statement_.reset(statement);
}

void Statement::reset() {
    if (!statement_) { return; }  // ok() stays false
    sqlite3_reset(statement_.get());
    sqlite3_clear_bindings(statement_.get());
    result_ = SQLITE_OK;
}

void Statement::set(int index, std::string_view text) {
    // A null pointer would bind as NULL.
    const char* bytes = text.data() != nullptr ? text.data() : "";
    sqlite3_bind_text64(statement_.get(), index, bytes, text.size(), SQLITE_STATIC, SQLITE_UTF8);
}

void Statement::set(int index, const std::optional<std::string>& text) {
    if (text) { set(index, std::string_view(*text)); }
}

void Statement::set(int index, int64_t value) {
    sqlite3_bind_int64(statement_.get(), index, value);
}

void Statement::set(int index, double value) {
    sqlite3_bind_double(statement_.get(), index, value);
}

void Statement::setBlob(int index, std::string_view bytes) {
    sqlite3_bind_blob64(statement_.get(), index, bytes.data(), bytes.size(), SQLITE_STATIC);
}

void Statement::setPointer(int index, void* pointer, const char* type) {
    sqlite3_bind_pointer(statement_.get(), index, pointer, type, nullptr);
}

bool Statement::step() {
    if (!statement_ || !ok()) { return false; }
    result_ = sqlite3_step(statement_.get());
    return result_ == SQLITE_ROW;
}

bool Statement::run() {
    while (step()) {}
    return ok();
}

std::string_view Statement::text(int column) const {
    const auto* bytes = reinterpret_cast<const char*>(sqlite3_column_text(statement_.get(), column));
    return {bytes != nullptr ? bytes : "", size_t(sqlite3_column_bytes(statement_.get(), column))};
}

std::string_view Statement::blob(int column) const {
    const auto* bytes = static_cast<const char*>(sqlite3_column_blob(statement_.get(), column));
    return {bytes != nullptr ? bytes : "", size_t(sqlite3_column_bytes(statement_.get(), column))};
}

}  // namespace brindlehum
