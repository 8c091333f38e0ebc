// Every stage on signals that aren't music: finite results, no hang, no crash.
#include <gtest/gtest.h>

#include <limits>

#include "analysis/bars/bar_lines.h"
#include "analysis/grid/downbeat_detector.h"
#include "analysis/grid/grid_builder.h"
#include "analysis/key/key_analyzer.h"
#include "analysis/loudness/loudness.h"
#include "analysis/structure/structure.h"
#include "analysis/tempo/tempo_analyzer.h"
#include "support/music.h"
#include "support/signals.h"

namespace brindlehum {
namespace {

struct Bad {
    const char* what;
    std::vector<float> x;
    bool tempo;  // whether one is found, if only with score 0
};

std::vector<Bad> badSignals() {
    const auto length = size_t(12 * test::musicRate);
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const float inf = std::numeric_limits<float>::infinity();
    std::vector<Bad> out = {
        {"nothing", {}, false},
        {"one sample", {1}, false},
        {"1791 samples", test::noise(1791, 1), false},
        {"4096 samples", test::noise(4096, 2), false},
        {"silence", std::vector<float>(length, 0.0F), true},
        {"direct current", std::vector<float>(length, 0.7F), true},
        {"not a number", std::vector<float>(length, nan), true},
        {"infinite", std::vector<float>(length, inf), true},
        {"largest floats", std::vector<float>(length, std::numeric_limits<float>::max()), true},
        {"denormal", std::vector<float>(length, 1e-42F), true},
        {"one click", std::vector<float>(length, 0.0F), true},
        {"noise with holes", test::noise(length, 3), true},
    };
    out[10].x[length / 2] = 1;
    for (size_t i = 0; i < length; i += 997) { out[11].x[i] = i % 2 == 0 ? nan : -inf; }
    return out;
}

void expectFinite(const std::vector<double>& values, const std::string& what) {
    for (const double value : values) { ASSERT_TRUE(std::isfinite(value)) << what; }
}

TEST(BadInput, EveryStageStaysFinite) {
    for (const Bad& bad : badSignals()) {
        const double seconds = double(bad.x.size()) / test::musicRate;
        std::vector<float> store;
        const std::span<const float> repaired = Signal::usable(bad.x, store);
        const GridBuilder::PulseLevels levels(repaired);
        const HarmonyFrames harmony(repaired);
        const auto tempo = TempoAnalyzer::analyze(bad.x);
        EXPECT_EQ(tempo.has_value(), bad.tempo) << bad.what;
        if (tempo) {
            expectFinite({tempo->bpm, tempo->score, tempo->driftSpreadPct, tempo->firstDownbeat}, bad.what);
            expectFinite(tempo->beats, bad.what);
            for (const std::optional<double> bpm : {std::optional<double>(), {1.0}, {120.0}, {1e5}, {1e-9}}) {
                const MusicGrid guess = GridBuilder::build(*tempo, bad.x, seconds, bpm);
                const MusicGrid grid = BarLines::choose(guess, *tempo, levels, harmony, {bpm, {}, bpm});
                expectFinite(grid.beats, bad.what);
                expectFinite({grid.bpm, grid.downbeatConfidence, grid.grooveStart, grid.attackShift}, bad.what);
                EXPECT_FALSE(grid.boundaries().empty()) << bad.what;
                EXPECT_TRUE(std::ranges::is_sorted(grid.boundaries())) << bad.what;
                if (bpm != 120.0) { continue; }
                const auto structure = Structure::analyze(bad.x, test::musicRate, grid, SpectralFrames(bad.x), "x.wav");
                expectFinite(structure.similarity.values, bad.what);
                EXPECT_LT(structure.pins.musicEnd, int(grid.boundaries().size())) << bad.what;
            }
        }
        const SpectralFrames frames(bad.x);
        for (const auto& row : frames.bands) { expectFinite({row.begin(), row.end()}, bad.what); }
        const KeyResult key = KeyAnalyzer::analyze(frames, 120, 1);
        expectFinite({key.bands.begin(), key.bands.end()}, bad.what);
        expectFinite({key.confidence}, bad.what);
        const auto pulse = DownbeatDetector::detect(bad.x, test::musicRate, 120, 4);
        expectFinite({pulse.confidence, pulse.grooveStart}, bad.what);
        for (const double rate : {500.0, 8000.0, 48000.0, 384000.0}) {
            const auto loudness = Loudness::measure({bad.x, bad.x}, rate, std::nullopt);
            expectFinite({loudness.integrated, loudness.momentaryMax, loudness.shortTermMax}, bad.what);
            EXPECT_LT(loudness.truePeak, 300) << bad.what;
            EXPECT_GE(loudness.truePeak, loudness.samplePeak) << bad.what;
        }
    }
}

}  // namespace
}  // namespace brindlehum
