// The editor's gestures.
#include "ui/editor/editor_gesture.h"

#include <algorithm>
#include <cmath>

namespace brindlehum::EditorGesture {
namespace {

FrameRange between(int64_t a, int64_t b) {
    return {std::min(a, b), std::max(a, b)};
}

Step press(const Press& press, const Surface& surface) {
    if (press.isDouble) { return {Idle{}, SelectBar{frameAt(press.at.x, surface)}}; }
    if (const auto pin = pinAt(press.at, surface)) { return {MovingPin{*pin}, {}}; }
    Pending pending{press.at, {}};
    if (press.extends) {
        const int64_t frame = frameAt(press.at.x, surface);
        const FrameRange range = surface.selection.value_or(FrameRange{surface.cursor, surface.cursor});
        // The edge that lies farther away stays.
        pending.anchor = frame - range.lower < range.upper - frame ? range.upper : range.lower;
    }
    return {pending, {}};
}

Step move(const Gesture& gesture, const Point& at, const Surface& surface) {
    const int64_t frame = frameAt(at.x, surface);
    if (const auto* pin = std::get_if<MovingPin>(&gesture)) { return {gesture, MovePin{pin->kind, frame}}; }
    if (const auto* pending = std::get_if<Pending>(&gesture)) {
        if (std::abs(at.x - pending->start.x) <= dragThreshold) { return {gesture, {}}; }
        const int64_t anchor = pending->anchor.value_or(surface.snap(frameAt(pending->start.x, surface)));
        return {Selecting{anchor}, Preview{between(anchor, surface.snap(frame))}};
    }
    if (const auto* selecting = std::get_if<Selecting>(&gesture)) {
        return {gesture, Preview{between(selecting->anchor, surface.snap(frame))}};
    }
    return {gesture, {}};
}

Step release(const Gesture& gesture, const Point& at, const Surface& surface) {
    const int64_t frame = frameAt(at.x, surface);
    std::optional<int64_t> anchor;
    if (const auto* selecting = std::get_if<Selecting>(&gesture)) { anchor = selecting->anchor; }
    if (const auto* pending = std::get_if<Pending>(&gesture)) {
        if (!pending->anchor) { return {Idle{}, SetCursor{frame}}; }
        anchor = pending->anchor;
    }
    if (!anchor) { return {Idle{}, {}}; }
    const FrameRange range = between(*anchor, surface.snap(frame));
    return {Idle{}, Select{range.length() > shortest ? std::optional(range) : std::nullopt}};
}

}  // namespace

int64_t frameAt(double x, const Surface& surface) {
    if (surface.width <= 0) { return 0; }
    const double frame = surface.visible.frameAt(x / surface.width);
    return std::clamp<int64_t>(std::llround(frame), 0, surface.visible.total);
}

std::optional<PinKind> pinAt(const Point& at, const Surface& surface) {
    if (at.y >= rulerHeight || surface.width <= 0) { return std::nullopt; }
    std::optional<PinKind> nearest;
    double distance = pinReach;
    for (const auto& [kind, frame] : surface.pins) {
        const double pole = surface.visible.shareOf(double(frame)) * surface.width;
        const double away = std::abs(pole - at.x);
        // Of two at one place, the later one has its flag on the right.
        if (away < distance || (away == distance && (!nearest || at.x >= pole))) {
            nearest = kind;
            distance = away;
        }
    }
    return nearest;
}

Step step(const Gesture& gesture, const Event& event, const Surface& surface) {
    if (const auto* pressed = std::get_if<Press>(&event)) { return press(*pressed, surface); }
    if (const auto* moved = std::get_if<Move>(&event)) { return move(gesture, moved->at, surface); }
    if (const auto* released = std::get_if<Release>(&event)) { return release(gesture, released->at, surface); }
    const bool drawing = std::holds_alternative<Selecting>(gesture);
    return {Idle{}, drawing ? Action(Select{surface.selection}) : Action()};
}

}  // namespace brindlehum::EditorGesture
