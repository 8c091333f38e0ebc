// BrowserParts: what of the library and the player the browser works with.
#pragma once

namespace brindlehum {

class FolderListing;
class InfoCache;
class LibraryRoots;
class LibrarySearch;
class MetadataEdits;
class PlayerModel;
class SettingsStore;

// All of them outlive the browser.
struct BrowserParts {
    FolderListing& listing;
    LibrarySearch& search;
    LibraryRoots& roots;
    MetadataEdits& edits;
    InfoCache& infos;
    PlayerModel& player;
    SettingsStore& settings;
    bool hasCatalog = true;  // else there is nothing to search
};

}  // namespace brindlehum
