// Catalog: what is found by a filter.
#include <algorithm>

#include "audio/error.h"
#include "catalog_parts.h"
#include "catalog_rows.h"
#include "short_hits.h"
#include "short_search.h"
#include "snapshot.h"

namespace brindlehum {

namespace {

// Lets a statement end early, when the catalog has been interrupted since.
class Interruptible {
public:
    Interruptible(const Database& database, const std::atomic<uint64_t>& interrupts, uint64_t begun)
        : handle_(database.handle()), interrupts_(interrupts), begun_(begun) {
        constexpr int steps = 1000;  // of SQLite's machine, which are some hundred matches
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

std::string placeholders(size_t count) {
    std::string list;
    for (size_t i = 0; i < count; ++i) list += i == 0 ? "?" : ",?";
    return list;
}

struct Search {
    std::string sql;
    std::vector<std::string> texts;  // for its parameters
};

Search composed(const Catalog::Filter& filter, int limit) {
    Search search;
    std::vector<std::string> clauses;
    const auto add = [&](std::string clause, const std::string& text) {
        clauses.push_back(std::move(clause));
        search.texts.push_back(text);
    };
    search.sql = "SELECT f.path, f.root, f.duration, f.sr, f.channels, f.bits, f.codec, f.meta FROM files f";
    const std::optional<std::string> match = Catalog::matchExpression(filter.query);
    if (match) {
        search.sql += " JOIN fts ON fts.rowid = f.id";
        add("fts MATCH ?", *match);
    }
    if (filter.category) add("f.category = ?", *filter.category);
    if (filter.library) add("f.library = ?", *filter.library);
    if (!filter.roots.empty()) {
        clauses.push_back("f.root IN (" + placeholders(filter.roots.size()) + ")");
        search.texts.insert(search.texts.end(), filter.roots.begin(), filter.roots.end());
    }
    if (filter.minRating >= 1) clauses.push_back("f.rating >= " + std::to_string(filter.minRating));
    for (size_t i = 0; i < clauses.size(); ++i) search.sql.append(i == 0 ? " WHERE " : " AND ").append(clauses[i]);
    search.sql += match ? " ORDER BY bm25(fts, 4.0, 1.0, 2.0)" : " ORDER BY f.path";
    search.sql += " LIMIT " + std::to_string(limit);
    return search;
}

// Whether every root of the catalog is among these.
bool coverAll(const Database& database, const std::vector<std::string>& roots) {
    Statement next(database, "SELECT root FROM file_counts WHERE root > ? ORDER BY root LIMIT 1");
    std::string root;
    for (next.bind(root); next.step(); next.bind(root)) {
        root = next.text(0);
        if (std::ranges::find(roots, root) == roots.end()) return false;
    }
    return next.ok();
}

bool addFiles(const Database& database, const std::string& column, const std::string& value, FileSet& files) {
    Statement select(database, "SELECT id FROM files WHERE " + column + " = ?");
    for (select.bind(value); select.step();) {
        const int64_t id = select.integer(0);
        if (id < 0 || id > mostFileId) return false;
        if (size_t(id) >= files.size()) files.resize(std::max(size_t(id) + 1, 2 * files.size()));
        files[size_t(id)] = true;
    }
    return select.ok();
}

// Leaves what has one of the values in the column; false when that can't be told.
bool narrow(const Database& database, const std::string& column, const std::vector<std::string>& values,
            std::optional<FileSet>& within) {
    FileSet files;
    for (const std::string& value : values) {
        if (!addFiles(database, column, value, files)) return false;
    }
    if (within) {
        files.resize(std::min(files.size(), within->size()));
        for (size_t id = 0; id < files.size(); ++id) files[id] = files[id] && (*within)[id];
    }
    within = std::move(files);
    return true;
}

bool narrowed(const Catalog::Filter& filter) {
    return filter.category || filter.library || !filter.roots.empty();
}

std::optional<std::vector<int64_t>> rankShort(const Database& database, const std::string& match,
                                              const Catalog::Filter& filter, int limit) {
    std::optional<FileSet> within;
    if (filter.category && !narrow(database, "category", {*filter.category}, within)) return std::nullopt;
    if (filter.library && !narrow(database, "library", {*filter.library}, within)) return std::nullopt;
    if (!filter.roots.empty() && !narrow(database, "root", filter.roots, within)) return std::nullopt;
    return rankShort(database, match, limit, within);
}

// The ranking alone, of which SQLite then need not sort whole rows.
std::optional<std::vector<int64_t>> rankAll(const Database& database, const std::string& match, int limit) {
    Statement select(database, "SELECT rowid FROM fts WHERE fts MATCH ? ORDER BY bm25(fts, 4.0, 1.0, 2.0) LIMIT ?");
    std::vector<int64_t> ids;
    for (select.bind(match, limit); select.step();) ids.push_back(select.integer(0));
    return select.ok() ? std::optional(std::move(ids)) : std::nullopt;
}

std::optional<std::vector<int64_t>> ranking(const Database& database, const Catalog::Filter& filter, int limit) {
    const std::optional<std::string> match = Catalog::matchExpression(filter.query);
    if (!match || filter.minRating >= 1) return std::nullopt;
    if (isShort(database, *match)) {
        auto ids = rankShort(database, *match, filter, limit);
        if (ids) return ids;
    }
    return narrowed(filter) ? std::nullopt : rankAll(database, *match, limit);
}

// None when a text is in the full-text table without its file, or a read fails.
std::optional<std::vector<Catalog::Row>> rowsOf(const Database& database, const std::vector<int64_t>& ids) {
    std::vector<Catalog::Row> rows;
    rows.reserve(ids.size());
    Statement select(database, "SELECT path, root, duration, sr, channels, bits, codec, meta FROM files WHERE id = ?");
    for (const int64_t id : ids) {
        if (!select.bind(id).step()) return std::nullopt;
        rows.push_back(readRow(select));
    }
    return rows;
}

// The statement that defines what a search finds, and in which order. The ways above are shorter ones to the same.
std::vector<Catalog::Row> rowsByStatement(const Database& database, const Catalog::Filter& filter, int limit) {
    const Search search = composed(filter, limit);
    Statement select(database, search.sql);
    if (!select.ok()) return {};
    for (size_t i = 0; i < search.texts.size(); ++i) select.set(int(i) + 1, search.texts[i]);
    std::vector<Catalog::Row> rows;
    while (select.step()) rows.push_back(readRow(select));
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
        if (coverAll(*lease, filter.roots)) needed.roots.clear();
        const auto ids = ranking(*lease, needed, limit);
        std::optional<std::vector<Row>> rows = ids ? rowsOf(*lease, *ids) : std::nullopt;
        if (!rows && !search.over()) rows = rowsByStatement(*lease, needed, limit);
        return rows && !search.over() ? *std::move(rows) : std::vector<Row>();
    } catch (const Error&) {
        return {};
    }
}

}  // namespace brindlehum
