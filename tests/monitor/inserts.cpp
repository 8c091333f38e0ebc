// The chain of inserts on real LV2 effects of the test's own: what is heard, and when.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <numbers>
#include <random>

#include "monitor/inserts/insert_rack.h"
#include "platform/linux_plugins.h"
#include "support/lv2/test_effects.h"
#include "support/signals.h"

namespace brindlehum {
namespace {

using Planes = std::vector<std::vector<float>>;

Planes planes(int channels, size_t frames, float value = 0) {
    return Planes(size_t(channels), std::vector<float>(frames, value));
}

Insert insertOf(const std::string& effect, std::map<std::string, double> values = {}) {
    Insert insert;
    insert.id = UUID::random();
    insert.uri = test::effect(effect);
    insert.bundle = test::effectBundle;
    insert.settings.values = std::move(values);
    return insert;
}

struct InsertsTest : testing::Test {
    static constexpr uint32_t block = 256;
    static constexpr double rate = 48000;

    InsertsTest() { test::useTestEffects(); }
    void open(int channels, const std::vector<Insert>& inserts) {
        rack_ = std::make_unique<InsertRack>(*host_, channels);
        rack_->setSampleRate(rate);
        rack_->set(inserts);
        channels_ = channels;
        for (int i = 0; i < 60; ++i) { pass(planes(channels, block)); }  // it has risen
    }
    Planes pass(const Planes& in) {
        Planes out = planes(channels_, in[0].size(), std::numeric_limits<float>::quiet_NaN());
        std::vector<const float*> inputs;
        std::vector<float*> outputs;
        for (const auto& plane : in) { inputs.push_back(plane.data()); }
        for (auto& plane : out) { outputs.push_back(plane.data()); }
        const auto frames = uint32_t(in[0].size());
        rack_->target().render(frames, {outputs.data(), channels_, frames, inputs.data(), channels_});
        return out;
    }
    // A click in each channel, of a height of its own: the frames that it comes later, by channel.
    std::vector<int> delays() {
        Planes in = planes(channels_, block);
        for (size_t c = 0; c < in.size(); ++c) { in[c][7] = 0.1F + 0.01F * float(c); }
        std::vector<int> late(in.size(), -1);
        for (int i = 0; i < 40; ++i) {
            const Planes out = pass(i == 0 ? in : planes(channels_, block));
            for (size_t c = 0; c < out.size(); ++c) {
                for (size_t n = 0; n < block; ++n) {
                    if (out[c][n] == in[c][7]) { late[c] = i * int(block) + int(n) - 7; }
                }
            }
        }
        return late;
    }

    std::unique_ptr<PluginHost> host_ = makePluginHost();
    std::unique_ptr<InsertRack> rack_;
    int channels_ = 0;
};

TEST_F(InsertsTest, AnEffectThatChangesNothingPassesAllChannelsBitByBit) {
    constexpr unsigned seed = 7;
    std::mt19937 random(seed);
    for (const int channels : {1, 2, 5, 12, 16}) {
        open(channels, {insertOf("gain"), insertOf("trouble")});
        EXPECT_EQ(rack_->status()[0].instances, (channels + 1) / 2);
        EXPECT_EQ(rack_->status()[1].instances, channels) << "one for each channel";
        for (const size_t frames : {size_t(1), size_t(256), size_t(4096)}) {
            Planes in = planes(channels, frames);
            for (auto& plane : in) {
                for (float& x : plane) { x = float(random()) / float(random.max()) - 0.5F; }
            }
            EXPECT_EQ(pass(in), in) << channels << " channels, " << frames << " frames, seed " << seed;
        }
    }
}

TEST_F(InsertsTest, EveryChannelIsProcessedAndAsLateAsReportedWithAndWithoutBypass) {
    const Insert first = insertOf("delay", {{"frames", 240}});
    const Insert second = insertOf("delay", {{"frames", 37}});
    open(12, {first, insertOf("gain"), second});
    EXPECT_EQ(rack_->latency(), 277);
    EXPECT_EQ(delays(), std::vector<int>(12, 277));
    rack_->setBypassed(first.id, true);
    pass(planes(12, 4096));
    EXPECT_EQ(delays(), std::vector<int>(12, 277)) << "what is bypassed comes no earlier";
    rack_->setValue(second.id, "frames", 1000);
    pass(planes(12, block));
    EXPECT_TRUE(rack_->look());
    for (int i = 0; i < 10; ++i) { pass(planes(12, 4096)); }
    EXPECT_EQ(rack_->latency(), 1240);
    EXPECT_EQ(delays(), std::vector<int>(12, 1240)) << "a latency that changes is followed";
    open(12, {insertOf("gain", {{"gain", -20}, {"which", 2}})});
    const Planes out = pass(planes(12, block, 1));
    for (size_t c = 0; c < 12; ++c) { EXPECT_NEAR(out[c][9], c % 2 == 0 ? 1 : 0.1, 1e-6) << c; }
}

TEST_F(InsertsTest, WhatIsNoNumberMutesItsInsertUntilItIsMadeAnew) {
    for (const double wrong : {1.0, 2.0}) {
        const Insert bad = insertOf("trouble");
        open(4, {insertOf("gain"), bad, insertOf("gain")});
        const Planes in = planes(4, block, 0.5F);
        rack_->setValue(bad.id, "what", wrong);
        EXPECT_EQ(pass(in), planes(4, block));
        rack_->setValue(bad.id, "what", 0);
        EXPECT_EQ(pass(in), planes(4, block)) << "its filters may hold on to it";
        EXPECT_TRUE(rack_->look());
        EXPECT_EQ(rack_->status()[1].problem,
                  "It made what isn't a number, and is muted; bypass it and back to try it anew");
        rack_->setBypassed(bad.id, true);
        for (int i = 0; i < 3; ++i) { pass(in); }
        EXPECT_EQ(pass(in), in);
        rack_->setBypassed(bad.id, false);
        for (int i = 0; i < 20; ++i) { pass(in); }
        EXPECT_EQ(pass(in), in);
        EXPECT_TRUE(rack_->status()[1].problem.empty());
    }
}

TEST_F(InsertsTest, NoChangeOfTheChainClicks) {
    const Insert gain = insertOf("gain", {{"gain", -6}});
    const Insert delay = insertOf("delay", {{"frames", 2400}});
    open(2, {gain});
    int64_t at = 0;
    double last = std::numeric_limits<double>::quiet_NaN();
    const double slope = 0.5 * 2 * std::numbers::pi * 200 / rate;
    const std::vector<std::function<void()>> changes = {
        [] {},
        [&] {
            rack_->set({gain, delay});
        },
        [&] { rack_->setBypassed(delay.id, true); },
        [&] {
            rack_->set({delay, gain});
        },
        [&] { rack_->setBypassed(gain.id, true); },
        [&] { rack_->setBypassed(gain.id, false); },
        [&] { rack_->set({}); },
        [&] {
            rack_->set({insertOf("needy"), gain});
        },
    };
    for (size_t change = 0; change < changes.size(); ++change) {
        changes[change]();
        float loudest = 0;
        for (int i = 0; i < 40; ++i) {
            const auto in = test::sine(block, 200, rate, 0.5, 2 * std::numbers::pi * 200 * double(at) / rate);
            at += block;
            const Planes out = pass({in, in});
            for (const float x : out[1]) {
                if (!std::isnan(last)) { ASSERT_LE(std::abs(x - last), 1.1 * slope) << change << " " << i; }
                last = x;
                loudest = i > 30 ? std::max(loudest, x) : 0;
            }
            rack_->look();
        }
        EXPECT_GT(loudest, 0.2) << change;
    }
    EXPECT_EQ(rack_->status()[0].problem, "It needs urn:brindlehum:test:unknown, which Brindlehum doesn't offer");
}

}  // namespace
}  // namespace brindlehum
