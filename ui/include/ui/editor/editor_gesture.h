// EditorGesture: turns the mouse on the editor's waveform into cursor, selection and pin moves, without a widget.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <variant>

#include "editor/music/pin_moves.h"
#include "mix/player/visible_range.h"

namespace brindlehum::EditorGesture {

inline constexpr double rulerHeight = 24;   // logical pixels, as are the next
inline constexpr double pinReach = 9;       // of a press from a pin
inline constexpr double dragThreshold = 3;  // beyond which a press is a drag
inline constexpr int64_t shortest = 16;     // frames; a selection must be longer

struct Point {
    double x = 0;
    double y = 0;
    bool operator==(const Point&) const = default;
};

struct Idle {
    bool operator==(const Idle&) const = default;
};
struct Pending {
    Point start;
    std::optional<int64_t> anchor;  // extends a selection from here, in frames
    bool operator==(const Pending&) const = default;
};
struct Selecting {
    int64_t anchor = 0;  // frame
    bool operator==(const Selecting&) const = default;
};
struct MovingPin {
    PinKind kind = PinKind::introEnd;
    bool operator==(const MovingPin&) const = default;
};
using Gesture = std::variant<Idle, Pending, Selecting, MovingPin>;

struct Surface {
    double width = 0;  // logical pixels
    VisibleRange visible;
    std::map<PinKind, int64_t> pins;      // frames
    std::optional<FrameRange> selection;  // which a press with Shift extends
    int64_t cursor = 0;
    // Moves a frame onto a beat that is near it on the screen.
    std::function<int64_t(int64_t frame)> snap;
};

struct Press {
    Point at;
    bool isDouble = false;
    bool extends = false;  // with Shift
};
struct Move {
    Point at;
};
struct Release {
    Point at;
};
struct Cancel {};  // Escape, or the mouse was taken away
using Event = std::variant<Press, Move, Release, Cancel>;

struct SetCursor {
    int64_t frame = 0;
    bool operator==(const SetCursor&) const = default;
};
struct Preview {  // while it is drawn
    FrameRange range;
    bool operator==(const Preview&) const = default;
};
struct Select {
    std::optional<FrameRange> range;
    bool operator==(const Select&) const = default;
};
struct MovePin {
    PinKind kind = PinKind::introEnd;
    int64_t frame = 0;
    bool operator==(const MovePin&) const = default;
};
struct SelectBar {
    int64_t frame = 0;
    bool operator==(const SelectBar&) const = default;
};
using Action = std::variant<std::monostate, SetCursor, Preview, Select, MovePin, SelectBar>;

struct Step {
    Gesture next;
    Action action;
};
// A click is a Release that sets the cursor; it also ends the selection.
Step step(const Gesture& gesture, const Event& event, const Surface& surface);

// The frame under x, cut to the document.
int64_t frameAt(double x, const Surface& surface);
// The pin nearest to x, within its reach; none elsewhere, and below the ruler.
std::optional<PinKind> pinAt(const Point& at, const Surface& surface);

}  // namespace brindlehum::EditorGesture
