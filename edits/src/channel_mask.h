// The dwChannelMask of written edits.
#pragma once

#include <cstddef>
#include <cstdint>

namespace brindlehum {

constexpr uint32_t channelMask(size_t channels) {
    if (channels == 1) { return 4; }  // front centre
    return channels == 2 ? 3 : 0;
}

}  // namespace brindlehum
