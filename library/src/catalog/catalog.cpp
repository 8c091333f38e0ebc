// Catalog: opening, transactions and look-ups by key.
#include "library/catalog/catalog.h"

#include <chrono>
#include <thread>

#include "base/error.h"
#include "base/number_text.h"
#include "catalog/catalog_parts.h"
#include "catalog/catalog_rows.h"
#include "catalog/short_settle.h"

namespace brindlehum {

namespace {

// How long to wait for another process's lock: short at the start, where the user waits; long for a batch of writes.
constexpr std::chrono::milliseconds openingPatience(2000);
constexpr std::chrono::seconds writingPatience(30);

// Up to so many changed files may wait; with more, each write also settles some of their blocks.
constexpr int64_t settleFrom = 1024;
constexpr int blocksAWrite = 8;

// Runs `read` with a connection for queries; returns an empty value on a failure.
template <class Value, class Read>
Value reading(ReaderPool& readers, Read read) {
    try {
        const ReaderPool::Lease lease = readers.lease();
        return read(*lease);
    } catch (const Error&) { return Value(); }
}

const std::filesystem::path& withFolders(const std::filesystem::path& file) {
    if (file.has_parent_path()) { std::filesystem::create_directories(file.parent_path()); }
    return file;
}

// Retries: if two programs switch a new file to a write-ahead log at once, SQLite refuses one without waiting.
void prepareInTime(Database& database) {
    const auto deadline = std::chrono::steady_clock::now() + openingPatience;
    for (;;) {
        try {
            return prepareCatalog(database);
        } catch (const Error&) {
            const bool busy = (sqlite3_errcode(database.handle()) & 0xFF) == SQLITE_BUSY;
            if (sqlite3_get_autocommit(database.handle()) == 0) { database.exec("ROLLBACK"); }
            if (!busy || std::chrono::steady_clock::now() > deadline) { throw; }
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
}

Database preparedDatabase(const std::filesystem::path& file, LockWait wait) {
    Database database(withFolders(file), Database::Access::readWrite, openingPatience / 2, std::move(wait));
    prepareInTime(database);
    database.setPatience(writingPatience);
    database.ignoreStop();
    return database;
}

}  // namespace

Catalog::Parts::Parts(const std::filesystem::path& file, LockWait wait)
    : writer(preparedDatabase(file, std::move(wait))),
      insertFile(writer,
                 "INSERT INTO files (path, root, size, mtime, duration, sr, channels, bits, codec, meta, category, "
                 "library, rating, indexed) VALUES (?,?,?,?,?,?,?,?,?,?,?,?,?,?) ON CONFLICT(path) DO UPDATE SET "
                 "root=excluded.root, size=excluded.size, mtime=excluded.mtime, duration=excluded.duration, "
                 "sr=excluded.sr, channels=excluded.channels, bits=excluded.bits, codec=excluded.codec, "
                 "meta=excluded.meta, category=excluded.category, library=excluded.library, rating=excluded.rating, "
                 "indexed=excluded.indexed RETURNING id"),
      deleteText(writer, "DELETE FROM fts WHERE rowid = ?"),
      insertText(writer, "INSERT INTO fts (rowid, name, folders, body) VALUES (?,?,?,?)"),
      findStamp(writer, "SELECT size, mtime FROM files WHERE path = ?"),
      findEdits(writer, findEditsText),
      mergeEdit(writer,
                "INSERT INTO edits (path, field, root, value, time, writer, embedded, unsent) "
                "VALUES (?,?,?,?,?,?,?,?) ON CONFLICT(path, field) DO UPDATE SET root=excluded.root, "
                "value=excluded.value, time=excluded.time, writer=excluded.writer, embedded=excluded.embedded, "
                "unsent=excluded.unsent WHERE (excluded.time, excluded.writer) > (time, writer) OR "
                "((excluded.time, excluded.writer) = (time, writer) AND "
                "(excluded.value, excluded.embedded) <> (value, embedded))"),
      readers(file) {}

Catalog::Catalog(const std::filesystem::path& file, LockWait wait)
    : parts_(std::make_unique<Parts>(file, std::move(wait))) {}

Catalog::~Catalog() = default;

void Catalog::interrupt() {
    ++parts_->interrupts;
}

std::optional<Catalog::Row> Catalog::row(const std::string& path) {
    return reading<std::optional<Row>>(parts_->readers, [&](Database& database) -> std::optional<Row> {
        Statement select(
            database, "SELECT path, root, duration, sr, channels, bits, codec, meta, mtime FROM files WHERE path = ?");
        if (!select.bind(path).step()) { return std::nullopt; }
        return readRow(select);
    });
}

std::unordered_map<std::string, Catalog::Stamp> Catalog::stamps(const std::string& root) {
    using Stamps = std::unordered_map<std::string, Stamp>;
    return reading<Stamps>(parts_->readers, [&](Database& database) {
        Stamps stamps;
        Statement select(database, "SELECT path, size, mtime FROM files WHERE root = ?");
        select.bind(root);
        while (select.step()) { stamps.emplace(select.text(0), Stamp{select.integer(1), select.real(2)}); }
        return select.ok() ? stamps : Stamps();
    });
}

int64_t Catalog::logOffset(const std::string& logfile) {
    return reading<int64_t>(parts_->readers, [&](Database& database) -> int64_t {
        Statement select(database, "SELECT offset FROM log_offsets WHERE logfile = ?");
        return select.bind(logfile).step() ? select.integer(0) : 0;
    });
}

void Catalog::setLogOffset(const std::string& logfile, int64_t offset) {
    const std::lock_guard hold(lock_);
    storeLogOffset(logfile, offset);
}

void Catalog::storeLogOffset(const std::string& logfile, int64_t offset) {
    Statement insert(parts_->writer,
                     "INSERT INTO log_offsets (logfile, offset) VALUES (?, ?) ON CONFLICT(logfile) DO UPDATE SET "
                     "offset = excluded.offset");
    parts_->expect(insert.bind(logfile, offset).run());
}

std::optional<Catalog::Stamp> Catalog::stamp(const std::string& path) {
    Statement& find = parts_->findStamp;
    std::optional<Stamp> stamp;
    if (find.bind(path).step()) { stamp = Stamp{find.integer(0), find.real(1)}; }
    find.reset();
    return stamp;
}

void Catalog::write(const std::function<void()>& job) {
    const std::lock_guard hold(lock_);
    Database& writer = parts_->writer;
    // IMMEDIATE, since a transaction that begins by reading could meet another process's write and fail midway.
    writer.exec("BEGIN IMMEDIATE");
    try {
        parts_->failure.clear();
        parts_->texts.clear();
        job();
        parts_->writeTexts();
        settleShortHits(writer, settleFrom, blocksAWrite);
        if (!parts_->failure.empty()) { throw Error(ErrorKind::catalog, parts_->failure); }
        writer.exec("COMMIT");
    } catch (...) {
        // SQLite may have rolled back already, for example on a full disk.
        if (sqlite3_get_autocommit(writer.handle()) == 0) { writer.exec("ROLLBACK"); }
        throw;
    }
}

void Catalog::settle() {
    constexpr int64_t allowed = 64;
    constexpr int blocksAStep = 2;
    try {
        for (bool more = true; more;) {
            write([&] { more = settleShortHits(parts_->writer, allowed, blocksAStep); });
        }
    } catch (const Error&) {
        // The next settle() continues from here.
    }
}

std::string Catalog::Row::formatSummary() const {
    const std::string format = codec == "PCM" ? std::to_string(bits) + "-bit" : codec;
    return kilohertzText(sampleRate) + (" · " + format + " · ") +
           (channels == 1 ? "mono" : std::to_string(channels) + " ch");
}

}  // namespace brindlehum
