// How much memory this process may still take.
#pragma once

#include <cstdint>
#include <filesystem>

namespace brindlehum {

// Bytes that the system can give without swapping, at most what is left in the control groups of this process (cgroup
// v2). The largest number where neither is known. Reads /proc and /sys, below `root`; any thread.
int64_t memoryLeft(const std::filesystem::path& root = "/");

}  // namespace brindlehum
