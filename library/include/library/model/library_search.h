// LibrarySearch: the query to the catalog, the sounds it finds, and the facets to narrow it by.
#pragma once

#include <QObject>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "library/model/browser_entry.h"
#include "library/model/real_paths.h"
#include "platform/background.h"
#include "settings/settings_store.h"

namespace brindlehum {

// Main thread. Queries the catalog in the background, limited to the roots of the settings. Without a catalog there are
// no results.
class LibrarySearch : public QObject {
    Q_OBJECT
public:
    static constexpr double debounceSeconds = 0.09;
    static constexpr int maxResults = 2000;

    // The first refresh() starts search and facets. `catalog` and `realPaths` must outlive the search.
    LibrarySearch(const SettingsStore& settings, MainLoop& loop, Catalog* catalog, RealPaths& realPaths);
    ~LibrarySearch() override;
    void use(Catalog& catalog) { catalog_ = &catalog; }  // before the next refresh()
    bool hasCatalog() const { return catalog_ != nullptr; }

    // --- The query and the filters; filterChanged().
    const std::string& query() const { return query_; }
    const std::optional<std::string>& category() const { return category_; }  // upper case, as in the facets
    const std::optional<std::string>& libraryFilter() const { return libraryFilter_; }
    void setQuery(const std::string& query);
    void setCategory(const std::optional<std::string>& category);
    void setLibraryFilter(const std::optional<std::string>& library);
    void clearFilters();  // the query too
    // True while a query or filter is set: the browser then shows results(), not the folder.
    bool isSearching() const;

    // --- The results; resultsChanged().
    // At most maxResults, the best first; the last query's results stay until the new ones arrive.
    const std::vector<BrowserEntry>& results() const { return results_; }
    bool isRunning() const { return debounce_ || newest_.isBusy(); }  // from the first keystroke to the results

    // --- Facets, the largest count first; facetsChanged().
    const Catalog::Counts& categories() const { return facets_.categories; }
    const Catalog::Counts& libraries() const { return facets_.libraries; }
    int64_t indexedCount() const { return facets_.total; }

    // Call it when the catalog or the roots have changed: reads facets and results again.
    void refresh();
    bool isBusy() const { return searches_.pending() + facts_.pending() > 0; }  // also true for overtaken work

Q_SIGNALS:
    void filterChanged();
    void resultsChanged();
    void facetsChanged();

private:
    template <class Value>
    void set(Value& member, const Value& value);
    void schedule();
    void run(const Catalog::Filter& filter);
    void refreshFacets();

    const SettingsStore& settings_;
    MainLoop& loop_;
    Catalog* catalog_;
    RealPaths& realPaths_;
    std::string query_;
    std::optional<std::string> category_;
    std::optional<std::string> libraryFilter_;
    std::vector<BrowserEntry> results_;
    Catalog::Facets facets_;
    TimerHandle debounce_;
    Background::Line newest_;
    Background::Line newestFacets_;
    Background searches_;
    Background facts_;
};

}  // namespace brindlehum
