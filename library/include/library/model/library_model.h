// LibraryModel: what the browser displays, a folder or what a search found, and the one road of every metadata edit.
#pragma once

#include <QObject>
#include <QPointer>
#include <atomic>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <stop_token>
#include <string>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#include "library/catalog/catalog.h"
#include "library/meta/metadata_changes.h"
#include "library/model/browser_entry.h"
#include "library/model/info_cache.h"
#include "library/scan/library_scanner.h"
#include "platform/main_loop.h"
#include "platform/task_queues.h"
#include "settings/settings_store.h"

namespace brindlehum {

// Main thread. Whatever touches a disk or the catalog runs in the background and comes back by a signal; nothing here
// waits but the construction, which opens the catalog. Without a catalog the model shows folders only.
class LibraryModel : public QObject {
    Q_OBJECT
public:
    static constexpr double debounceSeconds = 0.09;
    static constexpr double pullSeconds = 60;
    static constexpr int resultLimit = 2000;

    // Opens the first library root, or the user's music folder, and starts to scan all roots.
    LibraryModel(SettingsStore& settings, MainLoop& loop, const std::filesystem::path& catalogFile);
    // Cancels scans, drops what can be asked again, and finishes saves and renames.
    ~LibraryModel() override;

    // --- The folder shown; entriesChanged().
    const std::optional<std::filesystem::path>& folder() const { return folder_; }
    // Folders first, then sounds, by name, numbers in names by value. Empty for a folder that can't be read.
    const std::vector<BrowserEntry>& entries() const { return entries_; }
    bool isListing() const { return listing_; }                          // the entries are on their way
    const std::error_code& folderError() const { return folderError_; }  // why it can't be read, once it was tried
    void open(const std::filesystem::path& url);
    void refresh();  // lists the folder again; the entries stay until then
    void goUp();

    // --- Searching. filterChanged() when one of the three changes, resultsChanged() with each answer. An answer is
    // shown only while its question still stands.
    const std::string& query() const { return query_; }
    const std::optional<std::string>& category() const { return category_; }  // upper case, as the facets give it
    const std::optional<std::string>& libraryFilter() const { return libraryFilter_; }
    void setQuery(const std::string& query);
    void setCategory(const std::optional<std::string>& category);
    void setLibraryFilter(const std::optional<std::string>& library);
    void clearFilters();  // all three
    // The browser shows results() while this holds, else entries().
    bool isSearching() const;
    // At most resultLimit, the best first; those of the question before until the answer to the new one is there.
    const std::vector<BrowserEntry>& results() const { return results_; }
    bool isSearchRunning() const { return searchRunning_; }  // from the first keystroke to the answer

    // --- Facets; facetsChanged(). Most first.
    const Catalog::Counts& categories() const { return categories_; }
    const Catalog::Counts& libraries() const { return libraries_; }
    int64_t indexedCount() const { return indexedCount_; }
    void refreshFacets();

    // --- Library roots; indexingChanged() for a scan's begin, end and progress. The list itself is the settings'.
    std::vector<std::string> roots();                                    // canonical
    const std::set<std::string>& indexing() const { return indexing_; }  // as the settings spell them
    // Files done of files found of a root being scanned; none for another.
    std::optional<LibraryScanner::Progress> scanProgress(const std::string& root) const;
    // What the last scan of a root couldn't do, for the roots where something was amiss.
    const std::map<std::string, std::string>& rootProblems() const { return rootProblems_; }
    void addRoot(const std::filesystem::path& url);
    void removeRoot(const std::string& path);  // its files stay; their rows go
    void rescan(const std::string& root);
    void rescanAll();
    // Applies what the team has logged. Runs by itself after each scan and every pullSeconds.
    void pull();

    // --- Edits. What came of them is told by message(), and by renamed().
    struct Move {
        std::filesystem::path from;
        std::filesystem::path to;
    };
    using Moves = std::vector<Move>;
    void save(const MetadataChanges& changes, const std::vector<std::filesystem::path>& urls);
    void renameToUCS(const std::vector<std::filesystem::path>& urls);
    // Takes the last rename back, as far as the files are still there and the old names still free.
    bool canUndoRename() const { return !lastRenames_.empty(); }
    void undoRename();
    // The metadata of files for the inspector: `done` gets one record a file, on the main thread. A newer call takes
    // the place of one that is still under way, whose `done` is then never called.
    void readMeta(const std::vector<std::filesystem::path>& urls,
                  const std::function<void(const std::vector<SoundMeta>&)>& done);
    // Before the process ends: gives edits under way up to `patience` seconds. False when some are still not done;
    // their files are whole all the same.
    bool finishEdits(double patience);

    // --- The rest.
    const std::optional<std::string>& message() const { return message_; }  // status line; messageChanged()
    std::vector<std::filesystem::path> places() const;
    Catalog* catalog() { return catalog_.get(); }                      // null: folders only
    const std::string& catalogError() const { return catalogError_; }  // why there is no catalog
    InfoCache& infoCache() { return infoCache_; }
    SettingsStore& settings() { return settings_; }
    bool isBusy() const { return pending_ > 0; }  // something that was begun hasn't come back yet

Q_SIGNALS:
    void entriesChanged();
    void filterChanged();
    void resultsChanged();
    void facetsChanged();
    void indexingChanged();
    void messageChanged();
    void renamed(const brindlehum::LibraryModel::Moves& moves);

private:
    using Path = std::filesystem::path;
    using Paths = std::vector<Path>;
    struct ScanReport;
    struct Scan {
        std::shared_ptr<ScanReport> report;
        LibraryScanner::Progress progress;
        std::jthread thread;
    };
    // Real paths asked for once: a share that hangs must not be touched by every search. Any thread.
    class RealPaths {
    public:
        std::string of(const std::string& path);
        std::vector<std::string> of(const std::vector<std::string>& paths);
        void forget(const std::string& path);

    private:
        std::mutex lock_;
        std::map<std::string, std::string> known_;
    };

    void list(bool announced);
    void scheduleSearch();
    void runSearch(const Catalog::Filter& filter);
    // What the catalog holds has changed: facets, results and rows are read again.
    void catalogChanged();
    void startScan(const std::string& root);
    void scanEnded(const std::string& root, const LibraryScanner::Result& result);
    void removeRows(const std::string& root);
    void rowsRemoved(const std::string& root);
    void pullThen(const std::vector<std::string>& roots, std::function<void(int applied)> then);
    void rename(std::function<Moves()> plan, bool undoing);
    void say(std::string message);
    // Runs `work` on the queue and `done` with what it gave on the main thread, if the model is still there.
    template <class Work, class Done>
    void inBackground(SerialQueue& queue, Work work, Done done) {
        ++pending_;
        queue.async([self = QPointer(this), &loop = loop_, work = std::move(work), done = std::move(done)]() mutable {
            auto given = std::make_shared<decltype(work())>(work());
            loop.post([self, done = std::move(done), given] {
                if (!self) { return; }
                --self->pending_;
                done(*given);
            });
        });
    }

    SettingsStore& settings_;
    MainLoop& loop_;
    std::unique_ptr<Catalog> catalog_;
    std::string catalogError_;
    InfoCache infoCache_;
    std::optional<Path> folder_;
    std::vector<BrowserEntry> entries_;
    bool listing_ = false;
    std::error_code folderError_;
    std::string query_;
    std::optional<std::string> category_;
    std::optional<std::string> libraryFilter_;
    std::vector<BrowserEntry> results_;
    bool searchRunning_ = false;
    std::set<std::string> indexing_;
    int64_t indexedCount_ = 0;
    Catalog::Counts categories_;
    Catalog::Counts libraries_;
    std::optional<std::string> message_;

    // Counts of questions; an answer to an older one is dropped. Read by the queues too, to skip what is stale.
    std::atomic<uint64_t> listGen_{0};
    std::atomic<uint64_t> searchGen_{0};
    std::atomic<uint64_t> facetGen_{0};
    std::atomic<uint64_t> metaGen_{0};
    RealPaths realPaths_;
    std::map<std::string, Scan> scans_;
    std::set<std::string> removing_;  // roots whose rows are about to go
    std::map<std::string, std::string> rootProblems_;
    Moves lastRenames_;
    int pending_ = 0;
    bool pulling_ = false;
    std::stop_source ending_;
    TimerHandle debounce_;
    TimerHandle pullTimer_;
    // Edits and pulls take turns, so that neither overwrites what the other has just written.
    SerialQueue edits_{"Brindlehum.edits"};
    SerialQueue searches_{"Brindlehum.search"};
    SerialQueue lists_{"Brindlehum.list"};
    SerialQueue facts_{"Brindlehum.facts"};  // facets, and metadata for the inspector
};

}  // namespace brindlehum
