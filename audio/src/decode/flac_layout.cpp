// Reads the channel layout of a FLAC stream.
#include <array>
#include <charconv>
#include <string>

#include "decode/chunks.h"
#include "decode/container_layout.h"

namespace brindlehum {

namespace {

constexpr uint8_t vorbisComment = 4;

// The mask in a comment; 0 when the block has none or is damaged.
std::optional<uint32_t> commentMask(const FileHandle& file, int64_t body, int64_t size) {
    constexpr std::string_view key = "WAVEFORMATEXTENSIBLE_CHANNEL_MASK=0x";
    constexpr int64_t maxBytes = 1 << 20;
    std::string block(size_t(std::min(size, maxBytes)), '\0');
    if (!file.readExactly(body, block.data(), block.size())) { return std::nullopt; }
    const auto* bytes = reinterpret_cast<const uint8_t*>(block.data());
    size_t at = 0;
    // Vendor string, count, comments: each string follows its little-endian length.
    const auto next = [&]() -> std::optional<std::string_view> {
        if (block.size() - at < 4) { return std::nullopt; }
        const uint32_t length = readLE32(bytes + at);
        at += 4;
        if (block.size() - at < length) { return std::nullopt; }
        const std::string_view text(block.data() + at, length);
        at += length;
        return text;
    };
    if (!next() || block.size() - at < 4) { return std::nullopt; }
    at += 4;
    while (const auto text = next()) {
        if (!text->starts_with(key)) { continue; }
        uint32_t mask = 0;
        std::from_chars(text->data() + key.size(), text->data() + text->size(), mask, 16);
        return mask;
    }
    return std::nullopt;
}

}  // namespace

std::optional<ChannelLayout> flacLayout(const FileHandle& file, int channels) {
    static constexpr std::array<uint32_t, 8> byCount = {0x4, 0x3, 0x7, 0x33, 0x37, 0x3F, 0x70F, 0x63F};
    uint32_t mask = channels >= 1 && channels <= 8 ? byCount[size_t(channels - 1)] : 0;
    constexpr int maxBlocks = 1024;
    int64_t at = 4;
    bool last = false;
    for (int i = 0; i < maxBlocks && !last; ++i) {
        uint8_t head[4];
        if (!file.readExactly(at, head, sizeof head)) { break; }
        last = head[0] & 0x80;
        const int64_t size = readBE32(head) & 0xFFFFFF;
        if ((head[0] & 0x7F) == vorbisComment) {
            mask = commentMask(file, at + 4, size).value_or(mask);
            break;
        }
        at += 4 + size;
    }
    if (mask == 0) { return std::nullopt; }
    return ChannelLayout{ChannelLabels::useBitmap, mask, {}};
}

}  // namespace brindlehum
