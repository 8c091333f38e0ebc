// The matrix kernel against the limits of this machine: its multiply-adds, or its traffic to memory.
#include <benchmark/benchmark.h>

#include <memory>
#include <vector>

#include "core/mn_mix.h"
#include "support/meter.h"

#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace {

using namespace brindlehum::bench;

#if defined(__x86_64__)
#define BENCH_TARGET __attribute__((target("avx2,fma")))
constexpr bool supported = true;

// Multiply-adds of 8 floats, with as many in flight as registers hold and the units can't take more of.
constexpr int fmaRounds = 20000;
constexpr int fmaChains = 12;
BENCH_TARGET __attribute__((noinline)) void runFmas() {
    __m256 sums[fmaChains];
    for (int s = 0; s < fmaChains; ++s) { sums[s] = _mm256_set1_ps(float(s)); }
    const __m256 factor = _mm256_set1_ps(0.999F);
    for (int i = 0; i < fmaRounds; ++i) {
        for (int s = 0; s < fmaChains; ++s) { sums[s] = _mm256_fmadd_ps(sums[s], factor, factor); }
    }
    __m256 total = sums[0];
    for (int s = 1; s < fmaChains; ++s) { total = _mm256_add_ps(total, sums[s]); }
    benchmark::DoNotOptimize(total);
}
double fmaSeconds() {
    return bestSecondsOf(50, 1, runFmas) / (fmaRounds * fmaChains);
}

// Adds `in` to `out`: the least traffic that a mix of as many planes can do.
BENCH_TARGET void addPlane(const float* in, float* out, int frames) {
    for (int i = 0; i < frames; i += 8) {
        _mm256_storeu_ps(out + i, _mm256_add_ps(_mm256_loadu_ps(out + i), _mm256_loadu_ps(in + i)));
    }
}
#else
constexpr bool supported = false;
double fmaSeconds() {
    return 0;
}
void addPlane(const float*, float*, int) {}
#endif

// Planes as the render context lays its own out: on cache lines, and not all in the same cache sets.
struct Planes {
    Planes(int channels, int frames) : samples(size_t(channels) * size_t(stride(frames)) + 16, 0.25F) {
        auto* first = reinterpret_cast<float*>((reinterpret_cast<uintptr_t>(samples.data()) + 63) / 64 * 64);
        for (int c = 0; c < channels; ++c) { pointers.push_back(first + int64_t(c) * stride(frames)); }
    }
    static int stride(int frames) { return frames + 272; }
    std::vector<float> samples;
    std::vector<float*> pointers;
};

// Seconds to read every input once and to read and write every output once.
double trafficSeconds(Planes& in, Planes& out, int frames) {
    const size_t pairs = std::max(in.pointers.size(), out.pointers.size());
    return bestSecondsOf(50, 20, [&] {
        for (size_t p = 0; p < pairs; ++p) {
            addPlane(in.pointers[p % in.pointers.size()], out.pointers[p % out.pointers.size()], frames);
        }
        benchmark::ClobberMemory();
    });
}

// A full matrix. With ramps every tap takes a multiplication more.
void mixAccumulate(benchmark::State& state) {
    const int inputs = int(state.range(0));
    const int rows = int(state.range(1));
    const int frames = int(state.range(2));
    const bool ramped = state.range(3) != 0;
    const std::vector<float> matrix(size_t(inputs) * size_t(rows), 0.001F);
    const std::vector<float> ramp(size_t(frames), 0.5F);
    Planes in(inputs, frames);
    Planes out(rows, frames);
    const mn_mix_config config{inputs, rows, 0, 0, 1, matrix.data(), nullptr, 0};
    Best best;
    for (auto _ : state) {
        const double seconds = secondsOf(50, [&] {
            mn_mix_accumulate(&config, in.pointers.data(), frames, out.pointers.data(), rows,
                              ramped ? ramp.data() : nullptr);
            benchmark::ClobberMemory();
        });
        best.add(seconds);
        state.SetIterationTime(seconds * 50);
    }
    if (!supported) { return; }
    const double operations = double(inputs) * rows * frames / 8 * (ramped ? 2 : 1);
    const double arithmetic = operations * fmaSeconds();
    const double traffic = trafficSeconds(in, out, frames);
    state.counters["us"] = best.seconds * 1e6;
    state.counters["fma_bound_us"] = arithmetic * 1e6;
    state.counters["memory_bound_us"] = traffic * 1e6;
    state.counters["times_bound"] = best.seconds / std::max(arithmetic, traffic);
}

BENCHMARK(mixAccumulate)
    ->ArgNames({"in", "rows", "frames", "ramp"})
    ->Args({16, 16, 256, 0})
    ->Args({16, 16, 256, 1})
    ->Args({16, 16, 4096, 0})
    ->Args({64, 32, 256, 0})
    ->Args({64, 32, 4096, 1})
    ->Args({2, 2, 256, 0})
    ->Args({1, 16, 256, 0})
    ->Args({16, 2, 480, 0})
    ->UseManualTime()
    ->MinTime(0.3);

}  // namespace
