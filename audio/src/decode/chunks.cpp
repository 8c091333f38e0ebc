// Reads the chunk headers of five container families into one form.
#include "decode/chunks.h"

#include <algorithm>
#include <limits>

namespace brindlehum {

namespace {

constexpr uint64_t toTheEnd = std::numeric_limits<uint64_t>::max();

// Bytes of the header, bytes of the content, and the padding multiple of the content.
struct Header {
    size_t idOffset = 0;
    uint64_t headerBytes = 8;
    uint64_t size = 0;
    uint64_t padding = 1;
};

constexpr size_t headerBytes(ChunkStyle style) {
    return style == ChunkStyle::wave64 ? 24 : style == ChunkStyle::caf ? 12 : 8;
}

std::optional<Header> parse(const FileHandle& file, ChunkStyle style, int64_t position, const uint8_t* bytes) {
    switch (style) {
        case ChunkStyle::riff:
            return Header{0, 8, readLE32(bytes + 4), 2};
        case ChunkStyle::aiff:
            return Header{0, 8, readBE32(bytes + 4), 2};
        case ChunkStyle::caf: {
            // -1: the content extends to the end of the file.
            return Header{0, 12, readBE64(bytes + 4), 1};
        }
        case ChunkStyle::wave64: {
            const uint64_t whole = readLE64(bytes + 16);
            if (whole < 24) { return std::nullopt; }
            return Header{0, 24, whole - 24, 8};
        }
        case ChunkStyle::mp4:
            break;
    }
    const uint32_t size = readBE32(bytes);
    if (size == 0) { return Header{4, 8, toTheEnd, 1}; }
    if (size != 1) { return size < 8 ? std::nullopt : std::optional(Header{4, 8, size - 8, 1}); }
    uint8_t large[8];
    if (!file.readExactly(position + 8, large, sizeof large)) { return std::nullopt; }
    const uint64_t whole = readBE64(large);
    return whole < 16 ? std::nullopt : std::optional(Header{4, 16, whole - 16, 1});
}

}  // namespace

std::optional<Chunk> chunkAt(const FileHandle& file, ChunkStyle style, int64_t position, int64_t end) {
    uint8_t bytes[24];
    const size_t need = headerBytes(style);
    if (position < 0 || end - position < int64_t(need) || !file.readExactly(position, bytes, need)) {
        return std::nullopt;
    }
    const std::optional<Header> header = parse(file, style, position, bytes);
    if (!header) { return std::nullopt; }
    Chunk chunk;
    std::copy_n(bytes + header->idOffset, 4, chunk.id.begin());
    chunk.body = position + int64_t(header->headerBytes);
    const uint64_t room = uint64_t(std::max<int64_t>(0, end - chunk.body));
    if (header->size >= room) {
        chunk.size = int64_t(room);
        chunk.next = end;
    } else {
        chunk.size = int64_t(header->size);
        const uint64_t padded = (header->size + header->padding - 1) / header->padding * header->padding;
        chunk.next = chunk.body + int64_t(std::min(padded, room));
    }
    return chunk;
}

std::optional<Chunk> findChunk(const FileHandle& file, ChunkStyle style, int64_t begin, int64_t end,
                               std::string_view name) {
    constexpr int maxChunks = 4096;
    std::optional<Chunk> chunk = chunkAt(file, style, begin, end);
    for (int i = 0; chunk && i < maxChunks; ++i) {
        if (chunk->is(name)) { return chunk; }
        chunk = chunkAt(file, style, chunk->next, end);
    }
    return std::nullopt;
}

}  // namespace brindlehum
