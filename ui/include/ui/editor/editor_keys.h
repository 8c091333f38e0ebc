// EditorKeys: what the arrow keys do to cursor and selection, without a widget.
#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "mix/config/frame_range.h"

namespace brindlehum::EditorKeys {

enum class Key { left, right, home, end, leftFar, rightFar };

struct Surface {
    int64_t total = 0;  // frames
    int64_t cursor = 0;
    std::optional<FrameRange> selection;
    double step = 1;                 // frames of one arrow, at least 1
    std::span<const int64_t> stops;  // where the far arrows stop, besides the ends: frames, ascending
};

struct Moved {
    int64_t cursor = 0;
    std::optional<FrameRange> selection;
    bool operator==(const Moved&) const = default;
};

// `extends`, with Shift, moves the edge of the selection at which the cursor stands; otherwise an arrow leaves a
// selection by its own side. Without stops, the far arrows go ten steps.
Moved moved(Key key, bool extends, const Surface& surface);

}  // namespace brindlehum::EditorKeys
