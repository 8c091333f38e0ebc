// EditOps: tails and loops against plain twins.
#include "dsp/edit_ops.h"

#include <gtest/gtest.h>

#include <numbers>

#include "edit_ops_detail.h"
#include "support/signals.h"

namespace brindlehum {
namespace {

using namespace EditOps;
using test::noise;
using Samples = std::vector<float>;
constexpr double pi = std::numbers::pi;

TEST(EditOps, VerbTailIsTheSelectionAndOneHallForAllChannels) {
    const double sr = 1000;
    const Channels channels = {noise(900, 1), noise(900, 2)};
    RandomEngine random(7), same(7);
    const Channels wet = verbTail(channels, sr, 100, 800, random);
    const Samples hall = hallIR(sr, 8, same);
    for (size_t c = 0; c < 2; ++c) {
        ASSERT_EQ(wet[c].size(), 4700U);
        const Samples dry(channels[c].begin() + 100, channels[c].begin() + 800);
        std::vector<double> expected(4700);
        test::convolveInto(expected, dry, hall, 0.3);
        for (size_t i = 0; i < 700; ++i) { expected[i] += 0.7 * double(dry[i]); }
        EXPECT_LT(test::errorDb(wet[c], {expected.begin(), expected.end()}), -115);
    }
}

// Three rounds laid side by side, and the overlaps made around both joins.
Samples threeRounds(Samples round, int64_t guard) {
    const auto n = int64_t(round.size());
    Samples all;
    for (int i = 0; i < 3; ++i) { all.insert(all.end(), round.begin(), round.end()); }
    const int64_t half = guard / 2;
    for (const int64_t join : {n, 2 * n}) {
        for (int64_t i = 0; i < half * 2; ++i) {
            const int64_t p = join - half + i;
            const double phi = double(i) / double(half * 2) * pi / 2;
            all[size_t(p)] =
                float(all[size_t(p)] * std::cos(phi) + all[size_t(i < half ? p + n : p - n)] * std::sin(phi));
        }
    }
    return {all.begin() + n, all.begin() + 2 * n};
}

TEST(EditOps, SeamlessLoopIsTheMiddleOfThreeGuardedRounds) {
    struct Case {
        int64_t total, start, end;
        bool carryTail;
        int64_t guard, carry;
    };
    const double sr = 48000;
    const Case cases[] = {{9000, 1000, 8000, true, 384, 1000},   {9000, 1000, 8000, false, 384, 0},
                          {9000, 1000, 9000, true, 384, 0},      {5000, 0, 768, true, 384, 768},
                          {5000, 10, 777, true, 383, 767},       {100, 5, 25, true, 10, 20},
                          {400000, 0, 200000, true, 384, 144000}};
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << c.start << " to " << c.end << " of " << c.total);
        Channels channels = {noise(size_t(c.total), 1), noise(size_t(c.total), 2)};
        for (Samples& x : channels) { detail::scale(x, 0.3F); }
        const Channels before = channels;
        const auto loop = seamlessLoop(channels, sr, c.start, c.end, c.carryTail);
        ASSERT_TRUE(loop);
        EXPECT_EQ(channels, before);
        EXPECT_EQ(std::pair(loop->guard, loop->carry), std::pair(c.guard, c.carry));
        for (size_t ch = 0; ch < 2; ++ch) {
            Samples round = slice(channels, c.start, c.end)[ch];
            for (int64_t i = 0; i < c.carry; ++i) { round[size_t(i)] += channels[ch][size_t(c.end + i)]; }
            EXPECT_LT(test::errorDb(loop->channels[ch], threeRounds(round, c.guard)), -120);
        }
    }
    const Channels loud = {Samples(2000, 0.9F), Samples(2000, 0.1F)};
    const auto loop = seamlessLoop(loud, sr, 0, 2000, false);
    ASSERT_TRUE(loop);
    EXPECT_FLOAT_EQ(detail::peak(loop->channels[0]), 0.999F);
    EXPECT_NEAR(loop->channels[1][1000] / loop->channels[0][1000], 1.0 / 9, 1e-6) << "one gain for all channels";
    EXPECT_FALSE(seamlessLoop(loud, sr, 0, 19, true));
}

}  // namespace
}  // namespace brindlehum
