// FolderListing: a newer request overtakes a running one, and a refresh that finds no change sends no signal.
#include "library/model/folder_listing.h"

#include "model/browser_listing.h"

namespace brindlehum {

FolderListing::FolderListing(MainLoop& loop, Catalog* catalog) : catalog_(catalog), disk_(loop, "Brindlehum.list") {}

void FolderListing::open(const std::filesystem::path& folder) {
    std::filesystem::path plain = folder.lexically_normal();
    if (!plain.has_filename() && plain.has_relative_path()) { plain = plain.parent_path(); }
    folder_ = std::move(plain);
    entries_.clear();
    error_.clear();
    list(true);
    Q_EMIT entriesChanged();
}

void FolderListing::refresh() {
    if (folder_) { list(isListing()); }
}

void FolderListing::goUp() {
    if (folder_ && *folder_ != "/") { open(folder_->parent_path()); }
}

// With `announced`, sends the signal even if the entries turn out to be the same.
void FolderListing::list(bool announced) {
    disk_.queue().run(
        newest_,
        [folder = *folder_, catalog = catalog_](const Background::Task& task) {
            return listForBrowser(folder, catalog, task.token());
        },
        [this, announced](BrowserListing now) {
            const bool same = now.entries == entries_ && now.error == error_;
            entries_ = std::move(now.entries);
            error_ = now.error;
            if (announced || !same) { Q_EMIT entriesChanged(); }
        });
}

}  // namespace brindlehum
