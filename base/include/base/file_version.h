// FileVersion: tells whether a path still leads to the same, unchanged file.
#pragma once

#include <cstdint>
#include <filesystem>

namespace brindlehum {

// Two files of equal versions hold the same bytes, unless a program has set a file's time back. A rename changes
// nothing.
struct FileVersion {
    uint64_t device = 0;
    uint64_t inode = 0;
    int64_t size = 0;      // bytes
    int64_t modified = 0;  // nanoseconds since 1970

    bool operator==(const FileVersion&) const = default;

    // Follows symbolic links. Throws Error when there is no such file. Any thread; asks the disk.
    static FileVersion of(const std::filesystem::path& path);
};

}  // namespace brindlehum
