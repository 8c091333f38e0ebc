// The inserts' block under the guard, while the chain changes.
#include <gtest/gtest.h>

#include <random>

#include "monitor/inserts/insert_rack.h"
#include "platform/linux_plugins.h"
#include "support/lv2/test_effects.h"
#include "support/rt_guard.h"

namespace brindlehum {

TEST(RtInserts, NoChangeAllocatesOrLocks) {
    constexpr int channels = 12;
    test::useTestEffects();
    const auto host = makePluginHost();
    InsertRack rack(*host, channels);
    rack.setSampleRate(48000);
    std::vector<Insert> chain;
    for (const char* name : {"gain", "delay", "trouble"}) {
        Insert& insert = chain.emplace_back();
        insert.id = UUID::random();
        insert.uri = test::effect(name);
        insert.bundle = test::effectBundle;
    }
    constexpr unsigned seed = 3;
    std::mt19937 random(seed);
    std::vector<float> in(channels * 4096, 0.25F);
    std::vector<float> out(in.size());
    bool heard = false;
    for (int block = 0; block < 600; ++block) {
        if (random() % 40 == 0) { rack.set({chain.begin(), chain.begin() + random() % 4}); }
        if (random() % 20 == 0) { rack.setBypassed(chain[random() % 3].id, random() % 2 == 0); }
        if (random() % 20 == 0) { rack.setValue(chain[1].id, "frames", random() % 4000); }
        if (random() % 30 == 0) { rack.setValue(chain[2].id, "what", random() % 3); }
        if (random() % 10 == 0) { rack.look(); }
        const float* inputs[channels];
        float* planes[channels];
        for (int c = 0; c < channels; ++c) {
            inputs[c] = random() % 50 == 0 ? nullptr : in.data() + c * 4096;
            planes[c] = random() % 50 == 0 ? nullptr : out.data() + c * 4096;
        }
        const uint32_t frames = block % 5 == 0 ? 1 + random() % 4096 : 256;
        test::RtFaults faults;
        {
            const test::RealTimeScope scope;
            rack.target().render(frames, {planes, channels, frames, inputs, channels});
            faults = scope.faults();
        }
        ASSERT_EQ(faults.total(), 0U) << (faults.first != nullptr ? faults.first : "") << ", seed " << seed
                                      << ", block " << block;
        heard = heard || out[100] != 0;
    }
    EXPECT_TRUE(heard);
}

}  // namespace brindlehum
