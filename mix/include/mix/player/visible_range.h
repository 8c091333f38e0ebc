// VisibleRange: the part of a sound that a waveform shows; zoom, scroll and follow as pure functions.
#pragma once

#include <cstdint>

#include "mix/config/frame_range.h"

namespace brindlehum {

struct VisibleRange {
    // The closest zoom, in frames: at the usual widths a frame is then some 30 pixels wide.
    static constexpr double minLength = 32;

    int64_t total = 0;    // frames of the sound
    double first = 0;     // frame at the left edge, 0 to total - length
    double length = 0;    // frames from edge to edge, at least minLength or all of a shorter sound
    bool follows = true;  // turns the page when the playhead runs out of sight

    static VisibleRange all(int64_t total) { return {total, 0, double(total), true}; }

    double end() const { return first + length; }
    bool isAll() const { return length >= double(total); }
    bool contains(double frame) const { return frame >= first && frame < end(); }
    // From the left edge, 0, to the right one, 1. A range without frames has the share 0 and the frame 0 alone.
    double frameAt(double share) const { return first + share * length; }
    double shareOf(double frame) const { return length > 0 ? (frame - first) / length : 0; }

    bool operator==(const VisibleRange&) const = default;
};

// Zooms in by a factor above 1, out by one below; the frame at `share` stays where it is, as far as the ends allow.
VisibleRange zoomed(const VisibleRange& range, double factor, double share);
VisibleRange scrolled(const VisibleRange& range, double frames);
// Shows the span with a little room on both sides.
VisibleRange showing(const VisibleRange& range, const FrameRange& span);
// Turns to the page with the frame, unless it is in sight, and follows from there.
VisibleRange revealing(const VisibleRange& range, double frame);
// After a move of the playhead. A zoom or scroll that loses sight of it ends the following, until the playhead comes
// into sight by itself.
VisibleRange followed(const VisibleRange& range, double playhead);

}  // namespace brindlehum
