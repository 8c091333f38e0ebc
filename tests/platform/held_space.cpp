// What counts as a press of Space and what as the repeat of a held one, over made-up keys, clocks and delays.
#include "linux/file_manager/held_space.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace brindlehum {
namespace {

// In milliseconds.
struct Stroke {
    int down, up;
};
struct Span {
    int from = -1, to = -1;
    int period = 1 << 20;
    bool has(int time) const { return time % period >= from && time % period < to; }
    int end(int time) const { return time - time % period + to; }
};

// Strokes of a keyboard that repeats after half a second.
std::vector<int> requests(const std::vector<Stroke>& strokes, int repeatPeriod) {
    std::vector<int> times;
    for (const auto& stroke : strokes) {
        times.push_back(stroke.down);
        for (int at = stroke.down + 500; at < stroke.up; at += repeatPeriod) { times.push_back(at); }
    }
    return times;
}

std::vector<Stroke> strokes(int count, int period, int held, std::vector<Stroke> all = {}) {
    const int first = all.empty() ? 0 : all.back().up + period;
    for (int i = 0; i < count; ++i) { all.push_back({first + i * period, first + i * period + held}); }
    return all;
}

TEST(HeldSpace, CountsStrokesOfAnySpeedAndAHeldKeyOnce) {
    const struct {
        const char* what;
        std::vector<Stroke> strokes;
        int repeatPeriod = 33;
        int late = 3;                // from the key to the request
        Span fileManagerHangs = {};  // what it keeps back comes at its end
        Span weHang = {};
        size_t lost = 0;  // strokes so soon after a held key that they may be its late repeats
    } cases[] = {
        {"by hand", strokes(8, 200, 80)},
        {"as fast as a hand can", strokes(8, 110, 60)},
        {"30 in a second", strokes(60, 33, 2)},
        {"by hand, while the file manager hangs now and then", strokes(20, 150, 70), 33, 3, {80, 320, 400}},
        {"by hand, while we hang now and then", strokes(20, 150, 70), 33, 3, {}, {80, 320, 400}},
        {"held", {{0, 2000}}},
        {"held, with slow repeats", {{0, 2000}}, 95},
        {"held, with requests that come late", {{0, 2000}}, 33, 200},
        {"held while the file manager hangs", {{0, 2000}}, 33, 3, {0, 900}},
        {"held while it hangs, and let go", {{0, 800}}, 33, 3, {0, 900}},
        {"held while we hang", {{0, 2000}}, 33, 3, {}, {5, 900}},
        {"held while we hang later", {{0, 2000}}, 33, 3, {}, {700, 1600}},
        {"held, and a stroke soon after", {{0, 1200}, {1350, 1400}, {1500, 1550}}},
        {"held twice", {{0, 1200}, {1400, 2600}}},
        {"held, and 30 in a second", strokes(30, 33, 2, {{0, 1200}}), 33, 3, {}, {}, 7},
    };
    for (const auto& c : cases) {
        const auto isDown = [&](int time) {
            return std::ranges::any_of(c.strokes, [&](const Stroke& s) { return time >= s.down && time < s.up; });
        };
        auto arrivals = requests(c.strokes, c.repeatPeriod);
        for (int& at : arrivals) {
            at += c.late;
            if (c.fileManagerHangs.has(at)) { at = c.fileManagerHangs.end(at); }
            if (c.weHang.has(at)) { at = c.weHang.end(at); }
        }
        HeldSpace held;
        size_t presses = 0;
        int nextLook = -1;
        for (int now = 0; now < 5000; ++now) {
            if (c.weHang.has(now)) { continue; }
            for (auto left = std::ranges::count(arrivals, now); left > 0; --left) {
                presses += held.isRepeat(now / 1000.0, isDown(now), 0.5) ? 0 : 1;
                if (nextLook < 0) { nextLook = now + int(1000 * HeldSpace::lookSeconds); }
            }
            if (nextLook >= 0 && now >= nextLook) {
                nextLook = held.look(now / 1000.0, isDown(now)) ? now + int(1000 * HeldSpace::lookSeconds) : -1;
            }
        }
        EXPECT_EQ(presses, c.strokes.size() - c.lost) << c.what;
    }
}

}  // namespace
}  // namespace brindlehum
