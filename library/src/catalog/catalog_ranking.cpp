// Ranks short searches and narrowed searches without SQLite's sort of whole rows.
#include "catalog/catalog_ranking.h"

#include <algorithm>

#include "catalog/short_hits.h"
#include "catalog/short_search.h"

namespace brindlehum {

namespace {

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
Ranking rankListed(const Database& database, const std::string& match, const Catalog::Filter& filter, int limit) {
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
Ranking rankAndAsk(const Database& database, const std::string& match, const Catalog::Filter& filter, int limit,
                   int among) {
    const Ranking best = rankShort(database, match, among, std::nullopt);
    if (!best) { return std::nullopt; }
    const Conditions conditions = conditionsOf(filter);
    Statement select(database, "SELECT 1 FROM files f WHERE f.id = ? AND " + conditions.sql);
    std::vector<Ranked> passing;
    for (const Ranked& file : *best) {
        if (int(passing.size()) == limit) { break; }
        select.bind(file.id);
        for (size_t i = 0; i < conditions.texts.size(); ++i) { select.set(int(i) + 2, conditions.texts[i]); }
        if (select.step()) { passing.push_back(file); }
        if (!select.ok()) { return std::nullopt; }
    }
    const bool isAll = int(passing.size()) == limit || int(best->size()) < among;
    return isAll ? Ranking(std::move(passing)) : std::nullopt;
}

Ranking rankNarrowed(const Database& database, const std::string& match, const Catalog::Filter& filter, int limit) {
    // Testing one file takes as long as listing some thirty.
    constexpr double asking = 32, spare = 1.25;
    const Left remaining = left(database, filter);
    const double among = limit / std::max(remaining.share(), 1e-6) * spare;
    if (among * asking < remaining.files) {
        if (Ranking ranking = rankAndAsk(database, match, filter, limit, int(among) + 1)) { return ranking; }
    }
    return rankListed(database, match, filter, limit);
}

std::string placeholders(size_t count) {
    std::string list;
    for (size_t i = 0; i < count; ++i) { list += i == 0 ? "?" : ",?"; }
    return list;
}

}  // namespace

Ranking rankByEngine(const Database& database, const std::string& expression, int limit) {
    Statement select(database, "SELECT rowid, bm25(fts, 4.0, 1.0, 2.0) FROM fts WHERE fts MATCH ? ORDER BY 2 LIMIT ?");
    std::vector<Ranked> ranked;
    for (select.bind(expression, limit); select.step();) { ranked.push_back({select.real(1), select.integer(0)}); }
    return select.ok() ? Ranking(std::move(ranked)) : std::nullopt;
}

Conditions conditionsOf(const Catalog::Filter& filter) {
    Conditions conditions;
    if (filter.category) { conditions.add("f.category = ?", {*filter.category}); }
    if (filter.library) { conditions.add("f.library = ?", {*filter.library}); }
    if (!filter.roots.empty()) {
        conditions.add("f.root IN (" + placeholders(filter.roots.size()) + ")", filter.roots);
    }
    if (filter.minRating >= 1) { conditions.add("f.rating >= " + std::to_string(filter.minRating)); }
    return conditions;
}

Ranking rankFiles(const Database& database, const std::string& match, const Catalog::Filter& filter, int limit,
                  bool trustsShort) {
    if (filter.minRating >= 1) { return std::nullopt; }
    if (trustsShort && isShort(database, match)) {
        Ranking ranking = narrowed(filter) ? rankNarrowed(database, match, filter, limit)
                                           : rankShort(database, match, limit, std::nullopt);
        if (ranking) { return ranking; }
    }
    return narrowed(filter) ? std::nullopt : rankByEngine(database, match, limit);
}

}  // namespace brindlehum
