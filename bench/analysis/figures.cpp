// The analysis of each file named as a line of JSON, with libebur128's loudness of the same samples:
// bench_figures FILE...
#include <sys/resource.h>

#include <cmath>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <nlohmann/json.hpp>

#include "analysis/others.h"
#include "analysis/piece/music_analysis.h"
#include "analysis/signal/read_planar.h"

namespace {

using namespace brindlehum;
using nlohmann::json;

double peakMegabytes() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return double(usage.ru_maxrss) * 1024 / 1e6;
}

json tempoOf(const MusicAnalysis& a) {
    json candidates = json::array();
    for (const auto& c : a.tempo.candidates) { candidates.push_back({c.bpm, c.score, c.ranked}); }
    json alternatives = json::array();
    for (const auto& other : a.tempo.alternatives) { alternatives.push_back(other.bpm); }
    return {{"bpm", a.tempo.bpm},
            {"twin", a.tempo.twin ? json(*a.tempo.twin) : json()},
            {"candidates", candidates},
            {"alternatives", alternatives},
            {"grid_bpm", a.grid.bpm},
            {"first_beat", a.grid.beats.empty() ? 0 : a.grid.beats[0]},
            {"steady", a.grid.steady},
            {"meter", a.tempo.meter.label},
            {"beats_per_bar", a.grid.beatsPerBar},
            {"downbeats", a.grid.downbeats},
            {"confidence", a.grid.downbeatConfidence}};
}

json figuresOf(const std::filesystem::path& path) {
    json out = {{"file", path.filename().string()}};
    FileSamples samples(path);
    const std::string name = path.filename().string();
    const auto result = analyzeMusic({samples, std::nullopt, name, std::nullopt, std::nullopt});
    out["peak_mb"] = peakMegabytes();
    if (!result.analysis) { return out; }
    out["tempo"] = tempoOf(*result.analysis);
    const auto read = Signal::readPlanar(path);
    const LoudnessResult& ours = result.analysis->loudness;
    out["loudness"] = {ours.integrated, ours.momentaryMax, ours.shortTermMax, ours.truePeak};
    const auto theirs = bench::runEbur128(bench::interleave(read.channels), unsigned(read.channels.size()),
                                          static_cast<unsigned long>(read.sampleRate));
    out["ebur128"] = {theirs.integrated, theirs.momentaryMax, theirs.shortTermMax, 20 * std::log10(theirs.truePeak)};
    return out;
}

}  // namespace

int main(int argc, char** argv) {
    int failures = 0;
    for (int i = 1; i < argc; ++i) {
        try {
            std::puts(figuresOf(argv[i]).dump().c_str());
        } catch (const std::exception& error) {
            std::fprintf(stderr, "%s: %s\n", argv[i], error.what());
            ++failures;
        }
    }
    return failures == 0 ? 0 : 1;
}
