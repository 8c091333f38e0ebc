// The editor's arrow keys.
#include "ui/editor/editor_keys.h"

#include <algorithm>

namespace brindlehum::EditorKeys {
namespace {

constexpr double farSteps = 10;

int64_t before(const Surface& surface, int64_t frame) {
    if (surface.stops.empty()) { return frame - int64_t(surface.step * farSteps); }
    const auto at = std::ranges::lower_bound(surface.stops, frame);
    return at == surface.stops.begin() ? 0 : *(at - 1);
}

int64_t after(const Surface& surface, int64_t frame) {
    if (surface.stops.empty()) { return frame + int64_t(surface.step * farSteps); }
    const auto at = std::ranges::upper_bound(surface.stops, frame);
    return at == surface.stops.end() ? surface.total : *at;
}

int64_t target(Key key, const Surface& surface) {
    const int64_t cursor = surface.cursor;
    switch (key) {
        case Key::left:
            return cursor - int64_t(surface.step);
        case Key::right:
            return cursor + int64_t(surface.step);
        case Key::leftFar:
            return before(surface, cursor);
        case Key::rightFar:
            return after(surface, cursor);
        case Key::home:
            return 0;
        default:
            return surface.total;
    }
}

}  // namespace

Moved moved(Key key, bool extends, const Surface& surface) {
    const int64_t frame = std::clamp<int64_t>(target(key, surface), 0, surface.total);
    if (extends) {
        const FrameRange range = surface.selection.value_or(FrameRange{surface.cursor, surface.cursor});
        const int64_t anchor = surface.cursor == range.upper ? range.lower : range.upper;
        if (frame == anchor) { return {frame, std::nullopt}; }
        return {frame, FrameRange{std::min(anchor, frame), std::max(anchor, frame)}};
    }
    if (surface.selection && key == Key::left) { return {surface.selection->lower, std::nullopt}; }
    if (surface.selection && key == Key::right) { return {surface.selection->upper, std::nullopt}; }
    return {frame, std::nullopt};
}

}  // namespace brindlehum::EditorKeys
