// The chunks of a RIFF/WAVE file, in the detail that a rewrite needs.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "library/meta/riff_meta.h"

namespace brindlehum::RIFFMeta {

struct Walk {
    std::vector<Chunk> chunks;
    bool toTheEnd = false;  // false: the file has more than maxChunks
    // The file ends inside the last chunk or its header.
    bool cutOff = false;
};
std::optional<Walk> walk(const FileHandle& file);

const Chunk* find(const std::vector<Chunk>& chunks, std::string_view id);  // the first one; null if there is none

// Reads up to `most` bytes of the content; fewer if the file ends or can't be read.
std::string content(const FileHandle& file, const Chunk& chunk, uint64_t most);

std::string le32(uint32_t value);

}  // namespace brindlehum::RIFFMeta
