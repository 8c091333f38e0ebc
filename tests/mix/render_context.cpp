// RenderContext: the sound that reaches the device in steady, changing, dry and ending blocks.
#include "mix/render/render_context.h"

#include <gtest/gtest.h>

#include <atomic>
#include <random>
#include <thread>

#include "mix/render/binaural_stage.h"
#include "support/render_bench.h"
#include "support/signals.h"

using brindlehum::BinauralStage;
using brindlehum::Direction;
using brindlehum::HRTFSet;
using brindlehum::RenderContext;
using brindlehum::test::RenderBench;
namespace test = brindlehum::test;

namespace {

using Signal = std::vector<float>;

float ramp(int i, int n) {
    return float(i + 1) / float(n);
}
float counted(int frame, int channel) {
    return float(frame + 1) + 0.25F * float(channel);
}
float one(int, int) {
    return 1;
}

}  // namespace

TEST(RenderContext, SteadyBlocksGoThroughTheMatrixBitForBit) {
    RenderBench bench(3);
    mn_ring* ring = bench.ring(2, 2000, counted);
    bench.context.setRing(ring);
    // A fourth row has no device channel, the third channel has no row; the second plane is missing.
    bench.context.setConfig(bench.config(2, 2, {1, 0, 0.5F, -1}));
    bench.render(100);
    const auto& device = bench.render(200);
    for (int i = 0; i < 200; ++i) {
        ASSERT_EQ(device[0][size_t(i)], counted(100 + i, 0));
        ASSERT_EQ(device[1][size_t(i)], 0.5F * counted(100 + i, 0) - counted(100 + i, 1));
        ASSERT_EQ(device[2][size_t(i)], 0);
    }
    EXPECT_EQ(bench.context.position(), 2.0 * 299);
    bench.context.setConfig(bench.config(2, 5, {1, 0, 0, 1, 1, 1, 1, 1, 1, 1}));
    bench.render(100);
    const auto& wider = bench.render(50, {1});
    EXPECT_EQ(wider[0][0], counted(400, 0));
    EXPECT_EQ(wider[1][0], 7) << "a null plane isn't written";
    EXPECT_EQ(wider[2][0], counted(400, 0) + counted(400, 1));
}

TEST(RenderContext, FramesBeyondTheLimitAreSilentAndStayInTheRing) {
    RenderBench bench(1);
    mn_ring* ring = bench.ring(1, 20000, one);
    bench.play(ring, bench.config(1, 1, {1}));
    bench.render(256);
    const auto& device = bench.render(6000);
    EXPECT_EQ(std::count(device[0].begin(), device[0].begin() + 4096, 1.0F), 4096);
    EXPECT_EQ(std::count(device[0].begin() + 4096, device[0].end(), 0.0F), 6000 - 4096);
    EXPECT_EQ(mn_ring_available(ring), 20000 - 256 - 4096);
}

// Each pair of ring and configuration fades to the next over exactly one block, in straight lines.
TEST(RenderContext, ChangesFadeOverExactlyOneBlock) {
    const int n = 48;
    RenderBench bench(1);
    mn_ring* rings[] = {bench.ring(1, 5000, one), bench.ring(1, 5000, [](int, int) { return -3.0F; })};
    const mn_mix_config* configs[] = {bench.config(1, 1, {1}), bench.config(1, 1, {5})};
    const struct {
        mn_ring* ring;
        const mn_mix_config* config;
        float level;
    } states[] = {
        {nullptr, configs[0], 0},  {rings[0], configs[0], 1},   {rings[1], configs[0], -3}, {rings[1], configs[1], -15},
        {rings[0], configs[0], 1}, {rings[0], nullptr, 0},      {rings[0], configs[1], 5},  {nullptr, configs[1], 0},
        {nullptr, nullptr, 0},     {rings[1], configs[1], -15}, {nullptr, nullptr, 0},
    };
    float last = 0;
    for (const auto& state : states) {
        bench.play(state.ring, state.config);
        const Signal change = bench.render(n)[0];
        for (int i = 0; i < n; ++i) {
            ASSERT_NEAR(change[size_t(i)], last + (state.level - last) * ramp(i, n), 2e-5) << i;
        }
        ASSERT_EQ(change.back(), state.level);
        ASSERT_EQ(bench.render(n)[0], Signal(size_t(n), state.level));
        last = state.level;
    }
    bench.play(rings[0], configs[0]);
    bench.render(n);
    bench.context.forgetPrevious();
    EXPECT_EQ(bench.render(n)[0][0], ramp(0, n)) << "forgotten state fades in from silence";
}

TEST(RenderContext, OnlyTheNewRingMovesThePosition) {
    RenderBench bench(1);
    bench.play(bench.ring(1, 1000, one), bench.config(1, 1, {1}));
    bench.render(100);
    EXPECT_EQ(bench.context.position(), 198);
    bench.context.setRing(bench.ring(1, 0, one));
    bench.context.setPosition(5000);
    bench.render(100);
    EXPECT_EQ(bench.context.position(), 5000) << "the old ring fades out, the new one is still empty";
    bench.context.setRing(nullptr);
    bench.render(100);
    EXPECT_EQ(bench.context.position(), 5000);
}

TEST(RenderContext, DryRingIsSilentAndFinishesOnceEnded) {
    RenderBench bench(1);
    mn_ring* ring = bench.ring(1, 130, counted);
    bench.play(ring, bench.config(1, 1, {1}));
    bench.render(100);
    const Signal partial = bench.render(100)[0];
    EXPECT_EQ(partial[29], counted(129, 0));
    EXPECT_EQ(Signal(partial.begin() + 30, partial.end()), Signal(70));
    EXPECT_FALSE(bench.context.finished());
    mn_ring_set_eof(ring);
    EXPECT_EQ(bench.render(100)[0], Signal(100));
    EXPECT_EQ(bench.context.position(), 258);
    EXPECT_TRUE(bench.context.finished());
}

TEST(RenderContext, SourceOfAnotherWidthIsSilentUntilItsConfigurationComes) {
    RenderBench bench(2);
    bench.play(bench.ring(2, 1000, one), bench.config(2, 2, {1, 0, 0, 1}));
    bench.render(10);
    EXPECT_EQ(bench.render(10)[1], Signal(10, 1));
    // The new ring comes first: the old side fades down, the new one stays silent until its configuration.
    bench.context.setRing(bench.ring(1, 1000, one));
    EXPECT_NEAR(bench.render(10)[1][4], 0.5, 1e-6);
    EXPECT_EQ(bench.render(10)[1], Signal(10));
    bench.context.setConfig(bench.config(1, 2, {1, 1}));
    EXPECT_NEAR(bench.render(10)[1][4], 0.5, 1e-6);
    EXPECT_EQ(bench.render(10)[1], Signal(10, 1));
}

TEST(RenderContext, GainMovesInAStraightLineAndEndsOnItsTarget) {
    RenderBench bench(2);
    bench.play(bench.ring(1, 9000, one), bench.config(1, 2, {1, 0.3F}));
    bench.render(256);
    EXPECT_EQ(bench.render(256)[1], Signal(256, 0.3F)) << "a gain of 1 changes no bit";
    float last = 1;
    for (const float gain : {0.0F, 0.7F, 2.0F, 1.0F}) {
        bench.context.setGain(double(gain));
        const Signal fade = bench.render(256)[0];
        for (int i = 0; i < 256; ++i) { ASSERT_NEAR(fade[size_t(i)], last + (gain - last) * ramp(i, 256), 1e-6); }
        EXPECT_EQ(fade.back(), gain);
        EXPECT_EQ(bench.render(256)[0], Signal(256, gain));
        last = gain;
    }
}

TEST(RenderContext, PeaksAreThoseOfWhatTheDeviceGets) {
    const auto signal = [](int frame, int channel) { return channel == 0 ? float(frame % 100) / 100 : -0.25F; };
    RenderBench bench(3);
    bench.play(bench.ring(2, 4000, signal), bench.config(2, 3, {1, 0, 0, 4, 0, 0}));
    bench.context.setGain(0.5);
    std::vector<float> most(3);
    for (int block = 0; block < 5; ++block) {
        const auto& device = bench.render(113);
        for (size_t c = 0; c < 3; ++c) {
            for (const float x : device[c]) { most[c] = std::max(most[c], std::abs(x)); }
        }
    }
    for (int c = 0; c < 3; ++c) { EXPECT_EQ(bench.context.takePeak(c), most[size_t(c)]) << c; }
    EXPECT_GT(most[0], 0.4F);
    EXPECT_EQ(most[2], 0);
    EXPECT_EQ(bench.context.takePeak(0), 0) << "a peak is taken once";
    EXPECT_EQ(bench.context.takePeak(999), 0);
}

// Denormals cost time and can't be heard: a block treats them as silence, and leaves the thread's mode as it was.
TEST(RenderContext, DenormalsAreSilenceWithinTheBlockOnly) {
    volatile float tiny = 1e-40F;
    RenderBench bench(1);
    bench.play(bench.ring(1, 1000, [&](int, int) { return tiny; }), bench.config(1, 1, {1}));
    bench.render(10);
    EXPECT_EQ(bench.render(100)[0], Signal(100));
    EXPECT_GT(tiny * 2, 0);
}

namespace {

// Four virtual speakers that one source channel feeds; convolved gives the sound that should reach one ear.
class Headphones {
public:
    Headphones() : set(HRTFSet::shared(48000)), stage(set) { stage.setDirections(places); }
    using Places = std::vector<Direction>;
    Signal convolved(const Signal& x, size_t ear, const Places& from) const {
        std::vector<double> sum(x.size());
        for (size_t s = 0; s < from.size(); ++s) {
            const auto [left, right] = set->impulses(from[s]);
            test::convolveInto(sum, x, ear == 0 ? left : right, double(gains[s]));
        }
        return {sum.begin(), sum.end()};
    }
    Signal convolved(const Signal& x, size_t ear) const { return convolved(x, ear, places); }
    const Places places = {{30, 0}, {-30, 0}, {110, 20}, {-110, -10}};
    const Signal gains = {1, 0.25F, 0.5F, 0};
    std::shared_ptr<const HRTFSet> set;
    BinauralStage stage;
};

}  // namespace

// Two of four speakers move at frame 3000: their sound fades over that block, and the others stay.
TEST(RenderContext, VirtualSpeakersAreHeardAtTheEarsAndFadeWhenTheyMove) {
    Headphones phones;
    RenderBench bench(4);
    bench.context.setBinauralStage(&phones.stage);
    const Signal x = test::noise(6000, 77);
    bench.play(bench.ring(1, 6000, [&](int i, int) { return x[size_t(i)]; }), bench.binaural(1, 4, phones.gains, 3, 1));
    bench.listen(4);
    Signal faded = x;
    for (int i = 0; i < 300; ++i) { faded[size_t(i)] *= ramp(i, 300); }
    std::shared_ptr<const void> replaced;
    for (int at = 0; at < 6000; at += 300) {
        if (at == 3000) { replaced = phones.stage.setDirections({{90, 0}, {45, 10}}); }
        bench.render(300);
    }
    for (const size_t ear : {0U, 1U}) {
        Signal expected = phones.convolved(faded, ear);
        const Signal moved = phones.convolved(faded, ear, {{90, 0}, {45, 10}, phones.places[2], phones.places[3]});
        for (int i = 3000; i < 6000; ++i) {
            expected[size_t(i)] = std::lerp(expected[size_t(i)], moved[size_t(i)], std::min(ramp(i - 3000, 300), 1.0F));
        }
        EXPECT_LT(test::errorDb(bench.heard(ear == 0 ? 3 : 1), expected), -100);
    }
    EXPECT_EQ(bench.heard(0), Signal(6000));
}

// From headphones to speakers: the stage rings out to its last frame, then sleeps, and wakes with no memory.
TEST(RenderContext, StageRingsOutAndWakesWithoutMemory) {
    Headphones phones;
    RenderBench bench(2);
    bench.context.setBinauralStage(&phones.stage);
    const mn_mix_config* binaural = bench.binaural(1, 4, phones.gains);
    const mn_mix_config* speakers = bench.config(1, 2, {0, 0});
    const int n = 100;
    const int frames = 3000;
    Signal x = test::noise(frames, 5);
    bench.context.setRing(bench.ring(1, frames, [&](int i, int) { return x[size_t(i)]; }));
    bench.listen(2);
    for (int at = 0; at < frames; at += n) {
        bench.context.setConfig(at < 1000 ? binaural : speakers);
        bench.render(n);
        if (at == 0) {
            for (int i = 0; i < n; ++i) { x[size_t(i)] *= ramp(i, n); }
        }
    }
    for (int i = 0; i < n; ++i) { x[size_t(1000 + i)] *= 1 - ramp(i, n); }
    std::fill(x.begin() + 1000 + n, x.end(), 0.0F);
    EXPECT_LT(test::errorDb(bench.heard(0), phones.convolved(x, 0)), -100);
    EXPECT_LT(test::errorDb(bench.heard(1), phones.convolved(x, 1)), -100);
    // It ends in exact silence, and stays silent when headphones come back to a silent source.
    EXPECT_EQ(Signal(bench.heard(0).end() - n, bench.heard(0).end()), Signal(n));
    bench.context.setConfig(binaural);
    for (int block = 0; block < 12; ++block) { EXPECT_EQ(bench.render(n)[0], Signal(n)); }
}

TEST(RenderContext, ReplacedDirectionsMayBeFreedOnceTheStageSleeps) {
    Headphones phones;
    RenderBench bench(2);
    bench.context.setBinauralStage(&phones.stage);
    const mn_mix_config* binaural = bench.binaural(1, 4, phones.gains);
    const mn_mix_config* speakers = bench.config(1, 2, {0, 0});
    bench.play(bench.ring(1, 60000, one), binaural);
    bench.render(1000);
    bench.context.setConfig(speakers);
    for (int i = 0; i < 4; ++i) { bench.render(1000); }
    // The address sanitizer reports a stage that still reads one of these sets.
    phones.stage.setDirections({{5, 5}});
    phones.stage.setDirections({{50, 5}});
    bench.context.setConfig(binaural);
    bench.render(1000);
    EXPECT_NE(bench.render(1000)[0][999], 0);
}

// The control side changes all that it may change while blocks are rendered, and keeps all that it replaces. The thread
// sanitizer reports anything that crosses the threads unpublished.
TEST(RenderContext, ControlSideMayPublishDuringARender) {
    Headphones phones;
    RenderBench bench(2);
    const mn_mix_config* configs[] = {bench.config(1, 2, {1, 0.5F}), bench.binaural(1, 4, {1, 1, 0, 0})};
    mn_ring* rings[] = {bench.ring(1, 400000, one), bench.ring(1, 400000, one), nullptr};
    bench.context.setConfig(configs[0]);
    std::atomic<bool> done{false};
    std::atomic<int> rounds{0};
    std::atomic<int> blocks{0};
    std::vector<std::shared_ptr<const void>> replaced;
    std::thread control([&] {
        std::mt19937 random(7);
        while (!done) {
            bench.play(rings[random() % 3], configs[random() % 2]);
            bench.context.setGain(double(random() % 3) / 2);
            bench.context.setBinauralStage(random() % 4 == 0 ? nullptr : &phones.stage);
            replaced.push_back(phones.stage.setDirections({{double(random() % 8) * 40 - 160, 0}}));
            if (bench.context.finished()) { bench.context.clearFinished(); }
            bench.context.setPosition(bench.context.position());
            ++rounds;
            while (rounds > blocks && !done) { std::this_thread::yield(); }
        }
    });
    double loudest = 0;
    // On a busy machine one thread may take all its turns before the other's first. At most one change a block, so that
    // no state lasts for all blocks; at most four blocks a change, so that the rings last.
    for (; blocks < 400 || rounds < 400; ++blocks) {
        while (rounds * 4 < blocks) { std::this_thread::yield(); }
        for (const float x : bench.render(256)[0]) { loudest = std::max(loudest, double(std::abs(x))); }
    }
    done = true;
    control.join();
    EXPECT_LT(loudest, 20);
    // How loud it was meanwhile depends on the schedule. After all those changes it plays as ever.
    bench.play(bench.ring(1, 4096, one), configs[0]);
    bench.context.setGain(1);
    bench.render(1000);
    EXPECT_EQ(bench.render(1000)[0][999], 1);
}
