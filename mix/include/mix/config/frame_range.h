// FrameRange: a stretch of a sound.
#pragma once

#include <cstdint>

namespace brindlehum {

// Half-open range of source frames.
struct FrameRange {
    int64_t lower = 0;
    int64_t upper = 0;
    bool contains(int64_t frame) const { return frame >= lower && frame < upper; }
    int64_t length() const { return upper - lower; }
    bool operator==(const FrameRange&) const = default;
};

}  // namespace brindlehum
