// Browser listing: the folders and sounds in a folder, with the rows of catalogued sounds.
#pragma once

#include <filesystem>
#include <stop_token>
#include <system_error>
#include <vector>

#include "library/model/browser_entry.h"

namespace brindlehum {

struct BrowserListing {
    std::vector<BrowserEntry> entries;  // folders, then sounds, by name in natural order
    std::error_code error;              // why the folder can't be read
};
// Leaves out hidden items and counts links as their targets. Stops early, with nothing, when `stop` is requested.
// Blocking I/O; any thread.
BrowserListing listForBrowser(const std::filesystem::path& folder, Catalog* catalog, const std::stop_token& stop);

}  // namespace brindlehum
