// The weighing of bars: its parts against closed forms and plain sums, and the whole on pieces whose bars are known.
#include <gtest/gtest.h>

#include <random>

#include "analysis/bars/bar_lines.h"
#include "analysis/grid/grid_builder.h"
#include "analysis/tempo/tempo_analyzer.h"
#include "bars/beat_path.h"
#include "bars/choice.h"
#include "bars/lattice_fit.h"
#include "bars/weights.h"
#include "spectrum/spectral_extractor.h"
#include "support/music.h"
#include "support/signals.h"

namespace brindlehum {
namespace {

constexpr double frameRate = 22050.0 / 256;  // of onset envelopes

HarmonyFrames harmonyOf(std::span<const float> x, size_t block) {
    SpectralExtractor extractor;
    for (size_t i = 0; i < x.size(); i += block) { extractor.push(x.subspan(i, std::min(block, x.size() - i))); }
    return extractor.finishHarmony();
}

TEST(HarmonyFrames, AreTheSameForAnyBlocksAndNamePitchClasses) {
    std::vector<float> x = test::noise(30000, 7);
    for (float& v : x) { v *= 0.001F; }
    test::addTone(x, 0, 440, 0.5, 10);
    const HarmonyFrames whole = harmonyOf(x, x.size());
    ASSERT_EQ(whole.chroma.size(), 1 + (x.size() - 4096) / 1024);
    for (const size_t block : {1, 1023, 4097}) {
        const HarmonyFrames parts = harmonyOf(x, block);
        EXPECT_EQ(parts.chroma, whole.chroma) << block;
        EXPECT_EQ(parts.lowEnergy, whole.lowEnergy) << block;
        EXPECT_EQ(parts.meanPower, whole.meanPower) << block;
    }
    for (const auto& row : whole.chroma) { EXPECT_EQ(std::ranges::max_element(row) - row.begin(), 9) << "A"; }
}

TEST(SegmentMeans, AreShareWeightedMeansOfFrames) {
    std::mt19937 engine(3);
    std::uniform_real_distribution<double> value(0, 1);
    std::vector<double> rows(40);
    for (double& row : rows) { row = value(engine); }
    const bars::SegmentMeans<1> means(rows.size(), [&](size_t f) { return std::array{rows[f]}; });
    const auto frameAt = [](double f) { return (f * HarmonyFrames::hop + HarmonyFrames::frameSize / 2.0) / 22050; };
    for (int i = 0; i < 100; ++i) {
        const double from = 39 * value(engine);
        const double to = from + (39.5 - from) * value(engine);
        double sum = 0;
        double shares = 0;
        for (size_t f = 0; f < rows.size(); ++f) {  // frame f stands for f - 0.5 to f + 0.5
            const double share = std::max(0.0, std::min(to, double(f) + 0.5) - std::max(from, double(f) - 0.5));
            sum += share * rows[f];
            shares += share;
        }
        const auto got = means.mean(frameAt(from), frameAt(to));
        EXPECT_NEAR(got.row[0], sum / std::max(shares, 1e-6), 1e-6) << "seed 3, " << from << " to " << to;
        EXPECT_EQ(got.known, shares > 0.5);
    }
}

// Peaks of an onset envelope at the given times, three frames wide.
std::vector<float> envelopeOf(const std::vector<double>& times, double seconds) {
    std::vector<float> env(size_t(seconds * frameRate), 0.001F);
    for (const double t : times) {
        const double at = t * frameRate;
        for (auto i = size_t(std::max(at - 2, 0.0)); double(i) < at + 3 && i < env.size(); ++i) {
            env[i] = std::max(env[i], float(std::exp(-(double(i) - at) * (double(i) - at))));
        }
    }
    return env;
}

TEST(LatticeFit, FindsTheLineOfSteadyOnsetsAndRefusesOthers) {
    for (const double seconds : {10.0, 60.0, 600.0}) {
        for (const double bpm : {61.3, 97.0, 143.7, 211.0}) {
            // The asked tempo is off by what a lag of whole frames may be.
            const auto beats = test::beatTimes(0.2, seconds, [&](double) { return bpm; });
            const auto env = envelopeOf(beats, seconds);
            const auto fit = bars::fitLattice(env, bars::peaks(env), bpm * 1.004);
            EXPECT_TRUE(fit.strong) << bpm;
            EXPECT_EQ(fit.agreement, 1) << bpm;
            const double last = fit.phase + std::round((beats.back() - fit.phase) / fit.period) * fit.period;
            EXPECT_NEAR(last, beats.back(), 0.002) << bpm << " BPM, " << seconds << " s";
            EXPECT_NEAR(std::remainder(beats[0] - fit.phase, fit.period), 0, 0.002) << bpm;
        }
        const auto drifting = test::beatTimes(0.2, seconds, [&](double t) { return 100 + 6 * t / seconds; });
        const auto env = envelopeOf(drifting, seconds);
        EXPECT_LT(bars::fitLattice(env, bars::peaks(env), 103).agreement, 0.85) << seconds;
    }
}

TEST(BeatPath, FollowsOnsetsThroughDriftAndGaps) {
    auto beats = test::beatTimes(0.3, 60, [](double t) { return 100 + 8 * std::sin(t / 5); });
    auto heard = beats;
    for (const size_t gone : {60U, 40U, 39U, 12U}) { heard.erase(heard.begin() + gone); }
    const auto found = bars::beatPath(envelopeOf(heard, 60), 100);
    EXPECT_NEAR(double(found.size()), double(beats.size()), 1);
    for (const double e : test::errors(found, beats)) { EXPECT_LT(std::abs(e), 0.04); }
}

TEST(BarChoice, TakesTheHighestSumAndItsShare) {
    EXPECT_FALSE(bars::choose({}));
    // Three whose sums are 0, ln 2 and ln 5: shares of 1, 2 and 5 eighths.
    std::vector<bars::Hypothesis> some(3);
    some[1].evidence[bars::fourBars] = std::log(2.0) / bars::weights[bars::fourBars].perUnit;
    some[2].evidence[bars::tempo] = std::log(5.0) / bars::weights[bars::tempo].perUnit;
    const auto choice = bars::choose(some);
    ASSERT_TRUE(choice);
    EXPECT_EQ(choice->index, 2U);
    EXPECT_NEAR(choice->likelihood, 5.0 / 8, 1e-12);
}

// Evidence on a pulse of 2 Hz with bars of four from its second beat on: bass there, and another chord in each bar, the
// same every four bars.
TEST(BarEvidence, SpeaksForTheTrueBarLine) {
    constexpr double seconds = 40;
    HarmonyFrames harmony;
    harmony.meanPower = 1;
    for (double t = 0; t < seconds; t += 1024 / 22050.0) {
        const double bar = std::floor((t + 2048 / 22050.0 - 0.5) / 2);
        HarmonyFrames::Chroma row{};
        row[size_t(int(bar + 4) % 4 * 3)] = row[1] = 1;
        harmony.chroma.push_back(row);
        harmony.lowEnergy.push_back(t + 2048 / 22050.0 - 0.5 - 2 * bar < 0.3 ? 10 : 0.1F);
    }
    const auto beats = test::beatTimes(0, seconds - 0.1, [](double) { return 120.0; });
    std::vector<double> peaks = beats;
    for (double& t : peaks) { t -= bars::attackDelay; }
    std::vector<double> lowPeaks;
    for (size_t i = 1; i < peaks.size(); i += 4) { lowPeaks.push_back(peaks[i]); }
    const auto env = envelopeOf(peaks, seconds);
    const auto low = envelopeOf(lowPeaks, seconds);
    const auto sound = bars::soundOf(env, low, harmony, seconds);
    bars::Pulse pulse{beats, 0.5, bars::attackDelay, 0, beats.size(), 1};
    const std::array meters = {3, 4};
    const auto all = bars::hypotheses(pulse, 0, sound, meters);
    ASSERT_EQ(all.size(), 7U);
    const auto& right = all[3 + 1].evidence;  // after the three of 3/4, place 1 of 4/4
    for (const auto& other : all) {
        if (&other.evidence == &right) { continue; }
        EXPECT_LT(other.evidence[bars::lowOnBar], right[bars::lowOnBar] - 0.5) << other.beatsPerBar << other.place;
        EXPECT_LT(other.evidence[bars::harmonyOnBar], right[bars::harmonyOnBar] - 0.5) << other.place;
        if (other.beatsPerBar == 3) {
            EXPECT_LT(other.evidence[bars::fourBars], right[bars::fourBars]);
            EXPECT_LT(other.evidence[bars::lowBarLikeness], 0.1);
        }
    }
    EXPECT_NEAR(right[bars::lowOnBar], std::sqrt(3), 0.1) << "one of four stands out: (1 - 1/4) / sqrt(3/16)";
    EXPECT_GT(right[bars::fourBars], 1);
    EXPECT_NEAR(right[bars::beatLikeness], 1, 0.1);
    EXPECT_NEAR(right[bars::twoBeatLikeness], 1, 0.1);
    EXPECT_NEAR(right[bars::lowBarLikeness], 1, 0.1);
    EXPECT_NEAR(right[bars::tempo], std::log2(120 / 115.0), 1e-9);
    EXPECT_EQ(right[bars::startsOnBar], 1) << "the envelope begins too late for the first beat";
    EXPECT_EQ(all[3].evidence[bars::startsOnBar], 0);
    EXPECT_LT(right[bars::onsetOnThirds], 0.1);

    pulse.beats.resize(4 * 6);  // six bars, of which no two are alike at four, two or three bars
    pulse.to = pulse.beats.size();
    for (const auto& h : bars::hypotheses(pulse, 0, sound, std::array{4})) { EXPECT_EQ(h.evidence[bars::fourBars], 0); }
}

// Oom-pah: bass on the bar line and its fifth on the third beat of four, and louder chords with more low onset between.
std::vector<float> accompaniment(double bpm, int beatsPerBar, double start, double seconds, std::vector<double>& bars) {
    static constexpr std::array roots = {48, 45, 41, 43};
    std::vector<float> x(size_t(seconds * test::musicRate), 0.0F);
    const double beat = 60 / bpm;
    for (int i = 0; start + (i + 1) * beat < seconds; ++i) {
        const double t = start + i * beat;
        const int root = roots[size_t(i / beatsPerBar) % 4];
        const int place = i % beatsPerBar;
        if (place == 0) { bars.push_back(t); }
        if (place == 0 || (place == 2 && beatsPerBar == 4)) {
            const int note = root - 12 + (place == 0 ? 0 : 7);
            for (int harmonic = 1; harmonic <= 4; ++harmonic) {
                test::addTone(x, t, harmonic * 440 * std::exp2((note - 69) / 12.0), 0.3 / harmonic, 0.4, 0.02);
            }
            continue;
        }
        for (const int note : {root + 12, root + 16, root + 19}) {
            test::addTone(x, t, 440 * std::exp2((note - 69) / 12.0), 0.15, 0.12);
        }
        test::addTone(x, t, 180, 0.2, 0.03);
    }
    return x;
}

TEST(BarLines, FallOnTheBassWhereChordsAreLouder) {
    for (const auto& [bpm, beatsPerBar, start] : {std::tuple{112.0, 4, 0.0}, {150.0, 3, 0.7}, {124.0, 4, 1.3}}) {
        constexpr double seconds = 60;
        std::vector<double> bars;
        const auto x = accompaniment(bpm, beatsPerBar, start, seconds, bars);
        const auto tempo = TempoAnalyzer::analyze(x);
        ASSERT_TRUE(tempo);
        const MusicGrid guess = GridBuilder::build(*tempo, x, seconds);
        const auto rightBars = [&](const MusicGrid& grid) {
            auto found = grid.downbeats;
            std::erase_if(found, [&](double t) { return t > bars.back() + 0.03; });
            return grid.beatsPerBar == beatsPerBar && found.size() >= bars.size() &&
                   std::ranges::all_of(test::errors(found, bars), [](double e) { return std::abs(e) < 0.03; });
        };
        const MusicGrid grid = BarLines::choose(guess, *tempo, GridBuilder::PulseLevels(x), HarmonyFrames(x));
        EXPECT_NEAR(grid.bpm, bpm, 0.05);
        EXPECT_TRUE(rightBars(grid)) << bpm << ", first at " << grid.downbeats[0] << ", " << grid.beatsPerBar << "/4";
        EXPECT_GT(grid.downbeatConfidence, 0.8) << bpm;
        EXPECT_FALSE(rightBars(guess)) << bpm << ": proves nothing, the first guess is right";
        // The user's word stands.
        const MusicGrid given =
            BarLines::choose(guess, *tempo, GridBuilder::PulseLevels(x), HarmonyFrames(x), {2 * bpm, 5});
        EXPECT_NEAR(given.bpm, 2 * bpm, 0.1);
        EXPECT_EQ(given.beatsPerBar, 5);
        const double beat = 60 / bpm;
        for (const double at : {bars[2] + beat, bars[2] + beat + 0.1 * beat, bars[2] + 0.4 * beat}) {
            const MusicGrid moved =
                BarLines::choose(guess, *tempo, GridBuilder::PulseLevels(x), HarmonyFrames(x), {bpm, beatsPerBar, at});
            const auto off = [at](double t) { return std::abs(t - at); };
            const double nearest = *std::ranges::min_element(moved.downbeats, {}, off);
            // A beat that is near is meant, otherwise the time itself.
            EXPECT_LT(off(nearest), at == bars[2] + 0.4 * beat ? 1e-9 : 0.11 * beat + 0.02) << bpm << " BPM, " << at;
            EXPECT_NEAR(moved.bpm, bpm, 0.05);
            EXPECT_EQ(moved.beatsPerBar, beatsPerBar);
            EXPECT_EQ(moved.downbeatConfidence, 1);
            EXPECT_TRUE(std::ranges::is_sorted(moved.beats));
        }
    }
}

}  // namespace
}  // namespace brindlehum
