// TempoAnalyzer, GridBuilder and DownbeatDetector on click tracks of known tempo and on degenerate input.
#include <gtest/gtest.h>

#include <limits>

#include "analysis/downbeat_detector.h"
#include "analysis/grid_builder.h"
#include "analysis/onset_time.h"
#include "analysis/tempo_analyzer.h"
#include "support/music.h"
#include "support/signals.h"

namespace brindlehum {
namespace {

constexpr double seconds = 30;

bool isNear(double bpm, double truth) {
    return std::abs(bpm / truth - 1) < 0.005;
}

bool named(const TempoResult& tempo, double truth) {
    return isNear(tempo.bpm, truth) || (tempo.twin && isNear(*tempo.twin, truth)) ||
           std::ranges::any_of(tempo.alternatives, [&](const auto& a) { return isNear(a.bpm, truth); });
}

TEST(Tempo, NamesTheTempoOfClickTracksFrom40To230) {
    int right = 0;
    int cases = 0;
    for (int bpm = 40; bpm <= 230; bpm += 10) {
        for (const int group : {2, 3, 4}) {
            const int pickup = (bpm / 10 + group) % 2;
            const auto beats = test::beatTimes(0.35, seconds, [&](double) { return bpm; });
            const auto x = test::clickTrack(beats, group, pickup, seconds);
            const auto tempo = TempoAnalyzer::analyze(x);
            const auto what = std::to_string(bpm) + " BPM, groups of " + std::to_string(group);
            ASSERT_TRUE(tempo) << what;
            EXPECT_TRUE(named(*tempo, bpm)) << what << ": " << tempo->bpm;
            ++cases;
            if (isNear(tempo->bpm, bpm)) {
                ++right;
                EXPECT_EQ(tempo->drift, "STEADY") << what;
                // A bar of 4 with one accent is also a bar of 2 at half contrast, never the other way round.
                EXPECT_EQ(tempo->meter.group % group, 0) << what;
            }

            // Above that a click track often counts as unsteady: a quarter of the file may keep another phase than the
            // whole by the 3 frames (35 ms) over which phases score alike, and 7 % of a beat is less than that.
            if (bpm > 220) { continue; }
            const MusicGrid grid = GridBuilder::build(*tempo, x, seconds, bpm, group);
            EXPECT_TRUE(grid.steady) << what;
            EXPECT_NEAR(grid.bpm / bpm, 1, 0.0015) << what;
            std::vector<double> downbeats;
            for (auto i = size_t(pickup); i < beats.size(); i += size_t(group)) { downbeats.push_back(beats[i]); }
            for (const double e : test::errors(grid.downbeats, downbeats)) { ASSERT_LT(std::abs(e), 0.02) << what; }
            EXPECT_GT(grid.downbeatConfidence, 0.9) << what;
        }
    }
    std::printf("tempo right at once in %d of %d click tracks, named in all\n", right, cases);
    EXPECT_GE(right, 42);
}

TEST(Tempo, FollowsAMovingTempo) {
    struct Case {
        const char* what;
        double from, to;
        bool sudden;
        const char* drift;
    };
    for (const Case& c : {Case{"slow rise", 118, 121, false, "BREATHING"}, Case{"fast rise", 100, 125, false, "RUBATO"},
                          Case{"sudden change", 100, 120, true, "RUBATO"}}) {
        const auto at = [&](double t) {
            return c.sudden ? (t < 20 ? c.from : c.to) : c.from + (c.to - c.from) * t / 40;
        };
        const auto beats = test::beatTimes(0.5, 40, at);
        const auto x = test::clickTrack(beats, 4, 0, 40);
        const auto tempo = TempoAnalyzer::analyze(x);
        ASSERT_TRUE(tempo) << c.what;
        EXPECT_EQ(tempo->drift, c.drift) << c.what << ": " << tempo->driftSpreadPct;
        for (const auto& point : tempo->tempoMap) {
            if (c.sudden && std::abs(point.t - 20) < 5) { continue; }
            EXPECT_NEAR(point.bpm / at(point.t), 1, 0.025) << c.what << " at " << point.t;
        }
        const MusicGrid grid = GridBuilder::build(*tempo, x, 40);
        EXPECT_FALSE(grid.steady) << c.what;
        EXPECT_EQ(grid.beats, tempo->beats) << c.what;
        // Tracked beats sit on envelope peaks, which come up to 50 ms ahead: the window hears the click's approach.
        // A jump leaves the tracker between the clicks, out of its reach of 12 % of a beat, so only the beats before it
        // count.
        std::vector<double> tracked = grid.beats;
        if (c.sudden) {
            std::erase_if(tracked, [](double t) { return t > 19; });
        }
        const auto off = test::errors(tracked, beats);
        const auto good = std::ranges::count_if(off, [](double e) { return e > -0.055 && e < 0.02; });
        EXPECT_GT(double(good) / double(off.size()), 0.9) << c.what;
    }
}

TEST(Tempo, HintAndRangeNarrowTheSearch) {
    const auto beats = test::beatTimes(0.2, seconds, [](double) { return 120.0; });
    const auto x = test::clickTrack(beats, 4, 0, seconds);
    const auto inside = [](const TempoResult& t, double lo, double hi) {
        return std::ranges::all_of(t.candidates, [&](const auto& c) { return c.bpm > lo * 0.97 && c.bpm < hi * 1.03; });
    };
    EXPECT_TRUE(inside(*TempoAnalyzer::analyze(x, 120.0), 120 / 1.35, 120 * 1.35));
    EXPECT_TRUE(inside(*TempoAnalyzer::analyze(x, 120.0, std::pair{110.0, 130.0}), 110, 130));
    EXPECT_NEAR(TempoAnalyzer::analyze(x, 60.0)->bpm, 60, 0.3);
    EXPECT_FALSE(TempoAnalyzer::analyze(x, 20.0)) << "the hint lies outside the range";
    for (const double absurd : {0.0, -120.0, std::numeric_limits<double>::quiet_NaN()}) {
        EXPECT_FALSE(TempoAnalyzer::analyze(x, absurd)) << absurd;
    }
}

TEST(Tempo, BeatsRunOnThroughSilence) {
    std::vector<float> env(1000, 0.08F);  // nowhere above the limit
    const auto tracked = TempoAnalyzer::trackBeats(env, {}, 120);
    EXPECT_EQ(tracked.snapped, 0);
    ASSERT_GT(tracked.beats.size(), 20U);
    for (size_t i = 0; i < tracked.beats.size(); ++i) { EXPECT_NEAR(tracked.beats[i], double(i) * 0.5, 1e-9); }
}

std::vector<float> pulses(size_t count, double bpm, uint32_t seed, float bed) {
    auto env = test::noise(count, seed);
    for (float& v : env) { v = std::abs(v) * bed; }
    for (double t = 0.1; t * OnsetTime::frameRate < double(count); t += 60 / bpm) {
        env[size_t(t * OnsetTime::frameRate)] += 0.5F;
    }
    return env;
}

TEST(Grid, BarsReachBackToTheStart) {
    TempoResult tempo;
    tempo.bpm = 120;
    tempo.envFull = pulses(2000, 120, 1, 0);
    tempo.envLow = tempo.envFull;
    // Beats at 0.1 + i / 2 s; the third is the strongest of four.
    for (double t = 1.1; t < 23; t += 2) { tempo.envLow[size_t(t * OnsetTime::frameRate)] = 5; }
    const std::vector<float> silence(size_t(23 * test::musicRate), 0.0F);
    const MusicGrid grid = GridBuilder::build(tempo, silence, 23);
    ASSERT_TRUE(grid.steady);
    EXPECT_NEAR(grid.downbeats[0], 1.1, 0.03);
    EXPECT_NEAR(grid.downbeats[1] - grid.downbeats[0], 240 / grid.bpm, 1e-9);
    EXPECT_EQ(grid.boundaries().back(), 23);
}

TEST(Downbeats, GrooveStartsWithThePulse) {
    for (uint32_t seed = 1; seed <= 6; ++seed) {
        auto x = test::noise(size_t(9 * test::musicRate), seed);
        for (float& v : x) { v *= 0.01F * float(seed); }
        const double bpm = 70 + 20.0 * seed;
        EXPECT_EQ(DownbeatDetector::detect(x, test::musicRate, bpm, 3).grooveStart, 0) << "noise, seed " << seed;
        for (double t = 2.5; t < 9; t += 60 / bpm) { test::addTone(x, t, 300, 0.5, 0.05); }
        const auto pulse = DownbeatDetector::detect(x, test::musicRate, bpm, 3);
        EXPECT_NEAR(pulse.grooveStart, 2.5, 60 / bpm + 0.01) << "within a beat of the first tone, seed " << seed;
    }
}

}  // namespace
}  // namespace brindlehum
