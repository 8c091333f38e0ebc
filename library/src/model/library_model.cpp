// The folder, the search and the facets of LibraryModel.
#include "library/model/library_model.h"

#include <algorithm>

#include "base/text.h"
#include "library/model/places.h"
#include "library/team/metadata_save.h"
#include "model/browser_listing.h"

namespace brindlehum {
namespace {

std::vector<BrowserEntry> entriesOf(std::vector<Catalog::Row> rows) {
    std::vector<BrowserEntry> entries;
    entries.reserve(rows.size());
    for (Catalog::Row& row : rows) {
        std::filesystem::path url = row.path;
        entries.push_back({std::move(url), false, std::move(row)});
    }
    return entries;
}

}  // namespace

std::string LibraryModel::RealPaths::of(const std::string& path) {
    {
        const std::lock_guard guard(lock_);
        if (const auto found = known_.find(path); found != known_.end()) { return found->second; }
    }
    std::string real = LibraryScanner::canonical(path);
    const std::lock_guard guard(lock_);
    return known_[path] = std::move(real);
}

std::vector<std::string> LibraryModel::RealPaths::of(const std::vector<std::string>& paths) {
    std::vector<std::string> real;
    for (const std::string& path : paths) { real.push_back(of(path)); }
    return real;
}

void LibraryModel::RealPaths::forget(const std::string& path) {
    const std::lock_guard guard(lock_);
    known_.erase(path);
}

LibraryModel::LibraryModel(SettingsStore& settings, MainLoop& loop, const std::filesystem::path& catalogFile)
    : settings_(settings), loop_(loop), infoCache_(loop) {
    try {
        catalog_ = std::make_unique<Catalog>(catalogFile);
    } catch (const std::exception& error) {
        catalogError_ = error.what();
        message_ = catalogError_ + ". Folders can still be browsed.";
    }
    const auto& roots = settings_.value().libraryRoots;
    open(roots.empty() ? musicFolder() : Path(roots.front()));
    refreshFacets();
    rescanAll();
    pullTimer_ = loop_.every(pullSeconds, [this] { pull(); });
}

LibraryModel::~LibraryModel() {
    ending_.request_stop();
    ++listGen_;
    ++searchGen_;
    ++facetGen_;
    ++metaGen_;
    if (catalog_) { catalog_->interrupt(); }
    for (auto& [root, scan] : scans_) { scan.thread.request_stop(); }
    edits_.drain();
}

void LibraryModel::say(std::string message) {
    message_ = std::move(message);
    Q_EMIT messageChanged();
}

void LibraryModel::open(const Path& url) {
    Path plain = url.lexically_normal();
    if (!plain.has_filename() && plain.has_relative_path()) { plain = plain.parent_path(); }
    folder_ = std::move(plain);
    entries_.clear();
    folderError_.clear();
    infoCache_.forgetWaiting();
    list(true);
    Q_EMIT entriesChanged();
}

void LibraryModel::refresh() {
    if (folder_) { list(listing_); }
}

void LibraryModel::goUp() {
    if (folder_ && *folder_ != "/") { open(folder_->parent_path()); }
}

// `announced`: even if the entries turn out to be the same.
void LibraryModel::list(bool announced) {
    listing_ = true;
    inBackground(
        lists_,
        [this, folder = *folder_, generation = ++listGen_] {
            const auto isStale = [this, generation] { return listGen_ != generation; };
            return std::pair(generation, listForBrowser(folder, catalog_.get(), isStale));
        },
        [this, announced](auto& given) {
            if (listGen_ != given.first) { return; }
            listing_ = false;
            BrowserListing& now = given.second;
            const bool same = now.entries == entries_ && now.error == folderError_;
            entries_ = std::move(now.entries);
            folderError_ = now.error;
            if (announced || !same) { Q_EMIT entriesChanged(); }
        });
}

void LibraryModel::setQuery(const std::string& query) {
    if (query == query_) { return; }
    query_ = query;
    Q_EMIT filterChanged();
    scheduleSearch();
}

void LibraryModel::setCategory(const std::optional<std::string>& category) {
    if (category == category_) { return; }
    category_ = category;
    Q_EMIT filterChanged();
    scheduleSearch();
}

void LibraryModel::setLibraryFilter(const std::optional<std::string>& library) {
    if (library == libraryFilter_) { return; }
    libraryFilter_ = library;
    Q_EMIT filterChanged();
    scheduleSearch();
}

void LibraryModel::clearFilters() {
    if (query_.empty() && !category_ && !libraryFilter_) { return; }
    query_.clear();
    category_.reset();
    libraryFilter_.reset();
    Q_EMIT filterChanged();
    scheduleSearch();
}

bool LibraryModel::isSearching() const {
    return !isBlank(query_) || category_ || libraryFilter_;
}

void LibraryModel::scheduleSearch() {
    ++searchGen_;
    if (searchRunning_ && catalog_) { catalog_->interrupt(); }
    if (!catalog_ || !isSearching()) {
        debounce_.reset();
        searchRunning_ = false;
        results_.clear();
        Q_EMIT resultsChanged();
        return;
    }
    searchRunning_ = true;
    const Catalog::Filter filter{query_, category_, libraryFilter_, settings_.value().libraryRoots, 0};
    debounce_ = loop_.after(debounceSeconds, [this, filter] { runSearch(filter); });
}

// The roots of `filter` are still as the settings spell them.
void LibraryModel::runSearch(const Catalog::Filter& filter) {
    inBackground(
        searches_,
        [this, filter, generation = searchGen_.load()] {
            std::pair<uint64_t, std::vector<BrowserEntry>> given{generation, {}};
            if (searchGen_ != generation) { return given; }
            Catalog::Filter real = filter;
            real.roots = realPaths_.of(filter.roots);
            given.second = entriesOf(catalog_->search(real, resultLimit));
            return given;
        },
        [this](auto& given) {
            if (searchGen_ != given.first) { return; }
            searchRunning_ = false;
            results_ = std::move(given.second);
            Q_EMIT resultsChanged();
        });
}

void LibraryModel::refreshFacets() {
    if (!catalog_) { return; }
    inBackground(
        facts_,
        [this, roots = settings_.value().libraryRoots, generation = ++facetGen_] {
            std::pair<uint64_t, Catalog::Facets> given{generation, {}};
            if (facetGen_ == generation) { given.second = catalog_->facets(realPaths_.of(roots)); }
            return given;
        },
        [this](auto& given) {
            if (facetGen_ != given.first) { return; }
            categories_ = std::move(given.second.categories);
            libraries_ = std::move(given.second.libraries);
            indexedCount_ = given.second.total;
            Q_EMIT facetsChanged();
        });
}

void LibraryModel::catalogChanged() {
    refreshFacets();
    if (isSearching()) { scheduleSearch(); }
    refresh();
}

void LibraryModel::readMeta(const Paths& urls, const std::function<void(const std::vector<SoundMeta>&)>& done) {
    inBackground(
        facts_,
        [this, urls, generation = ++metaGen_] {
            std::pair<uint64_t, std::vector<SoundMeta>> given{generation, {}};
            for (const Path& url : urls) {
                if (metaGen_ != generation) { break; }
                given.second.push_back(MetadataSave::current(url, catalog_.get()));
            }
            return given;
        },
        [this, done](const auto& given) {
            if (metaGen_ == given.first) { done(given.second); }
        });
}

std::vector<std::filesystem::path> LibraryModel::places() const {
    return placesOf(settings_.value().pullsFolder);
}

}  // namespace brindlehum
