// The render callback, as a share of the time that its block lasts.
#include <benchmark/benchmark.h>

#include "mix/render/binaural_stage.h"
#include "mix/render/render_context.h"
#include "support/meter.h"
#include "support/render_source.h"

namespace {

using namespace brindlehum;
using namespace brindlehum::bench;

constexpr int frames = 256;
constexpr double rate = 48000;
constexpr int batch = 64;  // blocks between two fillings of the ring

// Times batches of blocks; `beforeBlock` may publish something.
template <class BeforeBlock>
void renderBlocks(benchmark::State& state, RenderContext& context, RenderSource& source, int deviceChannels,
                  BeforeBlock beforeBlock) {
    auto samples = std::vector<std::vector<float>>(size_t(deviceChannels), std::vector<float>(size_t(frames)));
    std::vector<float*> planes;
    for (auto& plane : samples) { planes.push_back(plane.data()); }
    Best best;
    for (auto _ : state) {
        source.fill();
        int block = 0;
        const double seconds = secondsOf(batch, [&] {
            beforeBlock(block++);
            context.render(frames, {planes.data(), deviceChannels, frames});
        });
        best.add(seconds);
        state.SetIterationTime(seconds * batch);
    }
    if (samples[0][0] == 0) { state.SkipWithError("nothing was heard"); }
    state.counters["us"] = best.seconds * 1e6;
    state.counters["percent_of_block"] = 100 * best.seconds / (frames / rate);
}

void steady16to16(benchmark::State& state) {
    RenderContext context;
    RenderSource source(16, batch * frames);
    DenseConfig config(16, 16);
    context.setRing(source.ring());
    context.setConfig(&config.record);
    renderBlocks(state, context, source, 16, [](int) {});
}

// Every block fades from one full matrix to another.
void change16to16(benchmark::State& state) {
    RenderContext context;
    RenderSource source(16, batch * frames);
    DenseConfig configs[] = {DenseConfig(16, 16), DenseConfig(16, 16)};
    context.setRing(source.ring());
    renderBlocks(state, context, source, 16, [&](int block) { context.setConfig(&configs[block % 2].record); });
}

// 26 channels to as many virtual speakers, each its own; with `turning`, every block has new directions.
void binaural26(benchmark::State& state) {
    const bool turning = state.range(0) != 0;
    BinauralStage stage(HRTFSet::shared(rate));
    const auto first = stage.setDirections(directionsAround(26, 0));
    RenderContext context;
    RenderSource source(26, batch * frames);
    DenseConfig config(26, 26);
    config.makeDiagonal();
    config.record.to_binaural = 1;
    context.setBinauralStage(&stage);
    context.setRing(source.ring());
    context.setConfig(&config.record);
    std::vector<std::shared_ptr<const void>> replaced;
    if (!turning) {
        return renderBlocks(state, context, source, 2, [](int) {});
    }
    // Publishing costs the control side, not the callback: only two sets take turns, and their price is taken off.
    const std::vector<Direction> places[] = {directionsAround(26, 10), directionsAround(26, 40)};
    Best publishing;
    int turn = 0;
    for (int i = 0; i < 20; ++i) {
        publishing.add(secondsOf(batch, [&] { replaced.push_back(stage.setDirections(places[turn++ % 2])); }));
    }
    renderBlocks(state, context, source, 2, [&](int block) {
        replaced.resize(std::min<size_t>(replaced.size(), 8));
        replaced.insert(replaced.begin(), stage.setDirections(places[block % 2]));
    });
    const double own = state.counters["us"] - publishing.seconds * 1e6;
    state.counters["us"] = own;
    state.counters["percent_of_block"] = 100 * own * 1e-6 / (frames / rate);
}

BENCHMARK(steady16to16)->UseManualTime()->MinTime(0.5);
BENCHMARK(change16to16)->UseManualTime()->MinTime(0.5);
BENCHMARK(binaural26)->ArgName("turning")->Arg(0)->Arg(1)->UseManualTime()->MinTime(0.5);

}  // namespace
