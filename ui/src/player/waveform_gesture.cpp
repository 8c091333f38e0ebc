// The steps of the gesture's state machine.
#include "ui/player/waveform_gesture.h"

#include <algorithm>
#include <cmath>

namespace brindlehum::WaveformGesture {
namespace {

int64_t frameAt(const Surface& surface, const Point& at) {
    return WaveformGesture::frameAt(at.x, surface);
}

Step pressed(const Press& press, const Surface& surface) {
    const bool inSelection = surface.selection && surface.selection->contains(frameAt(surface, press.at));
    return {Pending{press.at, inSelection, press.whole, edgeOpposite(press.at.x, surface)}, {}};
}

Step movedWhilePending(const Pending& pending, const Move& move, const Surface& surface) {
    const bool moved =
        std::abs(move.at.x - pending.start.x) > dragThreshold || std::abs(move.at.y - pending.start.y) > dragThreshold;
    if (!moved) { return {pending, {}}; }
    if (const auto drag = possibleDrag(pending, surface)) { return {Dragging{}, *drag}; }
    if (pending.otherEdge) { return {Selecting{*pending.otherEdge}, {}}; }
    return {Selecting{frameAt(surface, pending.start)}, {}};
}

FrameRange rangeFrom(const Selecting& selecting, const Point& at, const Surface& surface) {
    const auto [lower, upper] = std::minmax({selecting.anchor, frameAt(surface, at)});
    return {lower, upper};
}

Step moved(const Gesture& gesture, const Move& move, const Surface& surface) {
    if (const auto* selecting = std::get_if<Selecting>(&gesture)) {
        return {gesture, Preview{rangeFrom(*selecting, move.at, surface)}};
    }
    const auto* pending = std::get_if<Pending>(&gesture);
    if (!pending) { return {gesture, {}}; }
    Step next = movedWhilePending(*pending, move, surface);
    // The move that starts a selection is already part of it.
    if (const auto* selecting = std::get_if<Selecting>(&next.next)) {
        next.action = Preview{rangeFrom(*selecting, move.at, surface)};
    }
    return next;
}

Step released(const Gesture& gesture, const Release& release, const Surface& surface) {
    if (const auto* selecting = std::get_if<Selecting>(&gesture)) {
        return {Idle{}, Select{rangeFrom(*selecting, release.at, surface)}};
    }
    if (std::holds_alternative<Pending>(gesture)) { return {Idle{}, Seek{frameAt(surface, release.at)}}; }
    return {Idle{}, {}};
}

}  // namespace

std::optional<StartDrag> possibleDrag(const Gesture& gesture, const Surface& surface) {
    const auto* pending = std::get_if<Pending>(&gesture);
    if (!pending) { return std::nullopt; }
    if (pending->whole) { return StartDrag{false}; }
    const bool takesSelection = pending->inSelection && !pending->otherEdge && surface.canDragSelection;
    return takesSelection ? std::optional(StartDrag{true}) : std::nullopt;
}

Step step(const Gesture& gesture, const Event& event, const Surface& surface) {
    if (const auto* press = std::get_if<Press>(&event)) { return pressed(*press, surface); }
    if (const auto* move = std::get_if<Move>(&event)) { return moved(gesture, *move, surface); }
    if (const auto* release = std::get_if<Release>(&event)) { return released(gesture, *release, surface); }
    return {Idle{}, {}};
}

int64_t frameAt(double x, const Surface& surface) {
    if (surface.visible.total <= 0 || surface.width <= 0) { return 0; }
    const double frame = surface.visible.frameAt(std::clamp(x, 0.0, surface.width) / surface.width);
    return std::clamp(int64_t(frame), int64_t{0}, surface.visible.total);
}

std::optional<int64_t> edgeOpposite(double x, const Surface& surface) {
    if (!surface.selection) { return std::nullopt; }
    const auto [lower, upper] = *surface.selection;
    const auto away = [&](int64_t frame) {
        return std::abs(surface.visible.shareOf(double(frame)) * surface.width - x);
    };
    if (std::min(away(lower), away(upper)) > handleReach) { return std::nullopt; }
    return away(lower) < away(upper) ? upper : lower;
}

}  // namespace brindlehum::WaveformGesture
