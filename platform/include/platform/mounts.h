// Mounts: the disks, cards and shares that are mounted now.
#pragma once

#include <filesystem>
#include <string_view>
#include <vector>

namespace brindlehum {

// The mount points that a person would call a volume (disks, cards and shares), from a table in the format of
// /proc/self/mountinfo. Leaves out the root of the system, its own partitions, pseudo file systems, images mounted as
// packages, and hidden mounts. Doesn't touch the volumes, since one that hangs would hang the caller.
std::vector<std::filesystem::path> volumesIn(std::string_view mountInfo);

// The volumes in this process's own table.
std::vector<std::filesystem::path> mountedVolumes();

}  // namespace brindlehum
