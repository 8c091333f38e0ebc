// The upmix processor at 48 kHz: time a hop, beside real time, and what a new plan costs. `ffmpeg -benchmark -i FILE
// -af surround=chl_out=7.1 -f null -` is the peer, on one thread.
#include <benchmark/benchmark.h>

#include <cmath>
#include <random>
#include <vector>

#include "spatial/layout_matrix.h"
#include "support/meter.h"
#include "upmix/upmixer.h"

namespace {

using namespace brindlehum;
using namespace brindlehum::bench;

constexpr double rate = 48000;
constexpr int hop = 256;

UpmixRequest request(LayoutID from, LayoutID to) {
    return {speakers(from), speakers(to), params(UpmixPreset::film)};
}

struct Planes {
    Planes(size_t channels, size_t frames, bool noisy) : samples(channels, std::vector<float>(frames)) {
        std::mt19937 random(1);
        std::uniform_real_distribution<float> uniform(-1, 1);
        for (auto& plane : samples) {
            for (float& x : plane) { x = noisy ? uniform(random) : 0; }
            pointers.push_back(plane.data());
        }
    }
    std::vector<std::vector<float>> samples;
    std::vector<float*> pointers;
};

void process(benchmark::State& state, LayoutID from, LayoutID to, bool noisy = true, bool measured = false) {
    const UpmixRequest asked = request(from, to);
    const auto upmixer = Upmixer::make(int(asked.source.size()), int(asked.target.size()), rate);
    upmixer->apply(asked);
    mn_upmix_measure(upmixer->raw(), measured ? 1 : 0);
    const Planes in(asked.source.size(), hop, noisy);
    Planes out(asked.target.size(), hop, false);
    Best best;
    for (auto _ : state) {
        const double seconds =
            secondsOf(50, [&] { mn_upmix_process(upmixer->raw(), in.pointers.data(), hop, out.pointers.data()); });
        best.add(seconds);
        state.SetIterationTime(seconds * 50);
    }
    state.counters["us"] = best.seconds * 1e6;
    state.counters["times_real_time"] = hop / rate / best.seconds;
}

// The dearest of the blocks of a small quantum: one in four runs a whole hop.
void worstBlock(benchmark::State& state) {
    constexpr int quantum = 64;
    const auto upmixer = Upmixer::make(2, 16, rate);
    upmixer->apply(request(LayoutID::stereo, LayoutID::l916));
    const Planes in(2, quantum, true);
    Planes out(16, quantum, false);
    Best worst;
    for (auto _ : state) {
        double dearest = 0;
        for (int block = 0; block < hop / quantum; ++block) {
            const double seconds = secondsOf(
                1, [&] { mn_upmix_process(upmixer->raw(), in.pointers.data(), quantum, out.pointers.data()); });
            dearest = std::max(dearest, seconds);
        }
        worst.add(dearest);
        state.SetIterationTime(dearest);
    }
    state.counters["us"] = worst.seconds * 1e6;
    state.counters["share_of_block"] = worst.seconds * rate / quantum;
}

// A plan for each turn of a slider.
void apply(benchmark::State& state) {
    UpmixRequest asked = request(LayoutID::stereo, LayoutID::l916);
    const auto upmixer = Upmixer::make(2, 16, rate);
    Best best;
    for (auto _ : state) {
        asked.params.ambienceDB = asked.params.ambienceDB > 0 ? -1 : 1;
        const double seconds = secondsOf(1, [&] { upmixer->apply(asked); });
        best.add(seconds);
        state.SetIterationTime(seconds);
    }
    state.counters["ms"] = best.seconds * 1e3;
}

// Not a time: how far the fold-down of the exact preset is from a source that has speakers which the room lacks. The
// worst channel of noise that all channels share in part.
void foldResidual(benchmark::State& state, LayoutID from, LayoutID to) {
    constexpr size_t frames = 48000;
    const SpeakerList& source = speakers(from);
    const SpeakerList& target = speakers(to);
    const auto upmixer = Upmixer::make(int(source.size()), int(target.size()), rate);
    upmixer->apply({source, target, params(UpmixPreset::broadcast)});
    const auto latency = size_t(mn_upmix_latency(upmixer->raw()));
    Planes in(source.size(), frames + latency, true);
    for (size_t c = source.size(); c-- > 0;) {
        for (size_t i = 0; i < in.samples[c].size(); ++i) {
            in.samples[c][i] = 0.3F * in.samples[c][i] + 0.5F * in.samples[0][i];
        }
    }
    Planes out(target.size(), frames + latency, false);
    for (auto _ : state) {
        mn_upmix_process(upmixer->raw(), in.pointers.data(), int(frames + latency), out.pointers.data());
    }
    const Matrix fold = MixBuilder::layoutMatrix(SourceFormat::speakers(target), int(target.size()), source,
                                                 ListenMode::normal, {}, true);
    double worst = -400;
    for (size_t c = 0; c < source.size(); ++c) {
        double error = 0;
        double energy = 0;
        for (size_t n = 8192; n < frames; ++n) {
            double folded = 0;
            for (size_t i = 0; i < target.size(); ++i) { folded += fold[c][i] * double(out.samples[i][n + latency]); }
            const auto wanted = double(in.samples[c][n]);
            error += (folded - wanted) * (folded - wanted);
            energy += wanted * wanted;
        }
        worst = std::max(worst, 10 * std::log10(error / energy));
    }
    state.counters["residual_dB"] = worst;
}

BENCHMARK_CAPTURE(foldResidual, l71_to_514, LayoutID::l71, LayoutID::l514)->Iterations(1);
BENCHMARK_CAPTURE(foldResidual, l514_to_712, LayoutID::l514, LayoutID::l712)->Iterations(1);
BENCHMARK_CAPTURE(foldResidual, l712_to_514, LayoutID::l712, LayoutID::l514)->Iterations(1);
BENCHMARK_CAPTURE(foldResidual, l712_to_714, LayoutID::l712, LayoutID::l714)->Iterations(1);
BENCHMARK_CAPTURE(foldResidual, l714_to_712, LayoutID::l714, LayoutID::l712)->Iterations(1);
BENCHMARK_CAPTURE(foldResidual, l51_to_714_whole, LayoutID::l51, LayoutID::l714)->Iterations(1);
BENCHMARK_CAPTURE(process, stereo_to_916, LayoutID::stereo, LayoutID::l916)->UseManualTime();
BENCHMARK_CAPTURE(process, stereo_to_916_silence, LayoutID::stereo, LayoutID::l916, false)->UseManualTime();
BENCHMARK_CAPTURE(process, stereo_to_916_measured, LayoutID::stereo, LayoutID::l916, true, true)->UseManualTime();
BENCHMARK(worstBlock)->UseManualTime();
BENCHMARK_CAPTURE(process, stereo_to_51, LayoutID::stereo, LayoutID::l51)->UseManualTime();
BENCHMARK_CAPTURE(process, bed714_to_916, LayoutID::l714, LayoutID::l916)->UseManualTime();
BENCHMARK(apply)->UseManualTime();

}  // namespace
