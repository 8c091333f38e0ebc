// Catalog: what is found by a filter, and the counts by category and library.
#include "audio/error.h"
#include "catalog_parts.h"
#include "catalog_rows.h"

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

std::string quoted(const std::string& text) {
    std::string sql = "'";
    for (const char c : text) sql.append(c == '\'' ? 2 : 1, c);
    sql += '\'';
    return sql;
}

// The clause that restricts counts to `roots`; empty for all.
std::string rootsClause(const std::vector<std::string>& roots) {
    std::string clause;
    for (const std::string& root : roots) {
        clause += clause.empty() ? " WHERE root IN (" : ",";
        clause += quoted(root);
    }
    if (!clause.empty()) clause += ')';
    return clause;
}

Catalog::Counts counts(const Database& database, const std::string& column, const std::string& clause) {
    Catalog::Counts counts;
    Statement select(database, "SELECT " + column + ", COUNT(*) FROM files" + clause +
                                   (clause.empty() ? " WHERE " : " AND ") + column + " IS NOT NULL GROUP BY " + column +
                                   " ORDER BY COUNT(*) DESC LIMIT 200");
    while (select.step()) counts.emplace_back(select.text(0), select.integer(1));
    return select.ok() ? counts : Catalog::Counts();
}

}  // namespace

std::vector<Catalog::Row> Catalog::search(const Filter& filter, int limit) {
    const uint64_t begun = parts_->interrupts;
    try {
        const ReaderPool::Lease lease = parts_->readers.lease();
        const Interruptible search(*lease, parts_->interrupts, begun);
        const Search composition = composed(filter, limit);
        Statement select(*lease, composition.sql);
        for (size_t i = 0; i < composition.texts.size(); ++i) select.set(int(i) + 1, composition.texts[i]);
        std::vector<Row> rows;
        while (!search.over() && select.step()) rows.push_back(readRow(select));
        return select.ok() && !search.over() ? rows : std::vector<Row>();
    } catch (const Error&) {
        return {};
    }
}

Catalog::Facets Catalog::facets(const std::vector<std::string>& roots) {
    try {
        const ReaderPool::Lease lease = parts_->readers.lease();
        const std::string clause = rootsClause(roots);
        Statement total(*lease, "SELECT COUNT(*) FROM files" + clause);
        return {counts(*lease, "category", clause), counts(*lease, "library", clause),
                total.step() ? total.integer(0) : 0};
    } catch (const Error&) {
        return {};
    }
}

}  // namespace brindlehum
