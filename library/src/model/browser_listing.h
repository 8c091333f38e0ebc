// Browser listing: the folders and sounds in a folder, with the rows of catalogued sounds.
#pragma once

#include <filesystem>
#include <stop_token>
#include <system_error>
#include <vector>

#include "library/model/browser_entry.h"

namespace brindlehum {

struct BrowserListing {
    std::vector<BrowserEntry> entries;  // folders, then sounds, each by name in natural order
    std::error_code error;              // why the folder couldn't be read
};
// Leaves out hidden items and treats links as their targets. When `stop` is requested, ends early and returns nothing.
// Blocking I/O; any thread.
BrowserListing listForBrowser(const std::filesystem::path& folder, Catalog* catalog, const std::stop_token& stop);

}  // namespace brindlehum
