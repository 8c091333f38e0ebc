// FolderListing: the folder that the browser shows, and its entries.
#pragma once

#include <QObject>
#include <filesystem>
#include <optional>
#include <system_error>
#include <vector>

#include "library/model/browser_entry.h"
#include "platform/disk_work.h"

namespace brindlehum {

// Main thread. Reads the disk in the background; entriesChanged() announces each change.
class FolderListing : public QObject {
    Q_OBJECT
public:
    // Without a catalog, the entries have no rows.
    FolderListing(MainLoop& loop, Catalog* catalog);
    void use(Catalog& catalog) { catalog_ = &catalog; }  // for the next listings

    const std::optional<std::filesystem::path>& folder() const { return folder_; }
    // Folders first, then sounds, each sorted by name with numbers by value. Empty for a folder that can't be read.
    const std::vector<BrowserEntry>& entries() const { return entries_; }
    bool isListing() const { return newest_.isBusy(); }      // the entries aren't complete yet
    const std::error_code& error() const { return error_; }  // why the last listing failed
    bool isBusy() const { return disk_.pending() > 0; }      // also true for overtaken listings
    void open(const std::filesystem::path& folder);
    void refresh();  // lists the folder again; keeps the entries until then
    void goUp();

Q_SIGNALS:
    void entriesChanged();

private:
    void list(bool announced);

    Catalog* catalog_;
    std::optional<std::filesystem::path> folder_;
    std::vector<BrowserEntry> entries_;
    std::error_code error_;
    Background::Line newest_;
    DiskWork disk_;
};

}  // namespace brindlehum
