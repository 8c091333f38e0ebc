// The channel layout tags of CAF, AIFF and QuickTime files, with the labels that each tag means.
#pragma once

#include <cstdint>
#include <span>

namespace brindlehum::layout_tags {

struct LayoutTag {
    uint32_t tag;  // identifier in the upper half, channel count in the lower
    uint8_t labels[16];
    constexpr uint32_t channels() const { return tag & 0xFFFF; }
};

// All known tags; ambiguous ones (octagonal, cube, TMH, CICP) are left out and count as unknown.
std::span<const LayoutTag> all();
// The entry for a tag; null for an unknown one.
const LayoutTag* find(uint32_t tag);

}  // namespace brindlehum::layout_tags
