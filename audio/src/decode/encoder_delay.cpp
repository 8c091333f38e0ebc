// Reads encoder delay and padding from the headers that MP3 and AAC encoders write.
#include "decode/encoder_delay.h"

#include <algorithm>
#include <array>
#include <cinttypes>
#include <cstdio>
#include <cstring>
#include <string_view>

#include "decode/chunks.h"

namespace brindlehum {

namespace {

// The delay of every layer III decoder in samples: 528 for the hybrid filter bank plus one.
constexpr int64_t decoderDelay = 529;

// Offset of the first byte after all ID3v2 tags at the start of the file.
int64_t skipID3(const FileHandle& file) {
    int64_t at = 0;
    for (int i = 0; i < 16; ++i) {
        uint8_t head[10];
        if (!file.readExactly(at, head, sizeof head) || std::memcmp(head, "ID3", 3) != 0) { break; }
        const int64_t size = (head[6] & 0x7F) << 21 | (head[7] & 0x7F) << 14 | (head[8] & 0x7F) << 7 | (head[9] & 0x7F);
        at += 10 + size + (head[5] & 0x10 ? 10 : 0);
    }
    return at;
}

struct LayerThreeHeader {
    int samplesPerFrame;
    size_t sideInfoBytes;
};

std::optional<LayerThreeHeader> parseHeader(const uint8_t* bytes) {
    const bool sync = bytes[0] == 0xFF && (bytes[1] & 0xE0) == 0xE0;
    const int version = bytes[1] >> 3 & 3;  // 3: MPEG-1, 2: MPEG-2, 0: MPEG-2.5
    const int layer = bytes[1] >> 1 & 3;    // 1: layer III
    if (!sync || version == 1 || layer != 1) { return std::nullopt; }
    const bool mono = bytes[3] >> 6 == 3;
    if (version == 3) { return LayerThreeHeader{1152, mono ? size_t(17) : 32}; }
    return LayerThreeHeader{576, mono ? size_t(9) : 17};
}

}  // namespace

std::optional<EncodedExtent> mp3Extent(const FileHandle& file) {
    // A little padding may lie between the tags and the first frame.
    std::array<uint8_t, 4096> bytes{};
    const int64_t got = file.readAt(skipID3(file), bytes.data(), bytes.size());
    for (int64_t at = 0; at + 200 <= got; ++at) {
        const uint8_t* frame = bytes.data() + at;
        const auto header = parseHeader(frame);
        if (!header) { continue; }
        const uint8_t* xing = frame + 4 + header->sideInfoBytes;
        const std::string_view id(reinterpret_cast<const char*>(xing), 4);
        if (id != "Xing" && id != "Info") { return std::nullopt; }
        const uint32_t flags = readBE32(xing + 4);
        const int64_t frameCount = flags & 1 ? readBE32(xing + 8) : 0;
        if (frameCount == 0) { return std::nullopt; }
        const size_t tag = 8 + (flags & 1 ? 4 : 0) + (flags & 2 ? 4 : 0) + (flags & 4 ? 100 : 0) + (flags & 8 ? 4 : 0);
        const int64_t total = frameCount * header->samplesPerFrame;
        // Bytes 21 to 23 of the extension hold delay and padding, 12 bits each. Encoders that fill them in put their
        // name at the extension's start.
        const uint8_t* extension = xing + tag;
        if (extension + 24 > bytes.data() + got || extension[0] == 0) { return EncodedExtent{0, total}; }
        const int64_t delay = extension[21] << 4 | extension[22] >> 4;
        const int64_t padding = (extension[22] & 0xF) << 8 | extension[23];
        // The last samples remain in the decoder's delay and are never output.
        const int64_t frames = total - delay - std::max(padding, decoderDelay);
        if (frames <= 0) { return EncodedExtent{0, total}; }
        return EncodedExtent{delay + decoderDelay, frames};
    }
    return std::nullopt;
}

std::optional<EncodedExtent> gaplessRecord(const char* text) {
    unsigned delay = 0;
    unsigned padding = 0;
    uint64_t frames = 0;
    if (std::sscanf(text, "%*x %x %x %" SCNx64, &delay, &padding, &frames) != 3) { return std::nullopt; }
    if (delay > 0xFFFF || frames == 0 || frames > uint64_t(1) << 48) { return std::nullopt; }
    return EncodedExtent{int64_t(delay), int64_t(frames)};
}

std::optional<EncodedExtent> cafExtent(const FileHandle& file) {
    const auto table = findChunk(file, ChunkStyle::caf, 8, file.size(), "pakt");
    uint8_t bytes[24];  // packets, valid frames, priming frames, remainder frames
    if (!table || !file.readExactly(table->body, bytes, sizeof bytes)) { return std::nullopt; }
    const auto frames = int64_t(readBE64(bytes + 8));
    const auto priming = int32_t(readBE32(bytes + 16));
    const auto remainder = int32_t(readBE32(bytes + 20));
    if (frames <= 0 || priming < 0 || remainder < 0 || priming + int64_t(remainder) == 0) { return std::nullopt; }
    return EncodedExtent{priming, frames};
}

}  // namespace brindlehum
