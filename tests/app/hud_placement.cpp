// The audition panel's place, beside a plain twin that counts y upwards.
#include "app/hud_placement.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

namespace brindlehum {
namespace {

using HUDPlacement::Screen;

// The rules as they are told, with the origin at the lower left of all: below the window by 2, or else 6 above its
// lower edge; then, in any case, on the screen.
ScreenRect twin(const ScreenRect& window, bool isAmbisonic, const std::vector<Screen>& screens) {
    const auto overlapOf = [&](const Screen& screen) {
        double area = 1;
        area *= std::max(0, std::min(window.x + window.width, screen.frame.x + screen.frame.width) -
                                std::max(window.x, screen.frame.x));
        area *= std::max(0, std::min(window.y + window.height, screen.frame.y + screen.frame.height) -
                                std::max(window.y, screen.frame.y));
        return area;
    };
    size_t best = 0;
    for (size_t i = 1; i < screens.size(); ++i) {
        if (overlapOf(screens[i]) > overlapOf(screens[best])) { best = i; }
    }
    const double scale = screens[best].scale;
    const ScreenRect& v = screens[best].available;
    const double vMinY = -(v.y + v.height), vMaxY = -v.y, wMinY = -(window.y + window.height);
    const double h = std::round((isAmbisonic ? 204 : 168) * scale);
    const double width = std::min(std::max(double(window.width), std::round(600 * scale)), double(v.width));
    double x = window.x;
    if (x + width > v.x + v.width) { x = v.x + v.width - width; }
    if (x < v.x) { x = v.x; }
    double y = wMinY - h - std::round(2 * scale);
    if (y < vMinY) { y = wMinY + std::round(6 * scale); }
    y = std::max(y, vMinY);
    y = std::min(y, vMaxY - h);
    return {int(x), int(-y - h), int(width), int(h)};
}

std::string text(const ScreenRect& r) {
    return std::to_string(r.x) + "," + std::to_string(r.y) + " " + std::to_string(r.width) + "x" +
           std::to_string(r.height);
}

TEST(HUDPlacement, FollowsTheWindow) {
    const std::vector<Screen> one = {{{0, 0, 1920, 1080}, {0, 30, 1920, 1050}}};
    const std::vector<Screen> two = {{{0, 0, 1920, 1080}, {0, 0, 1920, 1080}},
                                     {{1920, -200, 2560, 1440}, {1920, -200, 2560, 1400}, 2}};
    struct Case {
        const char* what;
        std::vector<Screen> screens;
        ScreenRect window;
        bool isAmbisonic;
        ScreenRect place;
    };
    const std::vector<Case> cases = {
        {"as wide as the window", one, {100, 100, 900, 500}, false, {100, 602, 900, 168}},
        {"a sound field is higher", one, {100, 100, 900, 500}, true, {100, 602, 900, 204}},
        {"at least 600 wide", one, {100, 100, 400, 500}, false, {100, 602, 600, 168}},
        {"and then on the screen", one, {1500, 100, 400, 500}, false, {1320, 602, 600, 168}},
        {"off the left edge", one, {-300, 100, 700, 500}, false, {0, 602, 700, 168}},
        {"wider than the screen", one, {-20, 100, 2500, 500}, false, {0, 602, 1920, 168}},
        {"the last place below", one, {100, 410, 900, 500}, false, {100, 912, 900, 168}},
        {"no room below", one, {100, 411, 900, 500}, false, {100, 737, 900, 168}},
        {"filling the screen", one, {0, 0, 1920, 1080}, true, {0, 870, 1920, 204}},
        {"hanging below the screen", one, {100, 900, 900, 500}, false, {100, 912, 900, 168}},
        {"mostly on the second, denser screen", two, {1800, 0, 1500, 500}, false, {1920, 504, 1500, 336}},
        {"on none", one, {5000, 5000, 700, 500}, false, {1220, 912, 700, 168}},
    };
    for (const auto& [what, screens, window, isAmbisonic, place] : cases) {
        const auto found = HUDPlacement::of(window, isAmbisonic, screens);
        ASSERT_TRUE(found) << what;
        EXPECT_EQ(text(found->frame), text(place)) << what;
    }
    EXPECT_FALSE(HUDPlacement::of({0, 0, 800, 600}, false, {}));
}

TEST(HUDPlacement, EqualsThePlainTwinOnAnyDesktop) {
    const unsigned seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    const auto any = [&](int low, int high) { return std::uniform_int_distribution(low, high)(random); };
    for (int round = 0; round < 100'000; ++round) {
        std::vector<Screen> screens;
        for (int left = any(-3000, 100), n = any(1, 3); n > 0; --n) {
            const double scale = std::array{1.0, 1.25, 1.5, 2.0}[size_t(any(0, 3))];
            const ScreenRect frame{left, any(-600, 600), any(640, 3840), any(480, 2160)};
            const int bar = any(0, 80), dock = any(0, 80);
            screens.push_back({frame, {frame.x + dock, frame.y + bar, frame.width - dock, frame.height - bar}, scale});
            left += frame.width;
        }
        const ScreenRect window{any(-4000, 6000), any(-1000, 2500), any(300, 4000), any(150, 2400)};
        const bool isAmbisonic = any(0, 1) == 1;
        const auto found = HUDPlacement::of(window, isAmbisonic, screens);
        ASSERT_TRUE(found);
        ASSERT_EQ(text(found->frame), text(twin(window, isAmbisonic, screens))) << text(window) << " round " << round;
        const ScreenRect& room = screens[found->screen].available;
        const ScreenRect& at = found->frame;
        ASSERT_TRUE(at.x >= room.x && at.x + at.width <= room.x + room.width && at.y >= room.y) << text(at);
        ASSERT_TRUE(at.y + at.height <= room.y + room.height || at.height > room.height) << text(at);
    }
}

}  // namespace
}  // namespace brindlehum
