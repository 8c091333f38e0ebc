// The monitor's block, as a share of the time that it lasts.
#include <benchmark/benchmark.h>

#include <cmath>

#include "mix/render/render_config.h"
#include "monitor/render/matrix_unit.h"
#include "monitor/state/monitor_matrix.h"
#include "support/meter.h"
#include "upmix/upmixer.h"

namespace {

using namespace brindlehum;
using namespace brindlehum::bench;

constexpr int frames = 256;
constexpr double rate = 48000;
constexpr int width = 16;
constexpr int batch = 64;  // blocks

struct Planes {
    explicit Planes(bool sounds) : samples(size_t(width), std::vector<float>(size_t(frames))) {
        for (size_t c = 0; c < samples.size(); ++c) {
            for (int i = 0; sounds && i < frames; ++i) {
                samples[c][size_t(i)] = 0.25F * std::cos(0.01F * float(i * int(c + 1)));
            }
            pointers.push_back(samples[c].data());
        }
    }
    std::vector<std::vector<float>> samples;
    std::vector<float*> pointers;
};

// A bus in a 9.1.6 room, with a reader of its loudness; with `changes`, each block fades to another volume, and with
// `delays`, every speaker is delayed.
void block(benchmark::State& state, MonitorSource source, bool upmix, bool changes, bool delays = false) {
    MonitorState set;
    set.source = source;
    set.upmix.enabled = upmix;
    OutputProfile room;
    room.layout = LayoutID::l916;
    const auto made = [&](double volume) {
        set.volumeDB = volume;
        return MonitorMatrix::build(set, width, room, width);
    };
    const auto request = made(0).upmix;
    const auto upmixer =
        request ? Upmixer::make(int(request->source.size()), int(request->target.size()), rate) : nullptr;
    if (upmixer) { upmixer->apply(*request); }
    mn_upmix* const raw = upmixer ? upmixer->raw() : nullptr;
    const RenderConfig configs[] = {RenderConfig(made(0), raw), RenderConfig(made(-6), raw)};
    MatrixUnit unit;
    unit.tap().open(width, rate);
    unit.align().open(width, rate, RenderContext::maxFrames);
    for (int c = 0; delays && c < width; ++c) { unit.align().set(c, c + 0.5, true); }
    unit.restart(rate);
    unit.context().setConfig(&configs[0].record);
    const Planes in(true);
    const Planes out(false);
    const Planes read(false);
    const std::vector<const float*> inputs(in.pointers.begin(), in.pointers.end());
    const DeviceBuffers buffers{out.pointers.data(), width, frames, inputs.data(), width};
    for (int i = 0; i < 50; ++i) { unit.render(frames, buffers); }  // it has risen
    Best best;
    int at = 0;
    for (auto _ : state) {
        const double seconds = secondsOf(batch, [&] {
            if (changes) { unit.context().setConfig(&configs[at++ % 2].record); }
            unit.render(frames, buffers);
        });
        best.add(seconds);
        while (mn_ring_read(unit.tap().ring().get(), read.pointers.data(), frames, nullptr) > 0) {}
        state.SetIterationTime(seconds * batch);
    }
    if (out.samples[0][0] == 0) { state.SkipWithError("nothing was heard"); }
    state.counters["us"] = best.seconds * 1e6;
    state.counters["percent_of_block"] = 100 * best.seconds / (frames / rate);
}

BENCHMARK_CAPTURE(block, bed_16_to_16, MonitorSource::l916, false, false)->UseManualTime();
BENCHMARK_CAPTURE(block, bed_16_to_16_changing, MonitorSource::l916, false, true)->UseManualTime();
BENCHMARK_CAPTURE(block, bed_16_to_16_delayed, MonitorSource::l916, false, false, true)->UseManualTime();
BENCHMARK_CAPTURE(block, upmix_6_to_16, MonitorSource::l51, true, false)->UseManualTime();
BENCHMARK_CAPTURE(block, upmix_2_to_16, MonitorSource::stereo, true, false)->UseManualTime();

}  // namespace
