// Recognises a file's container, and reads the channel layout of the RIFF, AIFF, CAF and MP4 families.
#include "decode/container_layout.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string_view>
#include <vector>

#include "decode/chunks.h"

namespace brindlehum {

namespace {

constexpr uint32_t ambisonicBFormatTag = 107U << 16 | 4;

// SUBTYPE_AMBISONIC_B_FORMAT_PCM and _IEEE_FLOAT differ in the first byte only (1 and 3).
constexpr std::array<uint8_t, 15> ambisonicTail = {0x00, 0x00, 0x00, 0x21, 0x07, 0xD3, 0x11, 0x86,
                                                   0x44, 0xC8, 0xC1, 0xCA, 0x00, 0x00, 0x00};

// The content of a WAVEFORMATEXTENSIBLE: tag 0xFFFE, mask at byte 20, subformat GUID at byte 24.
std::optional<ChannelLayout> waveFormatLayout(const FileHandle& file, const Chunk& fmt, bool bigEndian, int channels) {
    uint8_t bytes[40];
    if (fmt.size < int64_t(sizeof bytes) || !file.readExactly(fmt.body, bytes, sizeof bytes)) { return std::nullopt; }
    const uint16_t format = bigEndian ? readBE16(bytes) : readLE16(bytes);
    if (format != 0xFFFE) { return std::nullopt; }
    if (channels == 4 && std::equal(ambisonicTail.begin(), ambisonicTail.end(), bytes + 25)) {
        return ChannelLayout{ambisonicBFormatTag, 0, {}};
    }
    const uint32_t mask = bigEndian ? readBE32(bytes + 20) : readLE32(bytes + 20);
    if (mask == 0) { return std::nullopt; }
    return ChannelLayout{ChannelLabels::useBitmap, mask, {}};
}

std::optional<ChannelLayout> chanLayout(const FileHandle& file, ChunkStyle style, int64_t begin, const char* name) {
    const auto chan = findChunk(file, style, begin, file.size(), name);
    if (!chan) { return std::nullopt; }
    return parseChanChunk(file, chan->body, chan->size);
}

// Mapping family 1: the order of Vorbis (RFC 7845, 5.1.1.2). One and two channels need no labels; other families are
// sound fields, or say nothing.
std::optional<ChannelLayout> opusLayout(const FileHandle& file, int channels) {
    constexpr int64_t familyAt = 46;  // after the page's head
    constexpr int firstMapped = 3;    // channels
    static const std::vector<uint32_t> orders[] = {
        {1, 3, 2},          {1, 2, 5, 6},          {1, 3, 2, 5, 6},
        {1, 3, 2, 5, 6, 4}, {1, 3, 2, 5, 6, 9, 4}, {1, 3, 2, 5, 6, 33, 34, 4}};
    uint8_t family = 0;
    if (!file.readExactly(familyAt, &family, 1) || family != 1) { return std::nullopt; }
    if (channels < firstMapped || channels >= firstMapped + int(std::size(orders))) { return std::nullopt; }
    return ChannelLayout{ChannelLabels::useDescriptions, 0, orders[channels - firstMapped]};
}

}  // namespace

bool lacksBitDepth(const FileHandle& file) {
    constexpr int64_t wholeFormat = 16;
    uint8_t bytes[14];
    const auto fmt = findChunk(file, ChunkStyle::riff, 12, file.size(), "fmt ");
    if (!fmt || fmt->size >= wholeFormat || !file.readExactly(fmt->body, bytes, sizeof bytes)) { return false; }
    constexpr uint16_t linear = 1;
    return readLE16(bytes) == linear && readLE16(bytes + 12) != readLE16(bytes + 2);
}

Container containerOf(const FileHandle& file) {
    char bytes[36] = {};
    file.readAt(0, bytes, sizeof bytes);
    const std::string_view head(bytes, 4);
    const std::string_view form(bytes + 8, 4);
    if (form == "WAVE" && (head == "RIFF" || head == "RF64" || head == "BW64")) { return Container::riff; }
    if (form == "WAVE" && head == "RIFX") { return Container::rifx; }
    if (head == "riff") { return Container::wave64; }
    if (head == "FORM" && (form == "AIFF" || form == "AIFC")) { return Container::aiff; }
    if (head == "caff") { return Container::caf; }
    if (head == "fLaC") { return Container::flac; }
    if (std::string_view(bytes + 4, 4) == "ftyp" || std::string_view(bytes + 4, 4) == "moov") { return Container::mp4; }
    const bool frameSync = bytes[0] == '\xFF' && (bytes[1] & 0xE0) == 0xE0;
    if (frameSync || head.starts_with("ID3")) { return Container::packets; }
    // In Ogg, libsndfile reads only Opus better than FFmpeg: after a seek it lets the decoder settle for longer.
    if (head == "OggS") { return std::string_view(bytes + 28, 8) == "OpusHead" ? Container::opus : Container::packets; }
    return Container::other;
}

std::optional<ChannelLayout> containerLayout(const FileHandle& file, Container container, int channels) {
    switch (container) {
        case Container::riff: {
            const auto fmt = findChunk(file, ChunkStyle::riff, 12, file.size(), "fmt ");
            return fmt ? waveFormatLayout(file, *fmt, false, channels) : std::nullopt;
        }
        case Container::rifx: {
            const auto fmt = findChunk(file, ChunkStyle::aiff, 12, file.size(), "fmt ");
            return fmt ? waveFormatLayout(file, *fmt, true, channels) : std::nullopt;
        }
        case Container::wave64: {
            // The file's own identifier and size come first, then the identifier of the wave form.
            const auto fmt = findChunk(file, ChunkStyle::wave64, 40, file.size(), "fmt ");
            return fmt ? waveFormatLayout(file, *fmt, false, channels) : std::nullopt;
        }
        case Container::aiff:
            return chanLayout(file, ChunkStyle::aiff, 12, "CHAN");
        case Container::caf:
            return chanLayout(file, ChunkStyle::caf, 8, "chan");
        case Container::flac:
            return flacLayout(file, channels);
        case Container::opus:
            return opusLayout(file, channels);
        case Container::mp4:
        case Container::packets:
        case Container::other:
            return std::nullopt;
    }
    return std::nullopt;
}

std::optional<ChannelLayout> parseChanChunk(const FileHandle& file, int64_t body, int64_t size) {
    constexpr int64_t descriptionBytes = 20;  // label, flags, three coordinates
    constexpr int64_t maxDescriptions = 1024;
    uint8_t head[12];
    if (size < int64_t(sizeof head) || !file.readExactly(body, head, sizeof head)) { return std::nullopt; }
    ChannelLayout layout{readBE32(head), readBE32(head + 4), {}};
    const int64_t count = std::min<int64_t>({readBE32(head + 8), (size - 12) / descriptionBytes, maxDescriptions});
    std::vector<uint8_t> bytes(size_t(count * descriptionBytes));
    if (!file.readExactly(body + 12, bytes.data(), bytes.size())) { return layout; }
    for (int64_t i = 0; i < count; ++i) {
        layout.descriptions.push_back(readBE32(bytes.data() + i * descriptionBytes));
    }
    return layout;
}

}  // namespace brindlehum
