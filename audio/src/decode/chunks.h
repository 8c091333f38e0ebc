// Walks the chunks of the container families: RIFF, Wave64, AIFF, CAF and MP4 boxes.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

#include "base/file_handle.h"

namespace brindlehum {

enum class ChunkStyle { riff, wave64, aiff, caf, mp4 };

struct Chunk {
    std::array<char, 4> id{};  // for Wave64, the first four bytes of the identifier
    int64_t body = 0;          // offset of the content in the file
    int64_t size = 0;          // of the content, cut to the end of the enclosing chunk or file
    int64_t next = 0;          // offset of the next chunk
    bool is(std::string_view name) const { return name == std::string_view(id.data(), id.size()); }
};

// The chunk whose header is at `position`; none at `end`, or when the header is cut off or implausible.
std::optional<Chunk> chunkAt(const FileHandle& file, ChunkStyle style, int64_t position, int64_t end);

// The first chunk with that name between the two offsets, among the first 4096 chunks.
std::optional<Chunk> findChunk(const FileHandle& file, ChunkStyle style, int64_t begin, int64_t end,
                               std::string_view name);

// Read numbers from a byte buffer.
inline uint16_t readLE16(const uint8_t* p) {
    return uint16_t(p[0] | p[1] << 8);
}
inline uint32_t readLE32(const uint8_t* p) {
    return readLE16(p) | uint32_t(readLE16(p + 2)) << 16;
}
inline uint64_t readLE64(const uint8_t* p) {
    return readLE32(p) | uint64_t(readLE32(p + 4)) << 32;
}
inline uint16_t readBE16(const uint8_t* p) {
    return uint16_t(p[0] << 8 | p[1]);
}
inline uint32_t readBE32(const uint8_t* p) {
    return uint32_t(readBE16(p)) << 16 | readBE16(p + 2);
}
inline uint64_t readBE64(const uint8_t* p) {
    return uint64_t(readBE32(p)) << 32 | readBE32(p + 4);
}

}  // namespace brindlehum
