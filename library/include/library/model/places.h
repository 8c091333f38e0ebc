// Places: the folders in the sidebar besides the library's own.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace brindlehum {

// The user's music, desktop and downloads folders, whether they exist or not, then `pullsFolder`, then the volumes.
std::vector<std::filesystem::path> placesOf(const std::string& pullsFolder);
std::filesystem::path musicFolder();

}  // namespace brindlehum
