// ScratchFile: bytes kept on disk for as long as the object lives, for work that would fill the memory.
#pragma once

#include <cstddef>
#include <cstdint>

#include "base/descriptor.h"

namespace brindlehum {

// Has no name, so nothing is left behind, however the process ends. Lies in $TMPDIR or else in /var/tmp, which is meant
// for large files, where /tmp may be memory. Reading is safe on any number of threads.
class ScratchFile {
public:
    // Throws Error when no file can be made.
    ScratchFile();
    // Throws Error, for instance on a full disk.
    void append(const void* data, size_t bytes);
    // Throws Error unless all `bytes` can be read.
    void read(int64_t offset, void* out, size_t bytes) const;

private:
    Descriptor file_;
};

}  // namespace brindlehum
