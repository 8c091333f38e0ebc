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

TEST(EditOps, LongMacrosSayHowFarTheyAreAndStop) {
    const Channels channels(3, noise(20000, 1));
    for (const auto macro :
         {static_cast<Channels (*)(const Channels&, double, int64_t, int64_t, const Progress&)>(verbTail),
          static_cast<Channels (*)(const Channels&, double, int64_t, int64_t, const Progress&)>(texture)}) {
        std::vector<double> shares;
        const auto report = [&](double share) { return shares.push_back(share), true; };
        EXPECT_EQ(macro(channels, 1000, 0, 20000, report).size(), 3U);
        EXPECT_TRUE(std::ranges::is_sorted(shares) && shares.front() == 0 && shares.back() == 1);
        int asked = 0;
        EXPECT_TRUE(macro(channels, 1000, 0, 20000, [&](double) { return ++asked < 3; }).empty());
        EXPECT_LE(asked, 4) << "nothing goes on for long";
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

Samples quiet(size_t count) {
    Samples x = noise(count, 1);
    detail::scale(x, 0.3F);
    return x;
}

TEST(EditOps, ALoopFromTheStartIsTheMiddleOfThreeGuardedRounds) {
    const double sr = 48000;
    for (const auto& [total, end, carry] : {std::tuple(5000, 768, 768), {9000, 9000, 0}, {300, 20, 20}}) {
        SCOPED_TRACE(testing::Message() << "to " << end << " of " << total);
        const Channels channels = {quiet(size_t(total))};
        const int64_t guard = std::min(end / 2, 384);
        const auto loop = seamlessLoop(channels, sr, 0, end, true);
        ASSERT_TRUE(loop);
        EXPECT_EQ(std::pair(loop->guard, loop->carry), std::pair(guard, int64_t(carry)));
        Samples round = slice(channels, 0, end)[0];
        for (int64_t i = 0; i < carry; ++i) {
            round[size_t(i)] += float(std::min(1.0, double(carry - i) / double(guard))) * channels[0][size_t(end + i)];
        }
        EXPECT_LT(test::errorDb(loop->channels[0], threeRounds(round, guard)), -120);
    }
    const Channels loud = {Samples(2000, 0.9F), Samples(2000, 0.1F)};
    const auto loop = seamlessLoop(loud, sr, 0, 2000, false);
    ASSERT_TRUE(loop);
    EXPECT_FLOAT_EQ(detail::peak(loop->channels[0]), 0.999F);
    EXPECT_NEAR(loop->channels[1][1000] / loop->channels[0][1000], 1.0 / 9, 1e-6) << "one gain for all channels";
    EXPECT_FALSE(seamlessLoop(loud, sr, 0, 19, true));
}

// A sine that differs at both ends of the range: the largest step at the wrap is that of the sine itself, and the level
// in the guard stays, whether the ends are alike, unlike, or opposite.
TEST(EditOps, ALoopWrapsWithoutAStepAndWithoutABump) {
    const double sr = 48000;
    const auto sine = [&](double hz, double phase, size_t count) {
        Samples x(count);
        for (size_t i = 0; i < count; ++i) { x[i] = float(0.9 * std::sin(2 * pi * hz * double(i) / sr + phase)); }
        return x;
    };
    // A whole number of periods of 500 Hz lies between the ends; the phase jumps halfway.
    for (const double jump : {0.0, pi / 2, pi * 0.75}) {
        SCOPED_TRACE(jump);
        Samples x = sine(500, 0, 9600);
        const Samples second = sine(500, jump, 9600);
        std::copy(second.begin() + 4800, second.end(), x.begin() + 4800);
        const auto loop = seamlessLoop({x}, sr, 1920, 7680, false);
        ASSERT_TRUE(loop);
        const Samples& y = loop->channels[0];
        ASSERT_EQ(y.size(), 5760U);
        const double steepest = 0.9 * 2 * pi * 500 / sr;
        EXPECT_LE(std::abs(double(y.front()) - y.back()), steepest * 1.01);
        EXPECT_TRUE(std::equal(y.begin(), y.end() - loop->guard, x.begin() + 1920)) << "nothing else changes";
        EXPECT_LT(detail::peak(y), 0.9F * 1.02F);
        // 96 frames are a period.
        const auto rms = [&y](size_t from) {
            double squares = 0;
            for (size_t i = from; i < from + 96; ++i) { squares += double(y[i]) * y[i]; }
            return std::sqrt(squares / 96);
        };
        for (size_t from = y.size() - 384; from + 96 <= y.size(); from += 24) {
            if (jump <= pi / 2) { EXPECT_NEAR(20 * std::log10(rms(from) / rms(0)), 0, 0.5) << from; }
        }
    }
}

// With a ring-out the end goes on over the head, and only what comes before the start is added to it.
TEST(EditOps, ARingOutRunsOnThroughTheWrap) {
    const Channels channels = {quiet(9000)};
    const Samples& x = channels[0];
    const auto loop = seamlessLoop(channels, 48000, 1000, 8000, true);
    ASSERT_TRUE(loop);
    EXPECT_EQ(std::pair(loop->guard, loop->carry), (std::pair<int64_t, int64_t>(384, 1000)));
    const Samples& y = loop->channels[0];
    EXPECT_NEAR(y.front(), x[1000] + x[8000], 1e-6);
    EXPECT_NEAR(y.back(), x[7999] + x[999], 1e-5);
    EXPECT_NEAR(y[6615], x[7615], 1e-6) << "384 frames before the end";
}

}  // namespace
}  // namespace brindlehum
