// Pure functions that decide where playing starts and ends, and which selections are long enough.
#pragma once

#include <cstdint>
#include <optional>

#include "mix/config/frame_range.h"

namespace brindlehum {

struct PlaySpan {
    int64_t start = 0;
    FrameRange range;  // the part to play, which a loop repeats
    bool operator==(const PlaySpan&) const = default;
};

// The span for a start at frame `from` in a sound of `frames` frames. Playing stays in the selection, if there is one;
// a start outside it moves to its beginning.
PlaySpan playSpan(int64_t from, const std::optional<FrameRange>& selection, int64_t frames);

// The part of `range` inside the sound; none when it is 10 ms long or shorter.
std::optional<FrameRange> validSelection(FrameRange range, int64_t frames, double sampleRate);

}  // namespace brindlehum
