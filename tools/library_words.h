// The library that a command works on: the user's own, or a catalog named at the end by "catalog PATH".
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
    std::vector<std::string> roots;  // canonical, of the user's settings; none for a named catalog
    std::vector<std::string> rest;   // the other words

    // Creates the catalog if there is none. Throws when it can't be opened.
    std::unique_ptr<Catalog> open() const;
    // Null if there is no catalog.
    std::unique_ptr<Catalog> openExisting() const;
};

// Throws UsageError for a "catalog" without its path.
LibraryWords libraryWords(Words words);

}  // namespace brindlehum::cli
