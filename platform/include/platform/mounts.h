// Mounts: the disks, cards and shares that are mounted now.
#pragma once

#include <filesystem>
#include <string_view>
#include <vector>

namespace brindlehum {

// The mount points in a table in the form of /proc/self/mountinfo that a person would call a volume: disks, cards and
// shares. Leaves out the root of the system, its own partitions, pseudo file systems, images mounted as packages, and
// hidden mounts. Doesn't touch the volumes, since one that hangs would hang the caller.
std::vector<std::filesystem::path> volumesIn(std::string_view mountInfo);

// The volumes of this process's own table.
std::vector<std::filesystem::path> mountedVolumes();

}  // namespace brindlehum
