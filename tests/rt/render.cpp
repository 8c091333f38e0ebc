// The render callback under the guard: nothing that it can meet makes it allocate, lock or call the kernel.
#include <gtest/gtest.h>

#include <random>

#include "dsp/partitioned_convolver.h"
#include "mix/render/binaural_stage.h"
#include "support/render_bench.h"
#include "support/rt_guard.h"

using brindlehum::BinauralStage;
using brindlehum::Direction;
using brindlehum::HRTFSet;
using brindlehum::RenderContext;
using brindlehum::test::RealTimeScope;
using brindlehum::test::RenderBench;
using brindlehum::test::RtFaults;

namespace {

constexpr int deviceChannels = 16;

// The guard's findings in one block of a device with every third plane missing if so wished.
class Device {
public:
    Device() : samples_(size_t(deviceChannels) * maxFrames) {}
    RtFaults render(RenderContext& context, int frames, bool withGaps = false) {
        float* planes[deviceChannels];
        for (int c = 0; c < deviceChannels; ++c) {
            planes[c] = withGaps && c % 3 == 1 ? nullptr : samples_.data() + c * maxFrames;
        }
        const RealTimeScope scope;
        context.render(uint32_t(frames), {planes, deviceChannels, uint32_t(frames)});
        return scope.faults();
    }
    bool sounded() const {
        return std::any_of(samples_.begin(), samples_.end(), [](float x) { return x != 0; });
    }

private:
    static constexpr int maxFrames = 6000;
    std::vector<float> samples_;
};

std::vector<float> gains(int rows, int inputs, uint32_t seed) {
    std::mt19937 random(seed);
    std::vector<float> matrix(size_t(rows) * size_t(inputs));
    for (float& g : matrix) { g = float(random() % 5) / 4; }
    return matrix;
}

float tone(int frame, int channel) {
    return std::cos(0.01F * float(frame * (channel + 1)));
}

}  // namespace

#define EXPECT_REAL_TIME(faults) EXPECT_EQ((faults).total(), 0U) << ((faults).first != nullptr ? (faults).first : "")

TEST(RtRender, SteadyBlocksOfEveryShape) {
    RenderBench bench(1);
    Device device;
    EXPECT_REAL_TIME(device.render(bench.context, 256)) << "nothing published";
    for (const int inputs : {1, 16, 64}) {
        bench.context.setRing(bench.ring(inputs, 40000, tone));
        bench.context.setConfig(bench.config(inputs, deviceChannels, gains(deviceChannels, inputs, 1)));
        for (const int frames : {1, 17, 256, 256, 4096, 6000}) {
            EXPECT_REAL_TIME(device.render(bench.context, frames, frames == 17)) << inputs << " x " << frames;
            EXPECT_TRUE(device.sounded());
        }
    }
    // Run dry, then at the end.
    mn_ring* last = bench.ring(1, 100, tone);
    bench.context.setRing(last);
    EXPECT_REAL_TIME(device.render(bench.context, 256));
    mn_ring_set_eof(last);
    EXPECT_REAL_TIME(device.render(bench.context, 256));
    EXPECT_TRUE(bench.context.finished());
}

// Ring, configuration, gain, directions and stage change at random between blocks of random sizes; headphones ring
// out, sleep and wake; planes are missing now and then.
TEST(RtRender, ChangesOfEverything) {
    const auto set = HRTFSet::shared(48000);
    BinauralStage stages[] = {BinauralStage(set), BinauralStage(set)};
    RenderBench bench(1);
    Device device;
    mn_ring* rings[] = {bench.ring(2, 900000, tone), bench.ring(16, 200000, tone), bench.ring(65, 10, tone), nullptr};
    mn_mix_config* configs[] = {bench.config(2, 16, gains(16, 2, 2)), bench.config(16, 16, gains(16, 16, 3)),
                                bench.binaural(2, 32, gains(32, 2, 4)),
                                bench.binaural(16, 26, gains(26, 16, 5), 14, 99), nullptr};
    std::vector<std::shared_ptr<const void>> replaced;
    std::mt19937 random(99);
    int sizes[] = {1, 64, 255, 256, 480, 1024, 4096, 5000};
    bool heard = false;
    for (int block = 0; block < 1500; ++block) {
        if (random() % 3 == 0) { bench.context.setRing(rings[random() % 4]); }
        if (random() % 3 == 0) { bench.context.setConfig(configs[random() % 5]); }
        if (random() % 4 == 0) { bench.context.setGain(double(random() % 3) / 2); }
        if (random() % 40 == 0) { bench.context.setBinauralStage(random() % 3 == 0 ? nullptr : &stages[random() % 2]); }
        if (random() % 4 == 0) {
            std::vector<Direction> directions(26);
            for (Direction& d : directions) { d = {double(random() % 360) - 180, double(random() % 120) - 30}; }
            for (BinauralStage& stage : stages) { replaced.push_back(stage.setDirections(directions)); }
        }
        const int frames = block % 5 == 0 ? sizes[random() % 8] : 256;
        const RtFaults faults = device.render(bench.context, frames, random() % 7 == 0);
        ASSERT_EQ(faults.total(), 0U) << "block " << block << ": " << (faults.first != nullptr ? faults.first : "");
        heard = heard || device.sounded();
    }
    EXPECT_TRUE(heard);
}
