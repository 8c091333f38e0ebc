// ContainerContent: what a container holds besides its layout, to compare two versions of a file.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "base/file_handle.h"

namespace brindlehum {

struct ContainerContent {
    std::array<uint8_t, 16> packets{};        // MD5 of all packets of all streams, with their times
    std::map<std::string, std::string> tags;  // of the file, its streams and chapters; names in lower case, UTF-8

    bool operator==(const ContainerContent&) const = default;
};

// Reads the whole file; none when its container isn't known or the system refuses a read. Any thread.
std::optional<ContainerContent> containerContent(const std::shared_ptr<FileHandle>& file);

}  // namespace brindlehum
