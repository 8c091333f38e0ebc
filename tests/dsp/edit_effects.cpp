// The one-click effects: what each does to samples, levels and frequencies.
#include "dsp/edit_effects.h"

#include <gtest/gtest.h>

#include <numbers>

#include "support/signals.h"

namespace brindlehum {
namespace {

using namespace EditOps;
using test::noise;
using test::sine;
using Samples = std::vector<float>;
constexpr double sr = 48000;

Channels applied(const char* id, Channels channels, int64_t start, int64_t end, const Lanes& lanes = {}) {
    effect(id)->apply(channels, sr, start, end, lanes);
    return channels;
}

Samples applied(const char* id, const Samples& x) {
    return applied(id, Channels{x}, 0, int64_t(x.size()))[0];
}

// The level of what is left of x after its first quarter second.
double settledRms(const Samples& x) {
    double sum = 0;
    for (size_t i = 12000; i < x.size(); ++i) { sum += double(x[i]) * double(x[i]); }
    return std::sqrt(sum / double(x.size() - 12000));
}

TEST(EditEffects, ChangeTheirRangeAndLanesAloneInArraysAndDocumentsAlike) {
    const Channels before = {noise(90000, 1), noise(90000, 2), noise(90000, 3)};
    ASSERT_EQ(effects().size(), 11U);
    for (const Effect& each : effects()) {
        SCOPED_TRACE(each.id);
        EXPECT_EQ(effect(each.id), &each);
        Channels after = before;
        each.apply(after, sr, 20000, 80000, std::vector<int>{1, 7});
        for (size_t c = 0; c < 3; ++c) {
            const bool touched = each.stereo ? c < 2 : c == 1;
            EXPECT_EQ(after[c] != before[c], touched) << c;
            EXPECT_EQ(slice(after, 0, 20000)[c], slice(before, 0, 20000)[c]);
            EXPECT_EQ(slice(after, 80000, 90000)[c], slice(before, 80000, 90000)[c]);
        }
        EXPECT_EQ(each.apply(Sound(before), sr, 20000, 80000, std::vector<int>{1, 7}).gather(), after);
        each.apply(after = before, sr, 500, 500);
        EXPECT_EQ(after, before) << "an empty range";
    }
    EXPECT_EQ(effect("gain"), nullptr);
    EXPECT_EQ(applied("stereo-widen", Channels{before[0]}, 0, 9000), Channels{before[0]}) << "mono";
}

TEST(EditEffects, EqualTheTable) {
    const struct {
        const char* id;
        Channels before, after;
        int64_t start, end;
    } cases[] = {
        {"reverse", {{1, 2, 3, 4, 5}}, {{1, 4, 3, 2, 5}}, 1, 4},
        {"dc-fix", {{1, 2, 3, 8}}, {{-1, 0, 1, 8}}, 0, 3},
        {"dc-fix", {{1, 2}}, {{0, 2}}, 0, 1},
        {"fade-in", {{1, 1, 1, 1}}, {{1, 0, float(std::numbers::sqrt2 / 2), 1}}, 1, 3},
        {"fade-out", {{1, 1, 1, 1}}, {{1, 1, float(std::numbers::sqrt2 / 2), 1}}, 1, 3},
        {"bitcrush",
         {{0, 0.0021F, 9, 9, 9, -0.0059F}},
         {{0, 1 / 256.0F, 1 / 256.0F, 1 / 256.0F, 1 / 256.0F, -2 / 256.0F}},
         1,
         6},
        {"stereo-widen", {{1, 0.5F}, {0, 0.5F}}, {{1.25F, 0.5F}, {-0.25F, 0.5F}}, 0, 2},
        {"stutter", {{1, 2, 3, 4, 5, 6, 7}}, {{1, 2, 3, 1, 2, 3, 7}}, 0, 7},
        {"normalize", {{0, 0}}, {{0, 0}}, 0, 2},
        {"normalize", {{0.5F, 2}, {1, 0}}, {{0.48302543F, 2}, {0.96605086F, 0}}, 0, 1},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.id);
        const Channels after = applied(c.id, c.before, c.start, c.end);
        for (size_t i = 0; i < after.size(); ++i) {
            for (size_t k = 0; k < after[i].size(); ++k) { EXPECT_FLOAT_EQ(after[i][k], c.after[i][k]) << k; }
        }
    }
    const Samples x = noise(20000, 5);
    const Samples stuttered = applied("stutter", x);
    for (size_t i = 0; i < 3000; ++i) { ASSERT_EQ(stuttered[6000 + 3000 + i], x[6000 + i]) << "blocks of 125 ms"; }
}

// Levels of small sines through the filters, so small that saturation doesn't bend them: one-pole corners at 3 dB.
TEST(EditEffects, FiltersHaveTheirCorners) {
    const auto gainDb = [](const char* id, double hz, double drive) {
        const Samples x = sine(48000, hz, sr, 1e-3);
        return 20 * std::log10(settledRms(applied(id, x)) / settledRms(x) / drive);
    };
    EXPECT_NEAR(gainDb("telephone", 300, 1.9952623), -3.0, 0.3);
    EXPECT_NEAR(gainDb("telephone", 3400, 1.9952623), -3.0, 0.4);
    EXPECT_NEAR(gainDb("telephone", 30, 1.9952623), -20.0, 0.3);
    EXPECT_NEAR(gainDb("tape-saturation", 1000, 1.5848932), 0, 0.1);
    EXPECT_NEAR(gainDb("tape-saturation", 10400, 1.5848932), -2.4, 0.4);
    const Samples loud = applied("tape-saturation", Samples(100, 4.0F));
    EXPECT_NEAR(loud[99], std::tanh(4 * 1.5848932), 1e-5);
}

TEST(EditEffects, TheGhostAnswersOnceHalfASecondLaterAndDarker) {
    Samples click(60000);
    click[1000] = 1;
    const Samples echoed = applied("ghost-echo", click);
    for (size_t i = 0; i < 25000; ++i) { ASSERT_EQ(echoed[i], click[i]); }
    // 70 % of the repeat comes at once, through the low-pass; the mean of two delay lines follows after 67 and 89 ms.
    const float first = float(0.7 * 0.25118864 * (1 - std::exp(-2 * std::numbers::pi * 3350 / sr)));
    EXPECT_NEAR(echoed[25000], first, 1e-6);
    EXPECT_NEAR(echoed[25000 + 3216], first / 0.7F * 0.3F / 2, 1e-4);
    EXPECT_NEAR(echoed[25000 + 4272], first / 0.7F * 0.3F / 2, 1e-4);
    EXPECT_EQ(applied("ghost-echo", noise(24000, 1)), noise(24000, 1)) << "half a second has no room for it";
}

}  // namespace
}  // namespace brindlehum
