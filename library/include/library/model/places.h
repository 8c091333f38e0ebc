// Places: the folders that the sidebar offers besides the library's own.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace brindlehum {

// The user's music, desktop and downloads folders whether they exist or not, then `pullsFolder`, then the volumes.
std::vector<std::filesystem::path> placesOf(const std::string& pullsFolder);
std::filesystem::path musicFolder();

// Of a table in the form of /proc/self/mountinfo, the mount points that a person would call a volume: disks, cards
// and shares; not the root of the system, its own partitions, its pseudo file systems, images mounted as packages, or
// anything hidden. No volume is touched, for one that hangs would hang the caller.
std::vector<std::filesystem::path> volumesOf(std::string_view mountInfo);

}  // namespace brindlehum
