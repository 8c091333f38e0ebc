// The whole analysis: against real time, against libebur128 with aubio, by stage, and as the piece grows.
#include <benchmark/benchmark.h>

#include <array>
#include <limits>
#include <string>

#include "analysis/grid/downbeat_detector.h"
#include "analysis/grid/grid_builder.h"
#include "analysis/others.h"
#include "analysis/piece/music_analysis.h"
#include "dsp/signal.h"
#include "support/cpu_meter.h"

namespace {

using namespace brindlehum;
using namespace brindlehum::bench;

constexpr std::array<const char*, analysisStageCount> stageNames = {"mono", "tempo",    "grid",     "spectrum",
                                                                    "key",  "loudness", "structure"};

AnalysisOutcome analysed(const Planes& piece, double rate, const AnalysisProgress& progress = {}) {
    MemorySamples samples(piece, rate);
    return analyzeMusic({samples, std::nullopt, "piece.wav", std::nullopt, std::nullopt}, progress);
}

struct StageTimes {
    std::array<double, analysisStageCount> seconds{};
    double total = std::numeric_limits<double>::infinity();
};

StageTimes measureStages(const Planes& piece, double rate) {
    std::array<double, analysisStageCount + 1> starts{};
    // The stage mono is reported before each block: its first report counts.
    const auto result = analysed(piece, rate, [&](AnalysisStage stage) {
        if (starts[size_t(stage)] == 0) { starts[size_t(stage)] = cpuNow(); }
        return true;
    });
    starts[analysisStageCount] = cpuNow();
    benchmark::DoNotOptimize(result.analysis->grid.bpm);
    StageTimes out;
    for (size_t s = 0; s < analysisStageCount; ++s) { out.seconds[s] = starts[s + 1] - starts[s]; }
    out.total = starts[analysisStageCount] - starts[0];
    return out;
}

// The fastest of all iterations.
StageTimes bestStages(benchmark::State& state, const Planes& piece, double rate) {
    StageTimes best;
    for (auto _ : state) {
        const StageTimes times = measureStages(piece, rate);
        if (times.total < best.total) { best = times; }
        state.SetIterationTime(times.total);
    }
    return best;
}

// Ten minutes, stereo, 48 kHz. The goals: 300 times real time, twice as fast as the two others together, and neither
// search of the grid a large share.
void wholePiece(benchmark::State& state) {
    const Planes piece = makePiece(600, 48000, 2);
    const StageTimes best = bestStages(state, piece, 48000);
    const std::vector<float> interleaved = interleave(piece);
    const std::vector<float> mono = Signal::mono(piece);
    const double others = bestCpuSeconds(2, [&] { benchmark::DoNotOptimize(runEbur128(interleaved, 2, 48000)); }) +
                          bestCpuSeconds(2, [&] { benchmark::DoNotOptimize(runAubio(mono, 48000)); });
    state.counters["x_real_time"] = 600 / best.total;
    state.counters["x_ebur128_and_aubio"] = others / best.total;
    for (size_t s = 0; s < analysisStageCount; ++s) {
        state.counters[std::string("percent_") + stageNames[s]] = 100 * best.seconds[s] / best.total;
    }
    const auto got = analysed(piece, 48000);
    const MusicAnalysis& a = *got.analysis;
    const double fit =
        bestCpuSeconds(5, [&] { benchmark::DoNotOptimize(GridBuilder::steadyFit(a.tempo.envFull, a.grid.bpm)); });
    std::vector<float> buffer;
    const auto mono22k = a.mono22k.range(0, a.mono22k.size(), buffer);
    const double pulse = bestCpuSeconds(
        5, [&] { benchmark::DoNotOptimize(DownbeatDetector::detect(mono22k, Signal::analysisRate, a.grid.bpm, 4)); });
    state.counters["percent_of_steadyFit"] = 100 * fit / best.total;
    state.counters["percent_of_detect"] = 100 * pulse / best.total;
}
BENCHMARK(wholePiece)->UseManualTime()->Iterations(5)->Unit(benchmark::kMillisecond);

// Cost a minute of music, mono at the working rate: all that is linear, and the matrix of bars against bars.
void growth(benchmark::State& state) {
    const auto minutes = double(state.range(0));
    const Planes piece = makePiece(60 * minutes, Signal::analysisRate, 1);
    const StageTimes best = bestStages(state, piece, Signal::analysisRate);
    const auto got = analysed(piece, Signal::analysisRate);
    std::vector<float> buffer;
    const SpectralFrames frames(got.analysis->mono22k.range(0, got.analysis->mono22k.size(), buffer));
    const auto features = Structure::barFeatures(frames, got.analysis->grid.boundaries());
    const double matrix =
        bestCpuSeconds(3, [&] { benchmark::DoNotOptimize(Structure::similarity(features).values.data()); });
    state.counters["bars"] = double(features.size());
    state.counters["ms_matrix"] = 1000 * matrix;
    state.counters["ms_a_minute_without"] = 1000 * (best.total - matrix) / minutes;
}
BENCHMARK(growth)->Arg(5)->Arg(10)->Arg(20)->Arg(40)->Arg(60)->UseManualTime()->Iterations(2)->Unit(
    benchmark::kMillisecond);

}  // namespace
