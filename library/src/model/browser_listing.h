// Browser listing: what a folder holds for the browser, with the rows of what is catalogued.
#pragma once

#include <filesystem>
#include <functional>
#include <system_error>
#include <vector>

#include "library/model/browser_entry.h"

namespace brindlehum {

struct BrowserListing {
    std::vector<BrowserEntry> entries;  // folders, then sounds, by name in natural order
    std::error_code error;              // why the folder can't be read
};
// Hidden items are left out, links count as what they lead to. Without entries when `isStale` holds on the way.
// Blocking I/O; any thread.
BrowserListing listForBrowser(const std::filesystem::path& folder, Catalog* catalog,
                              const std::function<bool()>& isStale);

}  // namespace brindlehum
