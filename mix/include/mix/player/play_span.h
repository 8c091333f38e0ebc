// Where playing starts and ends, and which selections count, as pure functions.
#pragma once

#include <cstdint>
#include <optional>

#include "mix/player/frame_range.h"

namespace brindlehum {

struct PlaySpan {
    int64_t start = 0;
    FrameRange range;  // where it ends, and which part a loop repeats
    bool operator==(const PlaySpan&) const = default;
};

// A start from `from` in a sound of `frames` frames. Playing stays in the selection, if there is one; a start outside
// goes to its beginning.
PlaySpan playSpan(int64_t from, const std::optional<FrameRange>& selection, int64_t frames);

// The part of `range` inside the sound; none when it isn't longer than 10 ms.
std::optional<FrameRange> validSelection(FrameRange range, int64_t frames, double sampleRate);

}  // namespace brindlehum
