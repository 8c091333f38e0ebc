// The monitor's block under the guard, in every configuration and with inputs that come and go.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

#include "mix/render/binaural_stage.h"
#include "mix/render/hrtf_set.h"
#include "monitor/render/matrix_unit.h"
#include "monitor/state/monitor_matrix.h"
#include "support/render_bench.h"
#include "support/rt_guard.h"

namespace brindlehum {
namespace {

using test::RealTimeScope;
using test::RenderBench;
using test::RtFaults;

constexpr int width = 16;
constexpr int maxFrames = 6000;

OutputProfile profileOf(int which) {
    OutputProfile profile;
    profile.kind = which == 2 ? OutputProfile::Kind::headphones : OutputProfile::Kind::speakers;
    profile.layout = which == 0 ? LayoutID::l916 : LayoutID::l51;
    return profile;
}

}  // namespace

TEST(RtMonitor, NoChangeAllocatesOrLocks) {
    RenderBench bench(1);
    BinauralStage stage(HRTFSet::shared(48000));
    MatrixUnit unit;
    unit.tap().open(width, 48000);
    unit.align().open(width, 48000, RenderContext::maxFrames);
    unit.restart(48000);
    unit.context().setBinauralStage(&stage);
    std::vector<const mn_mix_config*> configs = {nullptr};
    std::vector<std::unique_ptr<Upmixer>> upmixers;
    for (const MonitorSource source : allMonitorSources) {
        for (int room = 0; room < 3; ++room) {
            MonitorState state;
            state.source = source;
            state.upmix.enabled = true;
            const MixConfig config = MonitorMatrix::build(state, width, profileOf(room), width);
            if (config.toBinaural) { (void)stage.setDirections(config.virtualDirections); }
            if (!config.upmix) {
                configs.push_back(bench.config(config));
                continue;
            }
            upmixers.push_back(
                Upmixer::make(int(config.upmix->source.size()), int(config.upmix->target.size()), 48000));
            upmixers.back()->apply(*config.upmix);
            configs.push_back(bench.config(config, *upmixers.back()));
        }
    }
    std::vector<float> in(size_t(width) * maxFrames);
    std::vector<float> out(in.size());
    for (size_t i = 0; i < in.size(); ++i) { in[i] = 0.5F * std::cos(0.01F * float(i)); }
    constexpr uint32_t seed = 5;
    std::mt19937 random(seed);
    bool heard = false;
    for (int block = 0; block < 800; ++block) {
        if (random() % 3 == 0) { unit.context().setConfig(configs[random() % configs.size()]); }
        if (random() % 30 == 0) { unit.setAudible(random() % 4 != 0); }
        if (random() % 20 == 0) { unit.align().set(int(random() % width), double(random() % 101), random() % 2 == 0); }
        in[7] = random() % 10 == 0 ? std::numeric_limits<float>::quiet_NaN() : 0.0F;
        const float* inputs[width];
        float* planes[width];
        for (int c = 0; c < width; ++c) {
            inputs[c] = random() % 50 == 0 ? nullptr : in.data() + c * maxFrames;
            planes[c] = random() % 50 == 0 ? nullptr : out.data() + c * maxFrames;
        }
        const uint32_t frames = block % 5 == 0 ? 1 + random() % 5000 : 256;
        RtFaults faults;
        {
            const RealTimeScope scope;
            unit.render(frames, {planes, width, frames, inputs, width});
            faults = scope.faults();
        }
        ASSERT_EQ(faults.total(), 0U) << (faults.first != nullptr ? faults.first : "") << ", seed " << seed
                                      << ", block " << block;
        heard = heard || out[100] != 0;
    }
    EXPECT_TRUE(heard);
    EXPECT_GT(unit.faults(), 0U) << "what is no number was met";
}

}  // namespace brindlehum
