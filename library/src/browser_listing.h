// Browser listing: what a folder holds for the browser, with the rows of what is catalogued.
#pragma once

#include <filesystem>
#include <functional>
#include <vector>

#include "library/browser_entry.h"

namespace brindlehum {

// Folders, then sounds, by name in natural order. Hidden items are left out, links count as what they lead to. Empty
// when the folder can't be read, or when `isStale` holds on the way. Blocking I/O; any thread.
std::vector<BrowserEntry> listForBrowser(const std::filesystem::path& folder, Catalog* catalog,
                                         const std::function<bool()>& isStale);

}  // namespace brindlehum
