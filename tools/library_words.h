// LibraryWords: the library that a command works on: the user's own, or the one named by a final "catalog PATH".
#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "command.h"
#include "library/catalog/catalog.h"

namespace brindlehum::cli {

struct LibraryWords {
    std::filesystem::path catalogFile;
    std::vector<std::string> roots;  // canonical, from the user's settings; none for a named catalog
    std::vector<std::string> rest;   // the other words

    // Opens the catalog, and creates it if it doesn't exist. Throws when it can't be opened.
    std::unique_ptr<Catalog> open() const;
    // Returns null if there is no catalog.
    std::unique_ptr<Catalog> openExisting() const;
};

// Throws UsageError for "catalog" without a path.
LibraryWords libraryWords(Words words);

}  // namespace brindlehum::cli
