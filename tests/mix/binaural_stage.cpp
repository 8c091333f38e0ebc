// The binaural stage against time-domain convolution with the responses of its set, and its changes by ear.
#include "mix/binaural_stage.h"

#include <gtest/gtest.h>

#include <functional>

#include "support/signals.h"

using brindlehum::BinauralStage;
using brindlehum::Direction;
using brindlehum::HRTFSet;
namespace test = brindlehum::test;

namespace {

using Signal = std::vector<float>;

// 32 lanes of a signal's length, silent where nothing is set.
struct Lanes {
    explicit Lanes(size_t frames) : signals(BinauralStage::sources, Signal(frames)) {}
    std::vector<Signal> signals;
};

std::array<Signal, 2> run(BinauralStage& stage, const Lanes& lanes, const std::vector<int>& blocks,
                          const std::function<void(int at)>& before = {}) {
    const int total = int(lanes.signals[0].size());
    std::array<Signal, 2> ears = {Signal(size_t(total), 99), Signal(size_t(total), 99)};
    size_t block = 0;
    int n = 0;
    for (int at = 0; at < total; at += n, ++block) {
        n = std::min(blocks[block % blocks.size()], total - at);
        if (before) before(at);
        std::vector<const float*> in;
        for (const Signal& s : lanes.signals) in.push_back(s.data() + at);
        stage.process(in.data(), n, ears[0].data() + at, ears[1].data() + at);
    }
    return ears;
}

void convolveInto(std::vector<double>& sum, const Signal& x, const Signal& h) {
    for (size_t i = 0; i < x.size(); ++i) {
        if (x[i] == 0) continue;
        for (size_t k = 0; k < h.size() && i + k < sum.size(); ++k) sum[i + k] += double(h[k]) * double(x[i]);
    }
}

std::vector<Direction> scattered() {
    std::vector<Direction> directions;
    for (int i = 0; i < BinauralStage::sources; ++i) directions.push_back({i * 67 % 360 - 180.0, i * 31 % 120 - 35.0});
    return directions;
}

}  // namespace

TEST(BinauralStage, EqualsTimeDomainConvolutionOfAllSources) {
    const auto set = HRTFSet::shared(48000);
    const auto directions = scattered();
    Lanes lanes(6000);
    std::array<std::vector<double>, 2> sums = {std::vector<double>(6000), std::vector<double>(6000)};
    for (size_t i = 0; i < lanes.signals.size(); ++i) {
        lanes.signals[i] = test::noise(6000, uint32_t(i) + 1);
        const auto impulses = set->impulses(directions[i]);
        convolveInto(sums[0], lanes.signals[i], impulses.first);
        convolveInto(sums[1], lanes.signals[i], impulses.second);
    }
    for (const std::vector<int>& blocks : {std::vector<int>{256}, {1024}, {480}, {64, 1, 333, 4096}}) {
        SCOPED_TRACE(testing::PrintToString(blocks));
        BinauralStage stage(set);
        stage.setDirections(directions);
        const auto ears = run(stage, lanes, blocks);
        for (size_t ear = 0; ear < 2; ++ear) {
            EXPECT_LT(test::errorDb(ears[ear], {sums[ear].begin(), sums[ear].end()}), -100);
        }
    }
}

TEST(BinauralStage, SourcesThatArentNamedStayWhereTheyAre) {
    const auto set = HRTFSet::shared(48000);
    Lanes lanes(2000);
    for (const size_t i : {0UL, 1UL, 31UL}) lanes.signals[i][0] = float(i + 1);
    BinauralStage stage(set);
    const auto first = stage.setDirections({{90, 0}, {-90, 0}});
    ASSERT_NE(first, nullptr);
    ASSERT_NE(stage.setDirections({{45, 10}}), first);
    std::vector<double> expected(2000);
    convolveInto(expected, lanes.signals[0], set->impulses({45, 10}).first);
    convolveInto(expected, lanes.signals[1], set->impulses({-90, 0}).first);
    convolveInto(expected, lanes.signals[31], set->impulses({0, 0}).first);
    EXPECT_LT(test::errorDb(run(stage, lanes, {256})[0], {expected.begin(), expected.end()}), -100);
}

// A sine that wanders all round the head, a new direction every few blocks, jumps no more than the steepest of the
// standing sines and the fades between them allow.
TEST(BinauralStage, ChangingDirectionsDontClick) {
    const auto set = HRTFSet::shared(48000);
    const size_t frames = 48000;
    Lanes lanes(frames);
    lanes.signals[3] = test::sine(frames, 440, 48000, 0.5);
    double steepest = 0;
    for (int az = -180; az < 180; az += 15) {
        BinauralStage still(set);
        still.setDirections(std::vector<Direction>(4, Direction{double(az), 0}));
        for (const Signal& ear : run(still, lanes, {256})) steepest = std::max(steepest, test::maxJump(ear));
    }
    for (const int block : {64, 256, 1000}) {
        SCOPED_TRACE(block);
        BinauralStage stage(set);
        int step = 0;
        std::vector<std::shared_ptr<const void>> replaced;
        const auto ears = run(stage, lanes, {block}, [&](int at) {
            if ((at / block) % 3 != 1) return;
            replaced.push_back(stage.setDirections(std::vector<Direction>(4, Direction{step++ * 75 % 360 - 180.0, 0})));
        });
        EXPECT_GT(step, 10);
        // Amplitudes up to 1.2 that change over one block add at most twice that a block's length.
        for (const Signal& ear : ears) EXPECT_LT(test::maxJump(ear), 1.05 * steepest + 2.4 / block);
    }
}

TEST(BinauralStage, RingsForItsTailAndNoLonger) {
    BinauralStage stage(HRTFSet::shared(48000));
    Lanes lanes(5000);
    lanes.signals[0][999] = 1;
    const auto ears = run(stage, lanes, {1000, 256});
    const auto last = size_t(999 + stage.tailFrames());
    EXPECT_NE(ears[0][1100], 0);
    // Transforms leave their rounding up to the end of the partition, nothing after.
    for (size_t i = last + 1; i < 5000; ++i) ASSERT_LT(std::abs(ears[0][i]), 1e-6) << i;
    for (size_t i = last + 2 * BinauralStage::partition; i < 5000; ++i) ASSERT_EQ(ears[0][i], 0) << i;
}

TEST(BinauralStage, ResetForgetsWhatItHeard) {
    BinauralStage stage(HRTFSet::shared(48000));
    Lanes loud(700);
    loud.signals[5] = test::noise(700, 8);
    run(stage, loud, {256});
    stage.reset();
    const auto ears = run(stage, Lanes(1000), {300});
    EXPECT_EQ(ears[0], Signal(1000));
    EXPECT_EQ(ears[1], Signal(1000));
}
