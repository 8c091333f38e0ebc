// The location of the user's own catalog.
#pragma once

#include <filesystem>

namespace brindlehum {

// `$XDG_DATA_HOME/Brindlehum/Catalog.sqlite`; the default data folder is `~/.local/share`. Main thread.
std::filesystem::path defaultCatalogFile();

}  // namespace brindlehum
