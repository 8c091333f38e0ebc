// The channel layout that a container states, and its translation to speakers and to the WAVE channel mask.
//
// Layout tags and channel labels are the numbers that CAF, AIFF and QuickTime files store in their `chan` chunk.
#pragma once

#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include "audio/speakers/speakers.h"

namespace brindlehum {

// The layout as the container states it. With `tag` 0 the labels are in `descriptions`; with 0x10000 `bitmap` holds the
// bits of a WAVE dwChannelMask; any other tag means a fixed list of labels.
struct ChannelLayout {
    uint32_t tag = 0;
    uint32_t bitmap = 0;
    std::vector<uint32_t> descriptions;
    bool operator==(const ChannelLayout&) const = default;
};

namespace ChannelLabels {
inline constexpr uint32_t useDescriptions = 0;
inline constexpr uint32_t useBitmap = 0x10000;

// The labels of a layout in channel order; empty without a layout, for discrete and Ambisonic tag families, and for an
// unknown tag or bitmap.
std::vector<uint32_t> labels(const std::optional<ChannelLayout>& layout);
// The speakers that the labels name; none when a label is unknown or two labels name the same speaker.
std::optional<SpeakerList> speakers(const std::vector<uint32_t>& labels);
}  // namespace ChannelLabels

// dwChannelMask of WAVE_FORMAT_EXTENSIBLE (mmreg.h).
namespace WaveMask {
std::optional<uint32_t> bit(SpeakerID speaker, const SpeakerList& in);
struct Mask {
    uint32_t mask = 0;
    SpeakerList order;  // the channel order that a file with this mask must have
};
// None when a speaker has no bit or two share one.
std::optional<Mask> mask(const SpeakerList& list);
}  // namespace WaveMask

}  // namespace brindlehum
