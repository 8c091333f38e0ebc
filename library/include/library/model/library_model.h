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

// Main thread. Only background threads touch disks and the catalog; nothing here waits, except that the constructor
// opens the catalog. Without a catalog, the library shows folders only.
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
    Catalog* catalog() { return catalog_.get(); }                      // null if it couldn't be opened
    const std::string& catalogError() const { return catalogError_; }  // why there is no catalog
    bool isBusy() const;                                               // some background work hasn't returned yet

Q_SIGNALS:
    void messageChanged();

private:
    void catalogChanged();
    void say(const std::string& message);

    MainLoop& loop_;
    std::string catalogError_;
    std::unique_ptr<Catalog> catalog_;
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
