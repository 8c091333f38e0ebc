// LibrarySearch: waits for a pause in typing, then queries the catalog; a newer query overtakes a running one.
#include "library/model/library_search.h"

#include "base/text.h"

namespace brindlehum {
namespace {

std::vector<BrowserEntry> entriesOf(std::vector<Catalog::Row> rows) {
    std::vector<BrowserEntry> entries;
    entries.reserve(rows.size());
    for (Catalog::Row& row : rows) {
        std::filesystem::path path = row.path;
        entries.push_back({std::move(path), false, std::move(row)});
    }
    return entries;
}

}  // namespace

LibrarySearch::LibrarySearch(const SettingsStore& settings, MainLoop& loop, Catalog* catalog, RealPaths& realPaths)
    : settings_(settings),
      loop_(loop),
      catalog_(catalog),
      realPaths_(realPaths),
      searches_(loop, "Brindlehum.search"),
      facts_(loop, "Brindlehum.facts") {}

LibrarySearch::~LibrarySearch() {
    newest_.cancel();
    newestFacets_.cancel();
    if (catalog_) { catalog_->interrupt(); }
}

template <class Value>
void LibrarySearch::set(Value& member, const Value& value) {
    if (member == value) { return; }
    member = value;
    Q_EMIT filterChanged();
    schedule();
}

void LibrarySearch::setQuery(const std::string& query) {
    set(query_, query);
}

void LibrarySearch::setCategory(const std::optional<std::string>& category) {
    set(category_, category);
}

void LibrarySearch::setLibraryFilter(const std::optional<std::string>& library) {
    set(libraryFilter_, library);
}

void LibrarySearch::clearFilters() {
    if (query_.empty() && !category_ && !libraryFilter_) { return; }
    query_.clear();
    category_.reset();
    libraryFilter_.reset();
    Q_EMIT filterChanged();
    schedule();
}

bool LibrarySearch::isSearching() const {
    return !isBlank(query_) || category_ || libraryFilter_;
}

void LibrarySearch::schedule() {
    debounce_.reset();
    if (newest_.isBusy()) {
        newest_.cancel();
        catalog_->interrupt();
    }
    if (!catalog_ || !isSearching()) {
        newest_.cancel();
        results_.clear();
        Q_EMIT resultsChanged();
        return;
    }
    const Catalog::Filter filter{query_, category_, libraryFilter_, settings_.value().libraryRoots, 0};
    debounce_ = loop_.after(debounceSeconds, [this, filter] { run(filter); });
}

// `filter` still has the roots as the settings spell them.
void LibrarySearch::run(const Catalog::Filter& filter) {
    searches_.run(
        newest_,
        [filter, catalog = catalog_, &realPaths = realPaths_] {
            Catalog::Filter real = filter;
            real.roots = realPaths.of(filter.roots);
            return entriesOf(catalog->search(real, maxResults));
        },
        [this](std::vector<BrowserEntry> found) {
            results_ = std::move(found);
            Q_EMIT resultsChanged();
        });
    debounce_.reset();
}

void LibrarySearch::refreshFacets() {
    facts_.run(
        newestFacets_,
        [catalog = catalog_, &realPaths = realPaths_, roots = settings_.value().libraryRoots] {
            return catalog->facets(realPaths.of(roots));
        },
        [this](Catalog::Facets facets) {
            facets_ = std::move(facets);
            Q_EMIT facetsChanged();
        });
}

void LibrarySearch::refresh() {
    if (!catalog_) { return; }
    refreshFacets();
    if (isSearching()) { schedule(); }
}

}  // namespace brindlehum
