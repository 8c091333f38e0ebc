// TempoAnalyzer, GridBuilder and DownbeatDetector on click tracks of known tempo.
#include <gtest/gtest.h>

#include "analysis/grid/downbeat_detector.h"
#include "analysis/grid/grid_builder.h"
#include "analysis/tempo/tempo_analyzer.h"
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
