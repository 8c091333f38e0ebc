// LibrarySearch: the question asked of the catalog, the sounds that answer it, and the facets to narrow it by.
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

// Main thread. The catalog is asked in the background, among the roots of the settings. Without a catalog there are no
// results.
class LibrarySearch : public QObject {
    Q_OBJECT
public:
    static constexpr double debounceSeconds = 0.09;
    static constexpr int maxResults = 2000;

    // Search and facets start by refresh(). `catalog` and `realPaths` outlive the search.
    LibrarySearch(const SettingsStore& settings, MainLoop& loop, Catalog* catalog, RealPaths& realPaths);
    ~LibrarySearch() override;

    // --- The question; filterChanged().
    const std::string& query() const { return query_; }
    const std::optional<std::string>& category() const { return category_; }  // upper case, as the facets give it
    const std::optional<std::string>& libraryFilter() const { return libraryFilter_; }
    void setQuery(const std::string& query);
    void setCategory(const std::optional<std::string>& category);
    void setLibraryFilter(const std::optional<std::string>& library);
    void clearFilters();  // all three
    // True while the question isn't empty: the browser shows results() then, not the folder.
    bool isSearching() const;

    // --- The answer; resultsChanged().
    // At most maxResults, the best first; those of the last question until the new answer is there.
    const std::vector<BrowserEntry>& results() const { return results_; }
    bool isRunning() const { return debounce_ || newest_.isBusy(); }  // from the first keystroke to the answer

    // --- Facets, the most frequent first; facetsChanged().
    const Catalog::Counts& categories() const { return facets_.categories; }
    const Catalog::Counts& libraries() const { return facets_.libraries; }
    int64_t indexedCount() const { return facets_.total; }

    // The catalog or the roots have changed: facets and results are read again.
    void refresh();
    bool isBusy() const { return searches_.pending() + facts_.pending() > 0; }  // overtaken work included

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
