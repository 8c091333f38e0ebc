// The rules of the audition panel's place.
#include "app/hud_placement.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace brindlehum::HUDPlacement {
namespace {

int64_t sharedArea(const ScreenRect& a, const ScreenRect& b) {
    const int64_t width = std::min(a.x + a.width, b.x + b.width) - std::max(a.x, b.x);
    const int64_t height = std::min(a.y + a.height, b.y + b.height) - std::max(a.y, b.y);
    return width > 0 && height > 0 ? width * height : 0;
}

// In a range that ends before `end`, or at its start if it is longer than the range.
int inside(int at, int length, int start, int end) {
    return std::max(std::min(at, end - length), start);
}

}  // namespace

std::optional<Place> of(const ScreenRect& window, bool isAmbisonic, std::span<const Screen> screens) {
    if (screens.empty()) { return std::nullopt; }
    const auto most =
        std::ranges::max_element(screens, {}, [&](const Screen& screen) { return sharedArea(window, screen.frame); });
    const ScreenRect& room = most->available;
    const auto device = [&](int logical) { return int(std::lround(logical * most->scale)); };
    const int tall = device(isAmbisonic ? soundfieldHeight : height);
    const int wide = std::min(std::max(window.width, device(leastWidth)), room.width);
    const int windowEnd = window.y + window.height;
    const int roomEnd = room.y + room.height;
    const bool fitsBelow = windowEnd + device(gap) + tall <= roomEnd;
    const int top = fitsBelow ? windowEnd + device(gap) : windowEnd - device(overlap) - tall;
    return Place{{inside(window.x, wide, room.x, room.x + room.width), inside(top, tall, room.y, roomEnd), wide, tall},
                 size_t(most - screens.begin())};
}

}  // namespace brindlehum::HUDPlacement
