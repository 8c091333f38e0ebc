// Translates channel layouts to labels, labels to speakers, and speakers to the WAVE channel mask.
#include "audio/speakers/channel_layout.h"

#include <algorithm>
#include <array>

#include "speakers/layout_tags.h"

namespace brindlehum {

namespace {

using enum SpeakerID;

std::vector<uint32_t> bitmapLabels(uint32_t bitmap) {
    constexpr int knownBits = 18;  // SPEAKER_FRONT_LEFT to SPEAKER_TOP_BACK_RIGHT
    if (bitmap >> knownBits) { return {}; }
    std::vector<uint32_t> out;
    for (uint32_t bit = 0; bit < knownBits; ++bit) {
        if (bitmap >> bit & 1) { out.push_back(bit + 1); }
    }
    return out;
}

// `sides`: the label's list also names side speakers, so plain surrounds are at the back.
std::optional<SpeakerID> labelSpeaker(uint32_t label, bool sides) {
    switch (label) {
        case 1:
            return L;
        case 2:
            return R;
        case 3:
        case 42:
            return C;
        case 4:
        case 37:
            return LFE;
        case 5:
            return sides ? Lrs : Ls;
        case 6:
            return sides ? Rrs : Rs;
        case 7:
            return Lc;
        case 8:
            return Rc;
        case 9:
            return Cs;
        case 10:
        case 55:
            return Ls;
        case 11:
        case 56:
            return Rs;
        case 12:
            return Tc;
        case 13:
            return Ltf;
        case 15:
            return Rtf;
        case 16:
        case 52:
            return Ltr;
        case 18:
        case 54:
            return Rtr;
        case 33:
        case 63:
            return Lrs;
        case 34:
        case 64:
            return Rrs;
        case 35:
            return Lw;
        case 36:
            return Rw;
        case 49:
        case 60:
            return Ltm;
        case 51:
        case 61:
            return Rtm;
        default:
            return std::nullopt;
    }
}

}  // namespace

std::vector<uint32_t> ChannelLabels::labels(const std::optional<ChannelLayout>& layout) {
    if (!layout) { return {}; }
    if (layout->tag == useDescriptions) { return layout->descriptions; }
    if (layout->tag == useBitmap) { return bitmapLabels(layout->bitmap); }
    // Discrete in order (147) and higher-order Ambisonics (190, 191) name no speakers, so the table lacks them.
    const layout_tags::LayoutTag* entry = layout_tags::find(layout->tag);
    if (!entry) { return {}; }
    return {entry->labels, entry->labels + entry->channels()};
}

std::optional<SpeakerList> ChannelLabels::speakers(const std::vector<uint32_t>& labels) {
    const bool sides = std::ranges::any_of(labels, [](uint32_t l) { return l == 10 || l == 11; });
    SpeakerList out;
    std::array<bool, speakerCount> seen{};
    for (const uint32_t label : labels) {
        const std::optional<SpeakerID> speaker = labelSpeaker(label, sides);
        if (!speaker) { return std::nullopt; }
        if (std::exchange(seen[size_t(*speaker)], true)) { return std::nullopt; }
        out.push_back(*speaker);
    }
    return out;
}

std::optional<uint32_t> WaveMask::bit(SpeakerID speaker, const SpeakerList& in) {
    switch (speaker) {
        case L:
            return 0x1;
        case R:
            return 0x2;
        case C:
            return 0x4;
        case LFE:
            return 0x8;
        case Ls:
            return isRearLayout(in) ? 0x200 : 0x10;
        case Rs:
            return isRearLayout(in) ? 0x400 : 0x20;
        case Lrs:
            return 0x10;
        case Rrs:
            return 0x20;
        case Ltf:
            return 0x1000;
        case Rtf:
            return 0x4000;
        case Ltr:
            return 0x8000;
        case Rtr:
            return 0x20000;
        case Lc:
            return 0x40;
        case Rc:
            return 0x80;
        case Cs:
            return 0x100;
        case Tc:
            return 0x800;
        case Lw:
        case Rw:
        case Ltm:
        case Rtm:
            return std::nullopt;
    }
    return std::nullopt;
}

std::optional<WaveMask::Mask> WaveMask::mask(const SpeakerList& list) {
    std::vector<std::pair<uint32_t, SpeakerID>> pairs;
    Mask out;
    for (const SpeakerID speaker : list) {
        const std::optional<uint32_t> b = bit(speaker, list);
        if (!b || (out.mask & *b)) { return std::nullopt; }
        out.mask |= *b;
        pairs.emplace_back(*b, speaker);
    }
    std::ranges::sort(pairs);
    for (const auto& [b, speaker] : pairs) { out.order.push_back(speaker); }
    return out;
}

}  // namespace brindlehum
