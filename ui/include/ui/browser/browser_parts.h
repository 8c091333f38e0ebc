// BrowserParts: what of the library and the player the browser works with.
#pragma once

namespace brindlehum {

class FolderListing;
class InfoCache;
class LibraryRoots;
class LibrarySearch;
class MetadataEdits;
class LoadedSound;
class SettingsStore;
class Transport;

// All of them outlive the browser.
struct BrowserParts {
    FolderListing& listing;
    LibrarySearch& search;
    LibraryRoots& roots;
    MetadataEdits& edits;
    InfoCache& infos;
    LoadedSound& sound;
    Transport& transport;
    SettingsStore& settings;
};

}  // namespace brindlehum
