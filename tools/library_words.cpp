// Finds the catalog and the roots that the library commands work on.
#include "library_words.h"

#include "base/error.h"
#include "base/path.h"
#include "library/catalog/catalog_location.h"
#include "settings/settings_store.h"

namespace brindlehum::cli {

std::unique_ptr<Catalog> LibraryWords::open() const {
    try {
        const auto sayWaiting = [name = catalogFile.string()] {
            printError("catalog " + name + ": waiting for another program that has locked it");
        };
        return std::make_unique<Catalog>(catalogFile, LockWait{sayWaiting, {}});
    } catch (const std::exception& error) { throw Error("catalog " + catalogFile.string() + ": " + error.what()); }
}

std::unique_ptr<Catalog> LibraryWords::openExisting() const {
    std::error_code error;
    return std::filesystem::exists(catalogFile, error) ? open() : nullptr;
}

LibraryWords libraryWords(Words words) {
    if (!words.empty() && words.back() == "catalog") { throw UsageError("catalog: no path given"); }
    LibraryWords library;
    if (words.size() >= 2 && words[words.size() - 2] == "catalog") {
        library.catalogFile = words.back();
        words = words.first(words.size() - 2);
    } else {
        library.catalogFile = defaultCatalogFile();
        FileDefaults defaults;
        const SettingsStore settings(defaults);
        for (const std::string& root : settings.value().libraryRoots) { library.roots.push_back(canonicalPath(root)); }
    }
    library.rest.assign(words.begin(), words.end());
    return library;
}

}  // namespace brindlehum::cli
