// What the chain of inserts costs by itself, around effects that only copy: as a share of the block's time.
#include <benchmark/benchmark.h>

#include <algorithm>

#include "monitor/inserts/insert_chain.h"
#include "support/meter.h"

namespace {

using namespace brindlehum;
using namespace brindlehum::bench;

constexpr int frames = 256;
constexpr double rate = 48000;
constexpr int width = 16;
constexpr int batch = 64;  // blocks

struct Copy : PluginInstance {
    explicit Copy(int delay) : late(delay) {}
    void process(const float* const* inputs, float* const* outputs, uint32_t count) noexcept override {
        for (int c = 0; c < 2; ++c) { std::copy_n(inputs[c], count, outputs[c]); }
    }
    void setControl(size_t, double) noexcept override {}
    void setFile(const std::string&, const std::string&) override {}
    void sendMessage(std::span<const uint8_t>) override {}
    std::unique_ptr<PluginWindow> openWindow(const PluginInfo&, const PluginWindowPlace&) override { return nullptr; }
    int latency() const noexcept override { return late; }
    std::string state() const override { return {}; }
    int late;
};

// Stereo effects in a row, of eight instances each.
void chain(benchmark::State& state, int effects, int latency, bool bypassed) {
    std::vector<std::shared_ptr<InsertUnit>> units;
    for (int i = 0; i < effects; ++i) {
        units.push_back(std::make_shared<InsertUnit>());
        units.back()->width = 2;
        units.back()->isBypassed = bypassed;
        for (int c = 0; c < width / 2; ++c) { units.back()->instances.push_back(std::make_unique<Copy>(latency)); }
    }
    InsertChain inserts(width);
    inserts.setSampleRate(rate);
    inserts.publish(std::make_shared<InsertStages>(units, width, rate));
    std::vector<std::vector<float>> in(width, std::vector<float>(frames, 0.25F));
    std::vector<std::vector<float>> out(in);
    std::vector<const float*> inputs;
    std::vector<float*> outputs;
    for (auto& plane : in) { inputs.push_back(plane.data()); }
    for (auto& plane : out) { outputs.push_back(plane.data()); }
    const DeviceBuffers buffers{outputs.data(), width, frames, inputs.data(), width};
    for (int i = 0; i < 50; ++i) { inserts.render(frames, buffers); }  // it has risen
    Best best;
    for (auto _ : state) {
        const double seconds = secondsOf(batch, [&] { inserts.render(frames, buffers); });
        best.add(seconds);
        state.SetIterationTime(seconds * batch);
    }
    if (out[0][0] != 0.25F) { state.SkipWithError("nothing was heard"); }
    state.counters["us"] = best.seconds * 1e6;
    state.counters["percent_of_block"] = 100 * best.seconds / (frames / rate);
}

BENCHMARK_CAPTURE(chain, none, 0, 0, false)->UseManualTime();
BENCHMARK_CAPTURE(chain, one, 1, 0, false)->UseManualTime();
BENCHMARK_CAPTURE(chain, four, 4, 0, false)->UseManualTime();
BENCHMARK_CAPTURE(chain, one_late, 1, 240, false)->UseManualTime();
BENCHMARK_CAPTURE(chain, one_late_bypassed, 1, 240, true)->UseManualTime();

}  // namespace
