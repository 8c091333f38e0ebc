// MemoryFile: bytes in memory that other code can open as a file.
#pragma once

#include <filesystem>
#include <string_view>

#include "base/descriptor.h"

namespace brindlehum {

// Has no name in any folder, so nothing is left behind, however the process ends.
class MemoryFile {
public:
    // Throws Error when the system makes none.
    MemoryFile();
    // Throws Error when the memory is short.
    void append(std::string_view bytes);
    // For this process, while the object lives.
    std::filesystem::path path() const;

private:
    Descriptor file_;
};

}  // namespace brindlehum
