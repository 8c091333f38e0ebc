// Walks over the chunk headers of a RIFF/WAVE file.
#include "meta/riff_walk.h"

#include <algorithm>
#include <utility>

#include "base/text.h"

namespace brindlehum::RIFFMeta {

using namespace std::string_view_literals;

namespace {

constexpr uint64_t elsewhere = 0xFFFFFFFF;  // a size of RF64 that stands in `ds64`
constexpr std::string_view guidTail = "\xF3\xAC\xD3\x11\x8C\xD1\x00\xC0\x4F\x8E\xDB\x8A"sv;
constexpr std::string_view riffGuid = "riff\x2E\x91\xCF\x11\xA5\xD6\x28\xDB\x04\xC1\x00\x00"sv;

// True when the id is readable and the content fits into the file.
bool makesSense(const char* header, uint64_t room) {
    const auto readable = [](char c) { return c >= 0x20 && c <= 0x7E; };
    return std::ranges::all_of(header, header + 4, readable) && readLE(header + 4, 4) <= room;
}

// Some writers omit the pad byte of an odd chunk. This one did if the next header makes sense only without the pad.
bool padIsMissing(const FileHandle& file, uint64_t position, uint64_t end) {
    char bytes[9] = {};
    if (position + 8 > end || file.readAt(int64_t(position), bytes, sizeof bytes) < 8) { return false; }
    const uint64_t room = end - position - 8;
    return makesSense(bytes, room) && (room == 0 || !makesSense(bytes + 1, room - 1));
}

std::optional<Container> containerOf(const FileHandle& file) {
    char head[w64HeadBytes];
    const int64_t got = file.readAt(0, head, sizeof head);
    const std::string_view text(head, size_t(std::max<int64_t>(0, got)));
    if (text.size() == w64HeadBytes && text.starts_with(riffGuid) && text.substr(24, 4) == "wave" &&
        text.substr(28) == guidTail) {
        return Container::w64;
    }
    if (text.size() < 12 || text.substr(8, 4) != "WAVE") { return std::nullopt; }
    if (text.starts_with("RIFF")) { return Container::riff; }
    return text.starts_with("RF64") || text.starts_with("BW64") ? std::optional(Container::rf64) : std::nullopt;
}

// The sizes in `ds64`: of the sound, and of other chunks by id.
class LargeSizes {
public:
    void read(const std::string& ds64) {
        if (ds64.size() < 28) { return; }
        const uint64_t entries = std::min<uint64_t>(readLE(&ds64[24], 4), (ds64.size() - 28) / 12);
        sizes_.emplace_back("data", readLE(&ds64[8], 8));
        for (uint64_t i = 0; i < entries; ++i) {
            const char* entry = &ds64[28 + i * 12];
            sizes_.emplace_back(std::string(entry, 4), readLE(entry + 4, 8));
        }
    }
    // Chunks with the same id take their entries in turn.
    std::optional<uint64_t> take(std::string_view id) {
        const auto found = std::ranges::find(sizes_, id, &std::pair<std::string, uint64_t>::first);
        if (found == sizes_.end()) { return std::nullopt; }
        const uint64_t size = found->second;
        sizes_.erase(found);
        return size;
    }

private:
    std::vector<std::pair<std::string, uint64_t>> sizes_;
};

std::string idOf(Container container, std::string_view header) {
    if (container != Container::w64) { return repairUtf8(header.substr(0, 4)); }
    const bool known = header.substr(4, guidTail.size()) == guidTail;
    return known ? repairUtf8(header.substr(0, 4)) : std::string();
}

}  // namespace

std::optional<Walk> walk(const FileHandle& file) {
    const auto container = containerOf(file);
    if (!container) { return std::nullopt; }
    Walk walk;
    walk.container = *container;
    const size_t headBytes = headerBytes(*container);
    const bool isW64 = *container == Container::w64;
    const auto end = uint64_t(file.size());
    LargeSizes large;
    uint64_t position = isW64 ? w64HeadBytes : 12;
    while (position + headBytes <= end) {
        // A recording that was never closed may state the size 0; its silence then reads as countless empty chunks.
        if (walk.chunks.size() == maxChunks) { return walk; }
        char header[24];
        if (!file.readExactly(int64_t(position), header, headBytes)) { return walk; }
        const std::string id = idOf(*container, {header, headBytes});
        uint64_t stated = isW64 ? readLE(header + 16, 8) : readLE(header + 4, 4);
        if (isW64 && stated < headBytes) { return walk; }  // what follows can't be understood
        if (isW64) { stated -= headBytes; }
        walk.sizedElsewhere.push_back(*container == Container::rf64 && stated == elsewhere);
        if (walk.sizedElsewhere.back()) { stated = large.take(id).value_or(stated); }
        const uint64_t room = end - position - headBytes;
        walk.chunks.push_back({id, position + headBytes, std::min(stated, room)});
        if (id == "ds64") { large.read(content(file, walk.chunks.back(), 1 << 20)); }
        walk.cutOff = stated > room;
        if (walk.cutOff) {
            position = end;
            break;
        }
        position += headBytes + stated;
        const uint64_t pad = padding(*container, stated);
        const bool missing = !isW64 && pad > 0 && padIsMissing(file, position, end);
        if (!missing) { position += pad; }
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
    return le64(value).substr(0, 4);
}

std::string le64(uint64_t value) {
    std::string bytes;
    for (int i = 0; i < 8; ++i) { bytes += char(value >> 8 * i & 0xFF); }
    return bytes;
}

uint64_t readLE(const char* bytes, size_t count) {
    uint64_t value = 0;
    for (size_t i = count; i > 0; --i) { value = value << 8 | uint8_t(bytes[i - 1]); }
    return value;
}

size_t idBytes(Container container) {
    return container == Container::w64 ? 16 : 4;
}

size_t headerBytes(Container container) {
    return container == Container::w64 ? 24 : 8;
}

std::string storedId(Container container, std::string_view id) {
    return std::string(id).append(container == Container::w64 ? guidTail : ""sv);
}

std::string storedSize(Container container, uint64_t contentBytes) {
    if (container == Container::w64) { return le64(contentBytes + headerBytes(container)); }
    return le32(uint32_t(std::min(contentBytes, elsewhere)));
}

uint64_t padding(Container container, uint64_t contentBytes) {
    const uint64_t unit = container == Container::w64 ? 8 : 2;
    return (unit - contentBytes % unit) % unit;
}

}  // namespace brindlehum::RIFFMeta
