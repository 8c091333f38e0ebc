// The part of a sound in view: what zoom, scroll and a moving playhead make of it.
#include "mix/player/visible_range.h"

#include <gtest/gtest.h>

namespace brindlehum {
namespace {

TEST(VisibleRange, EachStepShowsTheRightPart) {
    const VisibleRange all = VisibleRange::all(1000);
    const VisibleRange page{1000, 200, 100, true};
    const VisibleRange away{1000, 200, 100, false};
    struct Case {
        const char* what;
        VisibleRange made;
        double first, length;
        bool follows;
    };
    const std::vector<Case> cases = {
        {"zooming keeps the frame under the pointer", zoomed(all, 2, 0.25), 125, 500, false},
        {"zooming at the edge keeps the edge", zoomed(page, 2, 1), 250, 50, false},
        {"zooming out stops at the start", zoomed(page, 0.5, 1), 100, 200, false},
        {"zooming out beyond the start shows the start", zoomed({1000, 20, 100, true}, 0.5, 1), 0, 200, false},
        {"zooming out ends with all", zoomed(page, 0.01, 0.5), 0, 1000, false},
        {"zooming in ends with 32 frames", zoomed(page, 1e6, 0.5), 234, 32, false},
        {"a sound shorter than that is shown whole", zoomed(VisibleRange::all(10), 8, 0.5), 0, 10, false},
        {"no sound has nothing to zoom", zoomed(VisibleRange::all(0), 8, 0.5), 0, 0, false},
        {"a factor that isn't one does nothing", zoomed(page, 0, 0.5), 200, 100, true},
        {"scrolling stops at the end", scrolled(page, 5000), 900, 100, false},
        {"and at the start", scrolled(page, -5000), 0, 100, false},
        {"a selection has room on both sides", showing(all, {400, 600}), 390, 220, false},
        {"a short one is in the middle", showing(all, {500, 502}), 485, 32, false},
        {"a playhead in sight moves nothing", followed(page, 299), 200, 100, true},
        {"the page turns at its end", followed(page, 300), 295, 100, true},
        {"and back for a loop", followed(page, 40), 35, 100, true},
        {"it doesn't turn for a user who looks elsewhere", followed(away, 300), 200, 100, false},
        {"until the playhead comes by", followed(away, 250), 200, 100, true},
        {"a frame asked for is shown in any case", revealing(away, 700), 695, 100, true},
        {"the last page ends with the sound", revealing(away, 1000), 900, 100, true},
    };
    for (const auto& item : cases) {
        SCOPED_TRACE(item.what);
        EXPECT_NEAR(item.made.first, item.first, 1e-9);
        EXPECT_NEAR(item.made.length, item.length, 1e-9);
        EXPECT_EQ(item.made.follows, item.follows);
    }
}

}  // namespace
}  // namespace brindlehum
