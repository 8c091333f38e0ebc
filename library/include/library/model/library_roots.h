// LibraryRoots: the folders of the library, their scans, and the edits that the team has logged in them.
#pragma once

#include <QObject>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "library/model/real_paths.h"
#include "library/scan/library_scanner.h"
#include "platform/disk_work.h"
#include "settings/settings_store.h"

namespace brindlehum {

// Main thread. The settings hold the list of roots; calls name a root as the settings spell it. Without a catalog,
// nothing is scanned or pulled.
class LibraryRoots : public QObject {
    Q_OBJECT
public:
    static constexpr double pullSeconds = 60;

    // `edits` is the queue of all edits. It, `catalog` and `realPaths` must outlive this object.
    LibraryRoots(SettingsStore& settings, MainLoop& loop, Catalog* catalog, RealPaths& realPaths, Background& edits);
    // Asks all scans to stop and waits for them.
    ~LibraryRoots() override;
    void use(Catalog& catalog) { catalog_ = &catalog; }  // for the next scans and pulls

    const std::set<std::string>& indexing() const { return indexing_; }  // roots being scanned
    // The files done and found so far in a root that is being scanned; none for other roots.
    std::optional<LibraryScanner::Progress> scanProgress(const std::string& root) const;
    // For each root whose last scan was incomplete, the reason.
    const std::map<std::string, std::string>& problems() const { return problems_; }
    void add(const std::filesystem::path& folder);
    void remove(const std::string& root);  // keeps its files, removes its rows
    // Asks mayRemove, if it is set, and removes the root if that agrees.
    void askToRemove(const std::string& root);
    // `losesWords`: the catalog holds, or may hold, words about the root's files that the files themselves can't hold.
    std::function<bool(const std::string& root, bool losesWords)> mayRemove;
    bool isAsking() const { return questions_.pending() > 0; }
    void rescan(const std::string& root);
    void rescanAll();
    // Applies the edits that the team has logged in roots that were scanned to the end, without a failed write. Also
    // runs automatically after each such scan and every pullSeconds.
    void pull();
    bool isScanning() const { return !scans_.empty(); }

Q_SIGNALS:
    void indexingChanged();  // a scan began, progressed or ended
    void catalogChanged();   // rows were added, removed or changed
    void said(const std::string& message);
    void unsaid(const std::string& message);  // no longer true

private:
    // The newest progress for the main thread; skips progress that the main thread is too slow to take.
    struct ScanReport {
        std::mutex lock;
        LibraryScanner::Progress latest;
        bool told = false;
    };
    // Each scan has its own thread, so that a share that hangs doesn't block other roots.
    struct Scan {
        explicit Scan(MainLoop& loop) : thread(loop, "Brindlehum.walk") {}
        LibraryScanner::Progress progress;
        Background thread;
    };
    LibraryScanner::Result scan(const std::string& root, const std::vector<std::string>& others,
                                const Background::Task& task);
    void pullWhileThereAreRoots();
    std::vector<std::string> pulledAmong(std::vector<std::string> roots) const;
    void scanEnded(const std::string& root, const LibraryScanner::Result& result);
    void removeRows(const std::string& root);
    void rowsRemoved(const std::string& root);

    SettingsStore& settings_;
    MainLoop& loop_;
    Catalog* catalog_;
    RealPaths& realPaths_;
    Background& edits_;
    std::set<std::string> indexing_;
    std::set<std::string> scanned_;   // roots with a row for each of their files, by their last scan
    std::set<std::string> removing_;  // roots whose rows are being removed
    std::map<std::string, std::string> problems_;
    Background::Line pulls_;
    TimerHandle pullTimer_;
    std::map<std::string, Scan> scans_;
    Background questions_;
    DiskWork disk_;
};

}  // namespace brindlehum
