// Planning all default lengths of a piece, as it grows; bars of two seconds.
#include <benchmark/benchmark.h>

#include <random>

#include "edits/temp_edit_planner.h"

namespace {

using namespace brindlehum;

struct Piece {
    MusicGrid grid;
    StructureResult structure;
    int64_t frames = 0;
};

enum class Form {
    song,   // verses and choruses of 8 bars: bars at the same place in the phrase are alike
    drone,  // every bar is like every other, so that every jump is allowed
    chance  // no form at all
};

Piece makePiece(int bars, Form form) {
    Piece out;
    out.frames = int64_t(bars) * 96000;
    out.grid.bpm = 120;
    out.grid.duration = 2.0 * bars;
    for (int i = 0; i < bars; ++i) { out.grid.downbeats.push_back(2.0 * i); }
    for (int beat = 0; beat < 4 * bars; ++beat) {
        out.grid.beats.push_back(0.5 * beat);
        auto& feature = out.structure.beatFeatures.emplace_back();
        feature.chroma[size_t(beat / 2 % 12)] = feature.bands[size_t(beat % 7)] = 1;
    }
    out.structure.pins = {0, 8, 8, bars - 8, bars - 8, bars - 1, bars - 2, false};
    out.structure.similarity = SimilarityMatrix(bars);
    std::mt19937 random(1);
    std::uniform_real_distribution<double> chance(0.0, 0.2);
    for (int i = 0; i < bars; ++i) {
        for (int j = 0; j <= i; ++j) {
            double value = 1;
            if (form == Form::song) { value = (i % 8 == j % 8 && i / 8 % 3 == j / 8 % 3 ? 0.8 : 0.6) + chance(random); }
            if (form == Form::chance) { value = 0.8 + chance(random); }
            out.structure.similarity.set(i, j, value);
        }
    }
    return out;
}

void planning(benchmark::State& state, Form form) {
    const Piece piece = makePiece(int(state.range(0)), form);
    size_t count = 0;
    for (auto _ : state) {
        count = TempEditPlanner::plans(piece.grid, piece.structure, 48000, piece.frames, {}).size();
        benchmark::DoNotOptimize(count);
    }
    state.counters["plans"] = double(count);
}
BENCHMARK_CAPTURE(planning, song, Form::song)
    ->Arg(75)
    ->Arg(150)
    ->Arg(300)
    ->Arg(600)
    ->Arg(900)
    ->Arg(1800)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(planning, chance, Form::chance)->Arg(150)->Arg(900)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(planning, drone, Form::drone)->Arg(150)->Arg(900)->Unit(benchmark::kMillisecond);

}  // namespace
