// Renaming that never replaces another file.
#pragma once

#include <filesystem>

namespace brindlehum {

// False when something stands at `to`, or the file system refuses.
bool renameToFreeName(const std::filesystem::path& from, const std::filesystem::path& to);

}  // namespace brindlehum
