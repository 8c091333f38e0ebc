// The steps of the gesture's state machine.
#include "ui/player/waveform_gesture.h"

#include <algorithm>
#include <cmath>

namespace brindlehum::WaveformGesture {
namespace {

int64_t frameAt(const Surface& surface, const Point& at) {
    return WaveformGesture::frameAt(at.x, surface.width, surface.totalFrames);
}

Step pressed(const Press& press, const Surface& surface) {
    const bool inSelection = surface.selection && surface.selection->contains(frameAt(surface, press.at));
    return {Pending{press.at, inSelection, press.whole}, {}};
}

Step movedWhilePending(const Pending& pending, const Move& move, const Surface& surface) {
    const bool moved =
        std::abs(move.at.x - pending.start.x) > dragThreshold || std::abs(move.at.y - pending.start.y) > dragThreshold;
    if (!moved) { return {pending, {}}; }
    if (pending.whole) { return {Dragging{}, StartDrag{false}}; }
    if (pending.inSelection && surface.canDragSelection) { return {Dragging{}, StartDrag{true}}; }
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

Step step(const Gesture& gesture, const Event& event, const Surface& surface) {
    if (const auto* press = std::get_if<Press>(&event)) { return pressed(*press, surface); }
    if (const auto* move = std::get_if<Move>(&event)) { return moved(gesture, *move, surface); }
    if (const auto* release = std::get_if<Release>(&event)) { return released(gesture, *release, surface); }
    return {Idle{}, {}};
}

int64_t frameAt(double x, double width, int64_t totalFrames) {
    if (totalFrames <= 0 || width <= 0) { return 0; }
    return int64_t(std::clamp(x, 0.0, width) / width * double(totalFrames));
}

}  // namespace brindlehum::WaveformGesture
