// Everything that the choice of bars is made from, as a line of JSON per file: bar_evidence FILE...
// The input of fit_bars.py and score_bars.py.
#include <sys/resource.h>

#include <cstdio>
#include <exception>
#include <filesystem>
#include <nlohmann/json.hpp>

#include "analysis/bars/bar_lines.h"
#include "analysis/grid/grid_builder.h"
#include "analysis/key/key_analyzer.h"
#include "analysis/signal/read_planar.h"
#include "analysis/tempo/tempo_analyzer.h"
#include "bars/weigh.h"
#include "bars/weights.h"
#include "dsp/signal.h"

namespace {

using namespace brindlehum;
using nlohmann::json;

json gridOf(const MusicGrid& grid) {
    return {{"bpm", grid.bpm},     {"beatsPerBar", grid.beatsPerBar}, {"downbeatConfidence", grid.downbeatConfidence},
            {"beats", grid.beats}, {"downbeats", grid.downbeats},     {"steady", grid.steady}};
}

double cpu() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return double(usage.ru_utime.tv_sec) + 1e-6 * double(usage.ru_utime.tv_usec);
}

json evidenceOf(const std::filesystem::path& path) {
    json out = {{"file", path.filename().string()}};
    const auto read = Signal::readPlanar(path);
    const auto mono = Signal::resample(Signal::mono(read.channels), read.sampleRate, Signal::analysisRate);
    const auto tempo = TempoAnalyzer::analyze(mono);
    if (!tempo) { return out; }
    const double duration = double(read.channels[0].size()) / read.sampleRate;
    const GridBuilder::PulseLevels levels(mono);
    const MusicGrid guess = GridBuilder::build(*tempo, levels, duration);
    out["guess"] = gridOf(guess);
    const double start = cpu();
    const HarmonyFrames harmony(mono);
    const double middle = cpu();
    out["grid"] = gridOf(BarLines::choose(guess, *tempo, levels, harmony));
    out["seconds"] = {middle - start, cpu() - middle, duration};
    const KeyResult key = KeyAnalyzer::analyze(SpectralFrames(mono), guess.bpm, tempo->score);
    out["key"] = key.tonic + " " + key.mode;
    out["keyConfidence"] = key.confidence;
    const auto sound = bars::soundOf(tempo->envFull, tempo->envLow, harmony, duration);
    const auto all = bars::weigh(*tempo, sound, levels, std::nullopt, std::nullopt);
    for (const auto& weight : bars::weights) { out["names"].push_back(weight.name); }
    out["hypotheses"] = json::array();
    for (const auto& h : all.hypotheses) {
        const auto& pulse = all.pulses[h.pulse];
        out["hypotheses"].push_back({{"bpm", 60 / pulse.period},
                                     {"beatsPerBar", h.beatsPerBar},
                                     {"downbeats", bars::barLines(pulse, h)},
                                     {"evidence", h.evidence}});
    }
    return out;
}

}  // namespace

int main(int argc, char** argv) {
    int failures = 0;
    for (int i = 1; i < argc; ++i) {
        try {
            std::puts(evidenceOf(argv[i]).dump().c_str());
        } catch (const std::exception& error) {
            std::fprintf(stderr, "%s: %s\n", argv[i], error.what());
            ++failures;
        }
    }
    return failures == 0 ? 0 : 1;
}
