// FolderListing: the folder that the browser shows, and the entries in it.
#pragma once

#include <QObject>
#include <filesystem>
#include <optional>
#include <system_error>
#include <vector>

#include "library/model/browser_entry.h"
#include "platform/background.h"

namespace brindlehum {

// Main thread. The disk is read in the background; entriesChanged() announces each change.
class FolderListing : public QObject {
    Q_OBJECT
public:
    // Without a catalog, entries have no rows.
    FolderListing(MainLoop& loop, Catalog* catalog);

    const std::optional<std::filesystem::path>& folder() const { return folder_; }
    // Folders first, then sounds, by name, numbers in names by value. Empty for a folder that can't be read.
    const std::vector<BrowserEntry>& entries() const { return entries_; }
    bool isListing() const { return newest_.isBusy(); }        // the entries are on their way
    const std::error_code& error() const { return error_; }    // why the folder can't be read, once it was tried
    bool isBusy() const { return background_.pending() > 0; }  // overtaken listings included
    void open(const std::filesystem::path& folder);
    void refresh();  // lists the folder again; the entries stay until then
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
    Background background_;
};

}  // namespace brindlehum
