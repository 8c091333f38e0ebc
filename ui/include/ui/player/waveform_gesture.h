// WaveformGesture: turns mouse events on a waveform into seek, selection and drag, as a state machine without a widget.
#pragma once

#include <cstdint>
#include <optional>
#include <variant>

#include "mix/config/frame_range.h"
#include "mix/player/visible_range.h"

namespace brindlehum::WaveformGesture {

// Logical pixels from the upper left corner of the waveform.
struct Point {
    double x = 0;
    double y = 0;
    bool operator==(const Point&) const = default;
};

// Movement on either axis beyond which a press is a drag, in logical pixels.
inline constexpr double dragThreshold = 3;

// Reach of a selection's handles on either side of its edges, in logical pixels.
inline constexpr double handleReach = 5;

struct Idle {
    bool operator==(const Idle&) const = default;
};
struct Pending {
    Point start;
    bool inSelection = false;
    bool whole = false;  // Control was held: the drag takes the whole file
    // The press was on a handle of the selection: its other edge, in frames.
    std::optional<int64_t> otherEdge = {};
    bool operator==(const Pending&) const = default;
};
struct Selecting {
    int64_t anchor = 0;  // frame
    bool operator==(const Selecting&) const = default;
};
// A file is being dragged out; the system has grabbed the mouse.
struct Dragging {
    bool operator==(const Dragging&) const = default;
};
using Gesture = std::variant<Idle, Pending, Selecting, Dragging>;

// The waveform that the gesture is made on.
struct Surface {
    double width = 0;  // logical pixels
    VisibleRange visible;
    std::optional<FrameRange> selection;
    bool canDragSelection = false;  // a drag from inside the selection takes it out instead of selecting anew
};

struct Press {
    Point at;
    bool whole = false;
};
struct Move {
    Point at;
};
struct Release {
    Point at;
};
// Escape was pressed, or the mouse was taken away.
struct Cancel {};
using Event = std::variant<Press, Move, Release, Cancel>;

struct Seek {
    int64_t frame = 0;
    bool operator==(const Seek&) const = default;
};
// The selection while it is drawn; the model doesn't have it yet.
struct Preview {
    FrameRange range;
    bool operator==(const Preview&) const = default;
};
// The finished selection; may be empty.
struct Select {
    FrameRange range;
    bool operator==(const Select&) const = default;
};
struct StartDrag {
    bool selectionOnly = false;
    bool operator==(const StartDrag&) const = default;
};
using Action = std::variant<std::monostate, Seek, Preview, Select, StartDrag>;

struct Step {
    Gesture next;
    Action action;
};

// The drag that a press may still become; none for one that will select or only click.
std::optional<StartDrag> possibleDrag(const Gesture& gesture, const Surface& surface);
Step step(const Gesture& gesture, const Event& event, const Surface& surface);

// The frame under x, which is clamped to the width; 0 without frames or width.
int64_t frameAt(double x, const Surface& surface);
// The edge of the selection opposite to the one whose handle is at x, in frames; none away from both.
std::optional<int64_t> edgeOpposite(double x, const Surface& surface);

}  // namespace brindlehum::WaveformGesture
