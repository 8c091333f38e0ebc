// ByteSink: the destination of a file writer's bytes.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>

namespace brindlehum {

// Writes at any offset, so that a writer can patch a header or repeat an interrupted write. One thread at a time.
class ByteSink {
public:
    virtual ~ByteSink() = default;
    // Writes all of `bytes` at `offset`. Throws Error with the system's reason (a full disk, a quota, a lost volume);
    // any part of the bytes may have been written then.
    virtual void writeAt(uint64_t offset, std::span<const uint8_t> bytes) = 0;
    // Cuts the file to `length` and closes it; with `sync`, the bytes are on the disk afterwards. Throws Error.
    virtual void finish(uint64_t length, bool sync) = 0;
};

// Creates a regular file and its parent folders, or empties an existing file. Throws Error. If it is destroyed without
// finish(), the file is closed as it is.
std::unique_ptr<ByteSink> makeFileSink(const std::filesystem::path& path);

}  // namespace brindlehum
