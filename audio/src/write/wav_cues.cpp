// Writes cue points, and the lengths of their regions into the entries that they came with.
#include "write/wav_cues.h"

#include <algorithm>
#include <cstdint>
#include <limits>

namespace brindlehum {
namespace {

constexpr size_t lengthAt = 12;  // in an `ltxt` chunk: behind its head and the point's name

std::string little32(uint64_t value) {
    std::string bytes;
    for (int i = 0; i < 4; ++i) { bytes += char(uint8_t(value >> (8 * i))); }
    return bytes;
}

size_t numberAt(const std::string& bytes, size_t at) {
    size_t value = 0;
    for (size_t i = 4; i > 0; --i) { value = value << 8 | uint8_t(bytes[at + i - 1]); }
    return value;
}

std::string chunk(const std::string& id, const std::string& body) {
    return id + little32(body.size()) + body + std::string(body.size() % 2, '\0');
}

// The region may have grown or shrunk since its entry was read.
std::string entriesOf(const WavCue& cue) {
    std::string entries = cue.entries;
    for (size_t at = 0; at + lengthAt + 4 <= entries.size();) {
        const size_t size = numberAt(entries, at + 4);
        if (entries.compare(at, 4, "ltxt") == 0 && size >= 8) {
            entries.replace(at + lengthAt, 4, little32(uint64_t(cue.length)));
        }
        at += 8 + size + size % 2;
    }
    return entries;
}

}  // namespace

std::string cueChunks(const std::vector<WavCue>& cues) {
    std::string points;
    std::string entries = "adtl";
    for (const WavCue& cue : cues) {
        if (cue.frame < 0 || cue.frame > std::numeric_limits<uint32_t>::max()) { continue; }
        // The second field is the point's place in a play list, which is the frame where there is none.
        const std::string frame = little32(uint64_t(cue.frame));
        points += little32(cue.name) + frame + "data" + little32(0) + little32(0) + frame;
        entries += entriesOf(cue);
    }
    if (points.empty()) { return {}; }
    const std::string out = chunk("cue ", little32(points.size() / 24) + points);
    return entries.size() == 4 ? out : out + chunk("LIST", entries);
}

}  // namespace brindlehum
