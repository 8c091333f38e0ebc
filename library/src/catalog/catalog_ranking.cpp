// Ranks short searches and narrowed searches without SQLite's sort of whole rows.
#include "catalog/catalog_ranking.h"

#include <algorithm>

#include "catalog/short_hits.h"
#include "catalog/short_search.h"

namespace brindlehum {

namespace {

using Ids = std::optional<std::vector<int64_t>>;

bool addFiles(const Database& database, const std::string& column, const std::string& value, FileSet& files) {
    Statement select(database, "SELECT id FROM files WHERE " + column + " = ?");
    for (select.bind(value); select.step();) {
        const int64_t id = select.integer(0);
        if (id < 0 || id > maxFileId) { return false; }
        if (size_t(id) >= files.size()) { files.resize(std::max(size_t(id) + 1, 2 * files.size())); }
        files[size_t(id)] = true;
    }
    return select.ok();
}

// Keeps the ids whose column has one of the values; false when a read fails.
bool narrow(const Database& database, const std::string& column, const std::vector<std::string>& values,
            std::optional<FileSet>& within) {
    FileSet files;
    for (const std::string& value : values) {
        if (!addFiles(database, column, value, files)) { return false; }
    }
    if (within) {
        files.resize(std::min(files.size(), within->size()));
        for (size_t id = 0; id < files.size(); ++id) { files[id] = files[id] && (*within)[id]; }
    }
    within = std::move(files);
    return true;
}

bool narrowed(const Catalog::Filter& filter) {
    return filter.category || filter.library || !filter.roots.empty();
}

// Lists all files that pass the filter, then ranks only those.
Ids rankListed(const Database& database, const std::string& match, const Catalog::Filter& filter, int limit) {
    std::optional<FileSet> within;
    if (filter.category && !narrow(database, "category", {*filter.category}, within)) { return std::nullopt; }
    if (filter.library && !narrow(database, "library", {*filter.library}, within)) { return std::nullopt; }
    if (!filter.roots.empty() && !narrow(database, "root", filter.roots, within)) { return std::nullopt; }
    return rankShort(database, match, limit, within);
}

// The number of files that pass the filter, and of all files.
struct Left {
    double files = 0;
    double of = 0;
    double share() const { return of > 0 ? files / of : 0; }
};

Left left(const Database& database, const Catalog::Filter& filter) {
    Catalog::Filter counted = filter;  // names in file_counts start with a '='
    if (counted.category) { counted.category->insert(0, 1, '='); }
    if (counted.library) { counted.library->insert(0, 1, '='); }
    const Conditions conditions = conditionsOf(counted);
    Statement select(database,
                     "SELECT total(files) FILTER (WHERE " + conditions.sql + "), total(files) FROM file_counts f");
    for (size_t i = 0; i < conditions.texts.size(); ++i) { select.set(int(i) + 1, conditions.texts[i]); }
    return select.step() ? Left{select.real(0), select.real(1)} : Left();
}

// Ranks all files, then tests the best ones against the filter one at a time. None when too few of them pass.
Ids rankAndAsk(const Database& database, const std::string& match, const Catalog::Filter& filter, int limit,
               int among) {
    const Ids best = rankShort(database, match, among, std::nullopt);
    if (!best) { return std::nullopt; }
    const Conditions conditions = conditionsOf(filter);
    Statement select(database, "SELECT 1 FROM files f WHERE f.id = ? AND " + conditions.sql);
    std::vector<int64_t> ids;
    for (const int64_t id : *best) {
        if (int(ids.size()) == limit) { break; }
        select.bind(id);
        for (size_t i = 0; i < conditions.texts.size(); ++i) { select.set(int(i) + 2, conditions.texts[i]); }
        if (select.step()) { ids.push_back(id); }
        if (!select.ok()) { return std::nullopt; }
    }
    const bool isAll = int(ids.size()) == limit || int(best->size()) < among;
    return isAll ? std::optional(std::move(ids)) : std::nullopt;
}

Ids rankNarrowed(const Database& database, const std::string& match, const Catalog::Filter& filter, int limit) {
    // Testing one file takes as long as listing some thirty.
    constexpr double asking = 32, spare = 1.25;
    const Left remaining = left(database, filter);
    const double among = limit / std::max(remaining.share(), 1e-6) * spare;
    if (among * asking < remaining.files) {
        if (Ids ids = rankAndAsk(database, match, filter, limit, int(among) + 1)) { return ids; }
    }
    return rankListed(database, match, filter, limit);
}

// Ranks ids alone, so that SQLite needn't sort whole rows.
Ids rankAll(const Database& database, const std::string& match, int limit) {
    Statement select(database, "SELECT rowid FROM fts WHERE fts MATCH ? ORDER BY bm25(fts, 4.0, 1.0, 2.0) LIMIT ?");
    std::vector<int64_t> ids;
    for (select.bind(match, limit); select.step();) { ids.push_back(select.integer(0)); }
    return select.ok() ? std::optional(std::move(ids)) : std::nullopt;
}

std::string placeholders(size_t count) {
    std::string list;
    for (size_t i = 0; i < count; ++i) { list += i == 0 ? "?" : ",?"; }
    return list;
}

}  // namespace

Conditions conditionsOf(const Catalog::Filter& filter) {
    Conditions conditions;
    const auto add = [&](const std::string& sql) { conditions.sql += (conditions.sql.empty() ? "" : " AND ") + sql; };
    const auto addText = [&](const std::string& sql, const std::string& text) {
        add(sql);
        conditions.texts.push_back(text);
    };
    if (filter.category) { addText("f.category = ?", *filter.category); }
    if (filter.library) { addText("f.library = ?", *filter.library); }
    if (!filter.roots.empty()) { add("f.root IN (" + placeholders(filter.roots.size()) + ")"); }
    conditions.texts.insert(conditions.texts.end(), filter.roots.begin(), filter.roots.end());
    if (filter.minRating >= 1) { add("f.rating >= " + std::to_string(filter.minRating)); }
    return conditions;
}

Ids rankedIds(const Database& database, const Catalog::Filter& filter, int limit) {
    const std::optional<std::string> match = Catalog::matchExpression(filter.query);
    if (!match || filter.minRating >= 1) { return std::nullopt; }
    if (isShort(database, *match)) {
        Ids ids = narrowed(filter) ? rankNarrowed(database, *match, filter, limit)
                                   : rankShort(database, *match, limit, std::nullopt);
        if (ids) { return ids; }
    }
    return narrowed(filter) ? std::nullopt : rankAll(database, *match, limit);
}

}  // namespace brindlehum
