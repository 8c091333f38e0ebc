// ByteSink: where a file writer puts its bytes.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>

namespace brindlehum {

// What stands at a given offset, so that a header can be patched and a broken-off write repeated. One thread at a time.
class ByteSink {
public:
    virtual ~ByteSink() = default;
    // Writes all of `bytes` at `offset`. Throws Error with the system's reason (a full disk, a quota, a lost volume);
    // then any part of the bytes may stand there.
    virtual void writeAt(uint64_t offset, std::span<const uint8_t> bytes) = 0;
    // Cuts what stands past `length`, and closes; with `sync` the bytes are on the disk afterwards. Throws Error.
    virtual void finish(uint64_t length, bool sync) = 0;
};

// A regular file, created with its parent folders, and emptied if it stands there already. Throws Error. Dropped
// without finish, it is closed as it is.
std::unique_ptr<ByteSink> makeFileSink(const std::filesystem::path& path);

}  // namespace brindlehum
