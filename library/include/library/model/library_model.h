// LibraryModel: the library for the user interface; owns its parts, connects them, and holds the state they share.
#pragma once

#include <QObject>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "library/model/folder_listing.h"
#include "library/model/info_cache.h"
#include "library/model/library_roots.h"
#include "library/model/library_search.h"
#include "library/model/metadata_edits.h"
#include "library/model/real_paths.h"
#include "platform/background.h"
#include "platform/main_loop.h"
#include "settings/settings_store.h"

namespace brindlehum {

// Main thread. Only background threads touch disks and the catalog; nothing here waits. The catalog is opened in the
// background, too; until then, and without one, the library shows folders only. A catalog that another program has
// locked is tried again every retrySeconds.
class LibraryModel : public QObject {
    Q_OBJECT
public:
    // Opens the first library root, or the user's music folder, and starts a scan of all roots.
    LibraryModel(SettingsStore& settings, MainLoop& loop, const std::filesystem::path& catalogFile);
    // Cancels scans, drops work that can be repeated, and finishes saves and renames.
    ~LibraryModel() override;

    FolderListing& listing() { return listing_; }
    LibrarySearch& search() { return search_; }
    LibraryRoots& roots() { return roots_; }
    MetadataEdits& edits() { return edits_; }
    InfoCache& infoCache() { return infoCache_; }

    static constexpr double readingSeconds = 20;
    // For the status line, until there was time to read it; messageChanged().
    const std::optional<std::string>& message() const { return message_; }
    static constexpr double retrySeconds = 5;
    // Null until it is open; catalogStateChanged().
    Catalog* catalog() { return isOpen_ ? catalog_.get() : nullptr; }
    // Why it couldn't be opened, without its name; empty while it is being opened, and once it is.
    const std::string& catalogError() const { return catalogError_; }
    bool isBusy() const;  // some background work hasn't returned yet

Q_SIGNALS:
    void messageChanged();
    void catalogStateChanged();

private:
    struct Opening {
        std::string error;  // empty: it is open
        bool locked = false;
    };
    void openCatalog();
    Opening tryToOpen(const std::stop_token& stop);  // on the queue of edits
    void opened(const Opening& opening);
    void catalogChanged();
    void say(const std::string& message);
    void keepSaying(const std::string& message);

    MainLoop& loop_;
    const std::filesystem::path catalogFile_;
    std::string catalogError_;
    std::unique_ptr<Catalog> catalog_;  // written by tryToOpen()
    bool isOpen_ = false;
    TimerHandle retry_;
    std::optional<std::string> message_;
    TimerHandle messageEnds_;
    RealPaths realPaths_;
    Background editQueue_;  // also used for pulls, so that edits and pulls take turns
    InfoCache infoCache_;
    FolderListing listing_;
    LibrarySearch search_;
    LibraryRoots roots_;
    MetadataEdits edits_;
};

}  // namespace brindlehum
