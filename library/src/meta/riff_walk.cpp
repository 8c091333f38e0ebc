// Walks over the chunk headers of a RIFF/WAVE file.
#include "meta/riff_walk.h"

#include <algorithm>

#include "base/text.h"

namespace brindlehum::RIFFMeta {

namespace {

uint32_t readLE32(const char* bytes) {
    uint32_t value = 0;
    for (int i = 3; i >= 0; --i) { value = value << 8 | uint8_t(bytes[i]); }
    return value;
}

// True when the id is readable and the content fits into the file.
bool makesSense(const char* header, uint64_t room) {
    const auto readable = [](char c) { return c >= 0x20 && c <= 0x7E; };
    return std::ranges::all_of(header, header + 4, readable) && readLE32(header + 4) <= room;
}

// Some writers omit the pad byte of an odd chunk. This one did if the next header makes sense only without the pad.
bool padIsMissing(const FileHandle& file, uint64_t position, uint64_t end) {
    char bytes[9] = {};
    if (position + 8 > end || file.readAt(int64_t(position), bytes, sizeof bytes) < 8) { return false; }
    const uint64_t room = end - position - 8;
    return makesSense(bytes, room) && (room == 0 || !makesSense(bytes + 1, room - 1));
}

}  // namespace

std::optional<Walk> walk(const FileHandle& file) {
    char head[12];
    if (!file.readExactly(0, head, sizeof head)) { return std::nullopt; }
    if (std::string_view(head, 4) != "RIFF" || std::string_view(head + 8, 4) != "WAVE") { return std::nullopt; }
    Walk walk;
    const auto end = uint64_t(file.size());
    uint64_t position = sizeof head;
    while (position + 8 <= end) {
        // A recording that was never closed may state the size 0; its silence then reads as countless empty chunks.
        if (walk.chunks.size() == maxChunks) { return walk; }
        char header[8];
        if (!file.readExactly(int64_t(position), header, sizeof header)) { return walk; }
        const uint64_t stated = readLE32(header + 4);
        const uint64_t room = end - position - 8;
        walk.chunks.push_back({repairUtf8({header, 4}), position + 8, std::min(stated, room)});
        walk.cutOff = stated > room;
        position += 8 + stated;
        if (stated % 2 != 0 && !padIsMissing(file, position, end)) { ++position; }
    }
    walk.toTheEnd = true;
    walk.cutOff |= position < end;
    return walk;
}

std::optional<std::vector<Chunk>> chunks(const FileHandle& file) {
    std::optional<Walk> found = walk(file);
    return found ? std::optional(std::move(found->chunks)) : std::nullopt;
}

const Chunk* find(const std::vector<Chunk>& chunks, std::string_view id) {
    const auto found = std::ranges::find(chunks, id, &Chunk::id);
    return found == chunks.end() ? nullptr : &*found;
}

std::string content(const FileHandle& file, const Chunk& chunk, uint64_t most) {
    std::string bytes(size_t(std::min(chunk.size, most)), '\0');
    bytes.resize(size_t(std::max<int64_t>(0, file.readAt(int64_t(chunk.offset), bytes.data(), bytes.size()))));
    return bytes;
}

std::string le32(uint32_t value) {
    std::string bytes;
    for (int i = 0; i < 4; ++i) { bytes += char(value >> 8 * i & 0xFF); }
    return bytes;
}

}  // namespace brindlehum::RIFFMeta
