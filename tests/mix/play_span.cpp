// Where a start lands, and which selections count.
#include "mix/player/play_span.h"

#include <gtest/gtest.h>

namespace brindlehum {
namespace {

TEST(PlaySpan, AStartOutsideGoesToTheBeginning) {
    const std::optional<FrameRange> none;
    const std::optional<FrameRange> range = FrameRange{10000, 20000};
    const struct {
        const char* what;
        int64_t from;
        std::optional<FrameRange> selection;
        PlaySpan span;
    } cases[] = {
        {"a frame", 5000, none, {5000, {0, 48000}}},
        {"the end", 48000, none, {0, {0, 48000}}},
        {"past the end", 48005, none, {0, {0, 48000}}},
        {"inside the selection", 15000, range, {15000, {10000, 20000}}},
        {"before the selection", 9999, range, {10000, {10000, 20000}}},
        {"at the selection's end", 20000, range, {10000, {10000, 20000}}},
    };
    for (const auto& c : cases) { EXPECT_EQ(playSpan(c.from, c.selection, 48000), c.span) << c.what; }
}

TEST(PlaySpan, ASelectionIsLongerThanTenMillisecondsAndInsideTheSound) {
    const struct {
        FrameRange range;
        double rate;
        std::optional<FrameRange> counts;
    } cases[] = {
        {{100, 580}, 48000, {}},
        {{100, 581}, 48000, FrameRange{100, 581}},
        {{100, 541}, 44100, {}},
        {{100, 542}, 44100, FrameRange{100, 542}},
        {{47000, 49000}, 48000, FrameRange{47000, 48000}},
        {{-1000, 2000}, 48000, FrameRange{0, 2000}},
        {{47800, 99000}, 48000, {}},
        {{3000, 1000}, 48000, {}},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(validSelection(c.range, 48000, c.rate), c.counts) << c.range.lower << " to " << c.range.upper;
    }
}

}  // namespace
}  // namespace brindlehum
