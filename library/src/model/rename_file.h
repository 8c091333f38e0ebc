// Renames a file without ever replacing another one.
#pragma once

#include <filesystem>

namespace brindlehum {

// False when `to` already exists, or the file system refuses.
bool renameToFreeName(const std::filesystem::path& from, const std::filesystem::path& to);

}  // namespace brindlehum
