// The render callback and the transforms under the guard: nothing makes them allocate, lock or call the kernel.
#include <gtest/gtest.h>

#include <random>

#include "dsp/real_fft.h"
#include "mix/render/binaural_stage.h"
#include "support/render_bench.h"
#include "support/rt_guard.h"

using brindlehum::BinauralStage;
using brindlehum::Direction;
using brindlehum::HRTFSet;
using brindlehum::LayoutID;
using brindlehum::RenderContext;
using brindlehum::SpeakerID;
using brindlehum::Upmixer;
using brindlehum::UpmixPreset;
using brindlehum::UpmixRequest;
using brindlehum::test::RealTimeScope;
using brindlehum::test::RenderBench;
using brindlehum::test::RtFaults;

namespace {

constexpr int deviceChannels = 16;

// A device that may lack every third plane; render gives the guard's findings in one block.
class Device {
public:
    Device() : samples_(size_t(deviceChannels) * maxFrames) {}
    RtFaults render(RenderContext& context, int frames, bool withGaps) {
        float* planes[deviceChannels];
        for (int c = 0; c < deviceChannels; ++c) {
            planes[c] = withGaps && c % 3 == 1 ? nullptr : samples_.data() + c * maxFrames;
        }
        const RealTimeScope scope;
        context.render(uint32_t(frames), {planes, deviceChannels, uint32_t(frames)});
        return scope.faults();
    }
    bool sounded() const {
        return std::ranges::any_of(samples_, [](float x) { return x != 0; });
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

#define ASSERT_REAL_TIME(faults) ASSERT_EQ((faults).total(), 0U) << ((faults).first != nullptr ? (faults).first : "")

// Ring, configuration, gain, directions and stage change at random between blocks of random sizes; rings run dry and
// end; headphones ring out, sleep and wake; planes are missing now and then.
TEST(RtRender, NoChangeAllocatesOrLocks) {
    const auto set = HRTFSet::shared(48000);
    BinauralStage stages[] = {BinauralStage(set), BinauralStage(set)};
    RenderBench bench(1);
    Device device;
    std::unique_ptr<Upmixer> upmixers[2];
    const auto upmixed = [&](int index, LayoutID layout) {
        const UpmixRequest request{{SpeakerID::L, SpeakerID::R}, speakers(layout), params(UpmixPreset::film)};
        const int outs = int(request.target.size());
        upmixers[index] = Upmixer::make(2, outs, 48000);
        upmixers[index]->apply(request);
        return bench.config(RenderBench::mixConfig(outs, 16, gains(16, outs, 9)), *upmixers[index]);
    };
    mn_ring* rings[] = {bench.ring(2, 900000, tone), bench.ring(16, 200000, tone), bench.ring(64, 40000, tone),
                        bench.ring(2, 100, tone),    bench.ring(65, 10, tone),     nullptr};
    mn_ring_set_eof(rings[3]);
    const mn_mix_config* configs[] = {bench.config(2, 16, gains(16, 2, 2)),
                                      bench.config(16, 16, gains(16, 16, 3)),
                                      bench.config(64, 16, gains(16, 64, 1)),
                                      bench.binaural(2, 32, gains(32, 2, 4)),
                                      bench.binaural(16, 26, gains(26, 16, 5), 14, 99),
                                      nullptr,
                                      upmixed(0, LayoutID::l51),
                                      upmixed(1, LayoutID::l916)};
    std::vector<std::shared_ptr<const void>> replaced;
    std::mt19937 random(99);
    const int sizes[] = {1, 17, 255, 256, 480, 1024, 4096, 5000};
    bool heard = false;
    for (int block = 0; block < 1500; ++block) {
        if (random() % 3 == 0) { bench.context.setRing(rings[random() % std::size(rings)]); }
        if (random() % 3 == 0) { bench.context.setConfig(configs[random() % std::size(configs)]); }
        if (random() % 4 == 0) { bench.context.setGain(double(random() % 3) / 2); }
        if (random() % 5 == 0) {
            UpmixRequest request = *upmixers[random() % 2]->request();
            request.params.surroundDelayMs = double(random() % 30);
            replaced.push_back(upmixers[request.target.size() == 6 ? 0 : 1]->apply(request));
        }
        if (random() % 40 == 0) { bench.context.setBinauralStage(random() % 3 == 0 ? nullptr : &stages[random() % 2]); }
        if (random() % 4 == 0) {
            std::vector<Direction> directions(26);
            for (Direction& d : directions) { d = {double(random() % 360) - 180, double(random() % 120) - 30}; }
            for (BinauralStage& stage : stages) { replaced.push_back(stage.setDirections(directions)); }
        }
        const int frames = block % 5 == 0 ? sizes[random() % std::size(sizes)] : 256;
        const RtFaults faults = device.render(bench.context, frames, random() % 7 == 0);
        ASSERT_REAL_TIME(faults) << " in block " << block;
        heard = heard || device.sounded();
    }
    EXPECT_TRUE(heard);
    EXPECT_GT(bench.context.takePeak(0), 0) << "the meter measured under the guard";
    EXPECT_TRUE(bench.context.finished());
}

// On cache lines, which is the core's transform alone, and off them.
TEST(RtFFT, ForwardAndInverseNeitherAllocateNorLock) {
    for (const int size : {4, 256, 1024, 8192}) {
        brindlehum::RealFFT fft(size);
        const auto time = brindlehum::makeAligned<float>(size_t(size) + 1);
        const auto spectrum = brindlehum::makeAligned<std::complex<float>>(size_t(fft.bins()) + 1);
        const RealTimeScope scope;
        for (const int offset : {0, 1}) {
            fft.forward(time.get() + offset, spectrum.get() + offset);
            fft.inverse(spectrum.get() + offset, time.get() + offset);
        }
        ASSERT_REAL_TIME(scope.faults()) << " at " << size;
    }
}
