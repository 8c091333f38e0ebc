// Where the user's own catalog lies.
#pragma once

#include <filesystem>

namespace brindlehum {

// `$XDG_DATA_HOME/Brindlehum/Catalog.sqlite`, by default below `~/.local/share`. Main thread.
std::filesystem::path defaultCatalogFile();

}  // namespace brindlehum
