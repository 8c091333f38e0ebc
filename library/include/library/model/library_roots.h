// LibraryRoots: the folders of the library, their scans, and the edits that the team has logged in them.
#pragma once

#include <QObject>
#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "library/model/real_paths.h"
#include "library/scan/library_scanner.h"
#include "platform/background.h"
#include "settings/settings_store.h"

namespace brindlehum {

// Main thread. The list of roots itself is the settings'; a root is named here as the settings spell it. Without a
// catalog nothing is scanned or pulled.
class LibraryRoots : public QObject {
    Q_OBJECT
public:
    static constexpr double pullSeconds = 60;

    // `catalog`, `realPaths` and `edits`, the queue of all edits, outlive the roots.
    LibraryRoots(SettingsStore& settings, MainLoop& loop, Catalog* catalog, RealPaths& realPaths, Background& edits);
    // Asks all scans to stop and waits for them.
    ~LibraryRoots() override;

    const std::set<std::string>& indexing() const { return indexing_; }  // roots being scanned
    // Files done and found of a root being scanned; none for another.
    std::optional<LibraryScanner::Progress> scanProgress(const std::string& root) const;
    // Why the last scan of a root was incomplete, for the roots where it was.
    const std::map<std::string, std::string>& problems() const { return problems_; }
    void add(const std::filesystem::path& folder);
    void remove(const std::string& root);  // its files stay; their rows go
    void rescan(const std::string& root);
    void rescanAll();
    // Applies the edits that the team has logged. Runs by itself after each scan and every pullSeconds.
    void pull();
    bool isScanning() const { return !scans_.empty(); }

Q_SIGNALS:
    void indexingChanged();  // a scan began, went on or ended
    void catalogChanged();   // rows came, went or changed
    void said(const std::string& message);
    void unsaid(const std::string& message);  // holds no longer

private:
    // The newest progress on its way to the main thread; progress that the main thread is too slow for is skipped.
    struct ScanReport {
        std::mutex lock;
        LibraryScanner::Progress latest;
        bool told = false;
    };
    // A thread for each scan, so that a share that hangs holds up no other root.
    struct Scan {
        explicit Scan(MainLoop& loop) : thread(loop, "Brindlehum.walk") {}
        LibraryScanner::Progress progress;
        Background thread;
    };
    LibraryScanner::Result scan(const std::string& root, const std::vector<std::string>& others,
                                const Background::Task& task);
    void scanEnded(const std::string& root, const LibraryScanner::Result& result);
    void removeRows(const std::string& root);
    void rowsRemoved(const std::string& root);

    SettingsStore& settings_;
    MainLoop& loop_;
    Catalog* catalog_;
    RealPaths& realPaths_;
    Background& edits_;
    std::set<std::string> indexing_;
    std::set<std::string> removing_;  // roots whose rows are about to go
    std::map<std::string, std::string> problems_;
    Background::Line pulls_;
    TimerHandle pullTimer_;
    std::map<std::string, Scan> scans_;
};

}  // namespace brindlehum
