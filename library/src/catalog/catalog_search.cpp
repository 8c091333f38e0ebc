// Catalog: the files that pass a filter, ranked.
#include <QString>
#include <algorithm>

#include "base/error.h"
#include "catalog/catalog_parts.h"
#include "catalog/catalog_ranking.h"
#include "catalog/catalog_rows.h"
#include "catalog/search_query.h"
#include "catalog/short_search.h"
#include "catalog/snapshot.h"
#include "catalog/vocabulary.h"
#include "platform/natural_order.h"

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

std::string composed(bool hasWords, const Conditions& conditions, int limit) {
    std::string sql = "SELECT f.path, f.root, f.duration, f.sr, f.channels, f.bits, f.codec, f.meta, f.mtime";
    if (hasWords) { sql += ", bm25(fts, 4.0, 1.0, 2.0)"; }
    sql += " FROM files f";
    if (hasWords) { sql += " JOIN fts ON fts.rowid = f.id"; }
    if (hasWords) { sql += " WHERE fts MATCH ?" + (conditions.sql.empty() ? "" : " AND " + conditions.sql); }
    if (!hasWords && !conditions.sql.empty()) { sql += " WHERE " + conditions.sql; }
    sql += hasWords ? " ORDER BY 10" : " ORDER BY f.path";
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

struct RankedRow {
    double rank = 0;
    Catalog::Row row;
};
using RankedRows = std::vector<RankedRow>;

// None when the full-text table has a text without its file, or a read fails.
std::optional<RankedRows> rowsOf(const Database& database, const std::vector<Ranked>& files) {
    RankedRows rows;
    rows.reserve(files.size());
    Statement select(database,
                     "SELECT path, root, duration, sr, channels, bits, codec, meta, mtime FROM files WHERE id = ?");
    for (const Ranked& file : files) {
        if (!select.bind(file.id).step()) { return std::nullopt; }
        rows.push_back({file.rank, readRow(select)});
    }
    return rows;
}

// A filter, with its query parsed and without the roots that needn't be asked for.
struct Wanted {
    Catalog::Filter filter;
    SearchQuery query;
};

// The statement that defines the result and its order. rankFiles() gets the same result faster.
RankedRows rowsByStatement(const Database& database, const Wanted& wanted, int limit) {
    const std::optional<std::string> match = ftsExpression(wanted.query);
    Conditions conditions = conditionsOf(wanted.filter);
    const Conditions fields = fieldConditions(wanted.query);
    if (!fields.sql.empty()) { conditions.add(fields.sql, fields.texts); }
    Statement select(database, composed(match.has_value(), conditions, limit));
    if (!select.ok()) { return {}; }
    int parameter = 0;
    if (match) { select.set(++parameter, *match); }
    for (const std::string& text : conditions.texts) { select.set(++parameter, text); }
    RankedRows rows;
    while (select.step()) { rows.push_back({match ? select.real(9) : 0, readRow(select)}); }
    return select.ok() ? rows : RankedRows();
}

QString fileName(const std::string& path) {
    const std::string_view name = std::string_view(path).substr(path.rfind('/') + 1);
    return QString::fromUtf8(name.data(), qsizetype(name.size()));
}

struct NamedRow {
    QCollatorSortKey name;
    RankedRow row;
    bool operator<(const NamedRow& other) const {
        const int order = name.compare(other.name);
        return order != 0 ? order < 0 : row.row.path < other.row.row.path;
    }
};

// Sorts files of equal rank by name, then by path.
void sortTies(RankedRows& rows) {
    const QCollator collator = naturalCollator();
    std::vector<NamedRow> tied;
    for (auto first = rows.begin(); first != rows.end();) {
        const auto last =
            std::find_if(first, rows.end(), [&](const RankedRow& row) { return row.rank != first->rank; });
        for (auto row = first; last - first > 1 && row != last; ++row) {
            tied.push_back({collator.sortKey(fileName(row->row.path)), std::move(*row)});
        }
        std::ranges::sort(tied, std::less());
        std::ranges::transform(tied, first, [](NamedRow& row) { return std::move(row.row); });
        tied.clear();
        first = last;
    }
}

}  // namespace

std::vector<Catalog::Row> Catalog::search(const Filter& filter, int limit) {
    const uint64_t begun = parts_->interrupts;
    try {
        const ReaderPool::Lease lease = parts_->readers.lease();
        const Snapshot snapshot(*lease);
        const Interruptible search(*lease, parts_->interrupts, begun);
        Wanted wanted{filter, parseQuery(filter.query)};
        if (coverAll(*lease, filter.roots)) { wanted.filter.roots.clear(); }
        const auto find = [&] {
            const std::optional<std::string> match = ftsExpression(wanted.query);
            Ranking files;
            if (match && fieldConditions(wanted.query).sql.empty()) {
                const bool trusts = !isShort(*lease, *match) || parts_->shortCheck.passes(*lease);
                files = rankFiles(*lease, *match, wanted.filter, limit, trusts);
            }
            std::optional<RankedRows> rows = files ? rowsOf(*lease, *files) : std::nullopt;
            return rows || search.over() ? std::move(rows).value_or(RankedRows())
                                         : rowsByStatement(*lease, wanted, limit);
        };
        RankedRows found = find();
        if (found.empty() && !search.over() && widenToParts(*lease, wanted.query)) { found = find(); }
        if (search.over()) { return {}; }
        if (!wanted.query.wanted.empty()) { sortTies(found); }
        std::vector<Row> rows;
        rows.reserve(found.size());
        for (RankedRow& row : found) { rows.push_back(std::move(row.row)); }
        return rows;
    } catch (const Error&) { return {}; }
}

}  // namespace brindlehum
