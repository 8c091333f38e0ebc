// Catalog: the number of files by category and by library.
#include "base/error.h"
#include "catalog/catalog_parts.h"
#include "catalog/snapshot.h"

namespace brindlehum {

namespace {

std::string quoted(const std::string& text) {
    std::string sql = "'";
    for (const char c : text) { sql.append(c == '\'' ? 2 : 1, c); }
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
    if (!clause.empty()) { clause += ')'; }
    return clause;
}

// Reads the counts kept beside `files`, where each name starts with a '='.
Catalog::Counts counts(const Database& database, const std::string& column, const std::string& clause) {
    Catalog::Counts counts;
    Statement select(database, "SELECT substr(" + column + ", 2), sum(files) FROM file_counts" + clause +
                                   (clause.empty() ? " WHERE " : " AND ") + column + " != '' GROUP BY " + column +
                                   " ORDER BY 2 DESC LIMIT 200");
    while (select.step()) { counts.emplace_back(select.text(0), select.integer(1)); }
    return select.ok() ? counts : Catalog::Counts();
}

}  // namespace

Catalog::Facets Catalog::facets(const std::vector<std::string>& roots) {
    try {
        const ReaderPool::Lease lease = parts_->readers.lease();
        const Snapshot snapshot(*lease);
        const std::string clause = rootsClause(roots);
        Statement total(*lease, "SELECT sum(files) FROM file_counts" + clause);
        return {counts(*lease, "category", clause), counts(*lease, "library", clause),
                total.step() ? total.integer(0) : 0};
    } catch (const Error&) { return {}; }
}

}  // namespace brindlehum
