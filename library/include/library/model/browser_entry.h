// BrowserEntry: one line of the browser, a folder or a sound.
#pragma once

#include <filesystem>
#include <optional>

#include "library/catalog/catalog.h"

namespace brindlehum {

struct BrowserEntry {
    std::filesystem::path url;
    bool isFolder = false;
    std::optional<Catalog::Row> row;  // set for a catalogued sound
    double modified = 0;              // time of modification where there is no row; seconds since 1970, 0 when unknown
    bool operator==(const BrowserEntry&) const = default;
};

}  // namespace brindlehum
