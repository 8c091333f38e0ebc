// Catalog: the files that pass a filter, ranked.
#include <algorithm>

#include "base/error.h"
#include "catalog/catalog_parts.h"
#include "catalog/catalog_ranking.h"
#include "catalog/catalog_rows.h"
#include "catalog/snapshot.h"

namespace brindlehum {

namespace {

// Lets a statement end early once the catalog has been interrupted.
class Interruptible {
public:
    Interruptible(const Database& database, const std::atomic<uint64_t>& interrupts, uint64_t begun)
        : handle_(database.handle()), interrupts_(interrupts), begun_(begun) {
        constexpr int steps = 1000;  // of SQLite's machine, some hundred matches
        sqlite3_progress_handler(
            handle_, steps, [](void* self) { return int(static_cast<Interruptible*>(self)->over()); }, this);
    }
    ~Interruptible() { sqlite3_progress_handler(handle_, 0, nullptr, nullptr); }
    Interruptible(const Interruptible&) = delete;
    Interruptible& operator=(const Interruptible&) = delete;
    bool over() const { return interrupts_ != begun_; }

private:
    sqlite3* handle_;
    const std::atomic<uint64_t>& interrupts_;
    const uint64_t begun_;
};

std::string composed(const std::optional<std::string>& match, const Conditions& conditions, int limit) {
    std::string sql = "SELECT f.path, f.root, f.duration, f.sr, f.channels, f.bits, f.codec, f.meta FROM files f";
    if (match) { sql += " JOIN fts ON fts.rowid = f.id"; }
    if (match) { sql += " WHERE fts MATCH ?" + (conditions.sql.empty() ? "" : " AND " + conditions.sql); }
    if (!match && !conditions.sql.empty()) { sql += " WHERE " + conditions.sql; }
    sql += match ? " ORDER BY bm25(fts, 4.0, 1.0, 2.0)" : " ORDER BY f.path";
    return sql + " LIMIT " + std::to_string(limit);
}

// True when every root of the catalog is among `roots`.
bool coverAll(const Database& database, const std::vector<std::string>& roots) {
    Statement next(database, "SELECT root FROM file_counts WHERE root > ? ORDER BY root LIMIT 1");
    std::string root;
    for (next.bind(root); next.step(); next.bind(root)) {
        root = next.text(0);
        if (std::ranges::find(roots, root) == roots.end()) { return false; }
    }
    return next.ok();
}

// None when the full-text table has a text without its file, or a read fails.
std::optional<std::vector<Catalog::Row>> rowsOf(const Database& database, const std::vector<int64_t>& ids) {
    std::vector<Catalog::Row> rows;
    rows.reserve(ids.size());
    Statement select(database, "SELECT path, root, duration, sr, channels, bits, codec, meta FROM files WHERE id = ?");
    for (const int64_t id : ids) {
        if (!select.bind(id).step()) { return std::nullopt; }
        rows.push_back(readRow(select));
    }
    return rows;
}

// The statement that defines the result and its order. rankedIds() gets the same result faster.
std::vector<Catalog::Row> rowsByStatement(const Database& database, const Catalog::Filter& filter, int limit) {
    const std::optional<std::string> match = Catalog::matchExpression(filter.query);
    const Conditions conditions = conditionsOf(filter);
    Statement select(database, composed(match, conditions, limit));
    if (!select.ok()) { return {}; }
    int parameter = 0;
    if (match) { select.set(++parameter, *match); }
    for (const std::string& text : conditions.texts) { select.set(++parameter, text); }
    std::vector<Catalog::Row> rows;
    while (select.step()) { rows.push_back(readRow(select)); }
    return select.ok() ? rows : std::vector<Catalog::Row>();
}

}  // namespace

std::vector<Catalog::Row> Catalog::search(const Filter& filter, int limit) {
    const uint64_t begun = parts_->interrupts;
    try {
        const ReaderPool::Lease lease = parts_->readers.lease();
        const Snapshot snapshot(*lease);
        const Interruptible search(*lease, parts_->interrupts, begun);
        Filter needed = filter;
        if (coverAll(*lease, filter.roots)) { needed.roots.clear(); }
        const auto ids = rankedIds(*lease, needed, limit);
        std::optional<std::vector<Row>> rows = ids ? rowsOf(*lease, *ids) : std::nullopt;
        if (!rows && !search.over()) { rows = rowsByStatement(*lease, needed, limit); }
        return rows && !search.over() ? *std::move(rows) : std::vector<Row>();
    } catch (const Error&) { return {}; }
}

}  // namespace brindlehum
