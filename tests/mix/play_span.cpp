// Where a start lands, and which selections count.
#include "mix/player/play_span.h"

#include <gtest/gtest.h>

namespace brindlehum {
namespace {

TEST(PlaySpan, AStartOutsideGoesToTheBeginning) {
    const FrameRange whole{0, 48000};
    for (const auto& [from, lands] : {std::pair(5000, 5000), {48000, 0}, {48005, 0}}) {
        EXPECT_EQ(playSpan(from, std::nullopt, 48000), (PlaySpan{lands, whole}));
    }
    const FrameRange range{10000, 20000};
    for (const auto& [from, lands] : {std::pair(15000, 15000), {9999, 10000}, {20000, 10000}}) {
        EXPECT_EQ(playSpan(from, range, 48000), (PlaySpan{lands, range})) << from;
    }
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
