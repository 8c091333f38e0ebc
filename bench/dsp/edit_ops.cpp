// The slow work of the sound editor: convolution with a long hall, and the macros around it.
#include "dsp/edit_ops.h"

#include <benchmark/benchmark.h>

#include "support/cpu_meter.h"

namespace brindlehum {
namespace {

constexpr double rate = 48000;

std::vector<float> noise(double seconds) {
    std::mt19937 engine(1);
    std::uniform_real_distribution<float> uniform(-1.0F, 1.0F);
    std::vector<float> out(size_t(seconds * rate));
    for (float& x : out) { x = uniform(engine); }
    return out;
}

// `x_realtime`: `seconds` of one channel over the processor time taken, the best of all rounds.
template <typename Work>
void measure(benchmark::State& state, double seconds, Work work) {
    double best = std::numeric_limits<double>::max();
    for (auto _ : state) {
        const double now = bench::bestCpuSeconds(1, work);
        state.SetIterationTime(now);
        best = std::min(best, now);
    }
    state.counters["x_realtime"] = seconds / best;
}

// Arguments: seconds of the signal and of the response.
void convolveSeconds(benchmark::State& state) {
    const auto seconds = double(state.range(0));
    const std::vector<float> signal = noise(seconds);
    const std::vector<float> hall = EditOps::hallIR(rate, double(state.range(1)));
    measure(state, seconds, [&] { benchmark::DoNotOptimize(EditOps::convolve(signal, hall)); });
}
BENCHMARK(convolveSeconds)
    ->Args({10, 8})
    ->Args({60, 8})
    ->Args({600, 8})
    ->Args({90, 12})
    ->UseManualTime()
    ->Iterations(5)
    ->Unit(benchmark::kMillisecond);

void loopOfOneMinute(benchmark::State& state) {
    const EditOps::Channels channels = {noise(70), noise(70)};
    const auto end = int64_t(60 * rate);
    measure(state, 2 * 60, [&] { benchmark::DoNotOptimize(EditOps::seamlessLoop(channels, rate, 0, end, true)); });
}
BENCHMARK(loopOfOneMinute)->UseManualTime()->Iterations(5)->Unit(benchmark::kMillisecond);

// The longest texture there is, one channel.
void textureOfNinetySeconds(benchmark::State& state) {
    const EditOps::Channels channels = {noise(12)};
    measure(state, 90, [&] { benchmark::DoNotOptimize(EditOps::texture(channels, rate, 0, int64_t(12 * rate))); });
}
BENCHMARK(textureOfNinetySeconds)->UseManualTime()->Iterations(5)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace brindlehum
