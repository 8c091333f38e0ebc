// TempoAnalyzer and GridBuilder: click tracks of known tempo, plain twins, and degenerate input.
#include <gtest/gtest.h>

#include <limits>
#include <random>

#include "analysis/downbeat_detector.h"
#include "analysis/grid_builder.h"
#include "analysis/onset_time.h"
#include "analysis/tempo_analyzer.h"
#include "support/signals.h"
#include "synth.h"

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

TEST(Tempo, ClickTracksFrom40To230) {
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

TEST(Tempo, FollowsATempoThatMoves) {
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
        // A jump leaves the tracker between the clicks, out of its reach of 12 % of a beat, so only what precedes it
        // counts.
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
    EXPECT_TRUE(inside(*TempoAnalyzer::analyze(x, 120.0, std::pair{10.0, 900.0}), 120 / 1.35, 120 * 1.35));
    EXPECT_TRUE(inside(*TempoAnalyzer::analyze(x, 120.0, std::pair{110.0, 130.0}), 110, 130));
    EXPECT_NEAR(TempoAnalyzer::analyze(x, 60.0)->bpm, 60, 0.3);
    EXPECT_FALSE(TempoAnalyzer::analyze(x, 20.0)) << "the hint lies outside the range";
    for (const double absurd : {0.0, -120.0, std::numeric_limits<double>::quiet_NaN()}) {
        EXPECT_FALSE(TempoAnalyzer::analyze(x, absurd)) << absurd;
    }
}

// Peaks of the autocorrelation by the plain definition.
std::vector<TempoResult::Candidate> plainCandidates(const std::vector<float>& env, double lo, double hi,
                                                    double center) {
    const auto n = int(env.size());
    double mean = 0;
    for (const float v : env) { mean += v / n; }
    const auto acf = [&](int lag) {
        double sum = 0;
        for (int i = 0; i + lag < n; ++i) { sum += (env[size_t(i)] - mean) * (env[size_t(i + lag)] - mean); }
        return sum;
    };
    const int a = std::max(int(5167.96875 / hi), 2);
    const int b = int(5167.96875 / lo);
    const double zero = acf(0) + 1e-9;
    std::vector<double> scores;
    for (int lag = a; lag < std::min(n - 5, b); ++lag) {
        double sum = 0;
        double used = 0;
        for (const auto& [m, w] : {std::pair{1, 1.0}, {2, 0.6}, {3, 0.3}, {4, 0.4}}) {
            if (m * lag >= n || m * lag >= 4 * b + 4) { continue; }
            sum += w * acf(m * lag) / zero;
            used += w;
        }
        scores.push_back(sum / used);
    }
    std::vector<TempoResult::Candidate> out;
    for (int i = 1; i + 1 < int(scores.size()); ++i) {
        if (scores[size_t(i - 1)] > scores[size_t(i)] || scores[size_t(i + 1)] > scores[size_t(i)]) { continue; }
        const int lag = a + i;
        const double before = acf(lag - 1);
        const double at = acf(lag);
        const double after = acf(lag + 1);
        const double shift = std::clamp((before - after) / (2 * (before - 2 * at + after)), -0.5, 0.5);
        const double bpm = 5167.96875 / (lag + shift);
        if (std::ranges::any_of(out, [&](const auto& c) { return std::abs(bpm - c.bpm) / bpm <= 0.03; })) { continue; }
        out.push_back(
            {bpm, scores[size_t(i)], scores[size_t(i)] * std::exp(-0.5 * std::pow(std::log2(bpm / center) / 1.2, 2))});
    }
    std::ranges::stable_sort(out, std::ranges::greater{}, &TempoResult::Candidate::ranked);
    out.resize(std::min<size_t>(out.size(), 12));
    return out;
}

TEST(Tempo, CandidatesEqualThePlainTwin) {
    for (uint32_t seed = 1; seed <= 20; ++seed) {
        auto env = test::noise(200 + 60 * seed, seed);
        for (float& v : env) { v = std::abs(v); }
        for (size_t i = seed % 20; i < env.size(); i += 30 + seed) { env[i] += 2; }
        const auto got = TempoAnalyzer::candidates(env, 40, 230, 100.0);
        const auto want = plainCandidates(env, 40, 230, 100);
        ASSERT_EQ(got.size(), want.size()) << "seed " << seed;
        for (size_t i = 0; i < got.size(); ++i) {
            EXPECT_NEAR(got[i].bpm, want[i].bpm, 0.01) << "seed " << seed << ", " << i;
            EXPECT_NEAR(got[i].score, want[i].score, 1e-5) << "seed " << seed << ", " << i;
            EXPECT_NEAR(got[i].ranked, want[i].ranked, 1e-5) << "seed " << seed << ", " << i;
        }
    }
}

TEST(Tempo, BeatsRunOnThroughSilence) {
    std::vector<float> env(1000, 0.08F);  // nowhere above the limit
    const auto tracked = TempoAnalyzer::trackBeats(env, {}, 120);
    EXPECT_EQ(tracked.snapped, 0);
    ASSERT_GT(tracked.beats.size(), 20U);
    for (size_t i = 0; i < tracked.beats.size(); ++i) { EXPECT_NEAR(tracked.beats[i], double(i) * 0.5, 1e-9); }
    // The tempo of the map is interpolated, and held beyond its ends.
    const TempoAnalyzer::MapScore map[] = {{2, 60, 1}, {6, 120, 1}};
    const auto guided = TempoAnalyzer::trackBeats(env, map, 200).beats;
    EXPECT_NEAR(guided[1] - guided[0], 1, 1e-9);
    const size_t middle = 3;  // the beat at 3 s, at 75 BPM
    EXPECT_NEAR(guided[middle], 3, 1e-9);
    EXPECT_NEAR(guided[middle + 1] - guided[middle], 60.0 / 75, 1e-9);
    EXPECT_NEAR(guided.back() - guided[guided.size() - 2], 0.5, 1e-9);
}

TEST(Tempo, MeterNeedsThreeBarsAndPrefersTheSmallerOnATie) {
    const std::vector<float> env(2000, 0.5F);
    const auto beatsAt = [](size_t count) {
        std::vector<double> beats;
        for (size_t i = 0; i < count; ++i) { beats.push_back(double(i) * 20.5 / OnsetTime::frameRate); }
        return beats;
    };
    EXPECT_EQ(TempoAnalyzer::meter(beatsAt(5), env, env).label, "?");
    EXPECT_EQ(TempoAnalyzer::meter(beatsAt(60), env, env).label, "2/4 or cut time") << "no contrast anywhere";
    for (const int group : {2, 3, 4}) {
        for (int offset = 0; offset < group; ++offset) {
            std::vector<float> low(2000, 0.2F);
            for (int i = offset; i < 60; i += group) { low[size_t(i * 20.5)] = 1; }
            const auto meter = TempoAnalyzer::meter(beatsAt(60), low, env);
            EXPECT_EQ(meter.group, group);
            EXPECT_EQ(meter.downbeatOffset, offset);
            EXPECT_EQ(meter.confidence, "strong");
            EXPECT_EQ(GridBuilder::downbeatOffset(beatsAt(60), low, env, group), offset);
        }
    }
    EXPECT_EQ(GridBuilder::downbeatOffset(beatsAt(7), env, env, 4), 0) << "fewer than two bars";
}

// The comb search by its plain definition.
GridBuilder::Fit plainFit(const std::vector<float>& env, double bpm) {
    const auto n = int(env.size());
    const auto comb = [&](double p, double t0, int from, int to) {
        double sum = 0;
        int count = 0;
        for (int k = 0;; ++k) {
            const auto i = int(std::lround((t0 + k * p) * OnsetTime::frameRate));
            if (i >= to) { break; }
            if (i < from) { continue; }
            sum += std::max({env[size_t(std::max(i - 1, 0))], env[size_t(i)], env[size_t(std::min(i + 1, n - 1))]});
            ++count;
        }
        return count > 0 ? sum / count : 0;
    };
    double p = 0;
    double phase = 0;
    double score = -1;
    for (int k = -30; k <= 30; ++k) {
        const double trial = 60 / bpm * (1 + 0.0002 * k);
        for (int j = 0; j < 96; ++j) {
            if (const double s = comb(trial, trial * j / 96, 0, n); s > score) {
                score = s, p = trial, phase = trial * j / 96;
            }
        }
    }
    const double step = p / 96;
    for (int m = -10; m <= 10; ++m) {
        if (const double s = comb(p, phase + step * m / 10, 0, n); s > score) { score = s, phase += step * m / 10; }
    }
    bool steady = true;
    for (int q = 0; q < 4; ++q) {
        double best = -1;
        double at = 0;
        for (int j = 0; j < 96; ++j) {
            if (const double s = comb(p, p * j / 96, q * (n / 4), (q + 1) * (n / 4)); s > best) {
                best = s, at = p * j / 96;
            }
        }
        double distance = std::abs(at - std::fmod(phase + p, p));
        distance = std::min(distance, p - distance);
        if (best >= 0.05 && distance > 0.07 * p) { steady = false; }
    }
    double mean = 0;
    for (const float v : env) { mean += double(v) / n; }
    return {steady && 1.5 * mean < score, p, phase, score};
}

std::vector<float> pulses(size_t count, double bpm, uint32_t seed, float bed) {
    auto env = test::noise(count, seed);
    for (float& v : env) { v = std::abs(v) * bed; }
    for (double t = 0.1; t * OnsetTime::frameRate < double(count); t += 60 / bpm) {
        env[size_t(t * OnsetTime::frameRate)] += 0.5F;
    }
    return env;
}

TEST(Grid, SteadyFitEqualsThePlainTwin) {
    int steady = 0;
    for (uint32_t seed = 1; seed <= 8; ++seed) {
        auto env = pulses(700 + 130 * seed, 90 + seed * 11, seed, 0.2F);
        if (seed % 3 == 0) { std::rotate(env.begin(), env.begin() + 12, env.begin() + int(env.size() / 4)); }
        const auto got = GridBuilder::steadyFit(env, 90.3 + seed * 11);
        const auto want = plainFit(env, 90.3 + seed * 11);
        EXPECT_EQ(got.steady, want.steady) << "seed " << seed;
        EXPECT_NEAR(got.period, want.period, 1e-9) << "seed " << seed;
        EXPECT_NEAR(got.phase, want.phase, 1e-9) << "seed " << seed;
        EXPECT_NEAR(got.score, want.score, 1e-6) << "seed " << seed;
        steady += int(got.steady);
    }
    EXPECT_GT(steady, 0);
    EXPECT_LT(steady, 8);
}

TEST(Grid, SteadyNeedsEightSeconds) {
    EXPECT_FALSE(GridBuilder::steadyFit(pulses(689, 120, 1, 0), 120).steady);
    EXPECT_EQ(GridBuilder::steadyFit(pulses(689, 120, 1, 0), 120).score, -1);
    EXPECT_TRUE(GridBuilder::steadyFit(pulses(690, 120, 1, 0), 120).steady);
    for (const double absurd : {0.0, -1.0, 1e9, std::numeric_limits<double>::infinity()}) {
        EXPECT_FALSE(GridBuilder::steadyFit(pulses(2000, 120, 1, 0), absurd).steady) << absurd;
    }
}

TEST(Grid, AttackOffsetIsTheMiddleAttackWithinItsLimits) {
    const double period = 0.5;
    std::vector<float> env(1800, 1.0F);
    for (const double late : {-0.03, 0.0, 0.02, 0.06}) {
        std::vector<float> x(size_t(20 * test::rate), 0.0F);
        for (double t = 1; t < 19; t += period) { test::addTone(x, t + late, 1000, 0.5, 0.02); }
        EXPECT_NEAR(GridBuilder::attackOffset(x, period, 0, env), late - 0.003, 0.0025) << late;
        EXPECT_EQ(GridBuilder::attackOffset(x, period, 0, std::vector<float>(1800, 0.25F)), 0) << "no strong beat";
        EXPECT_EQ(GridBuilder::attackOffset(x, 4, 0, env), 0) << "fewer than 8 strong beats";
    }
    EXPECT_EQ(GridBuilder::attackOffset(std::vector<float>(285, 1.0F), 0.1, 0, env), 0);
}

TEST(Grid, BarsWalkBackToTheStart) {
    TempoResult tempo;
    tempo.bpm = 120;
    tempo.envFull = pulses(2000, 120, 1, 0);
    tempo.envLow = tempo.envFull;
    // Beats at 0.1 + i / 2 s; the third is the strongest of four.
    for (double t = 1.1; t < 23; t += 2) { tempo.envLow[size_t(t * OnsetTime::frameRate)] = 5; }
    const std::vector<float> silence(size_t(23 * test::rate), 0.0F);
    const MusicGrid grid = GridBuilder::build(tempo, silence, 23);
    ASSERT_TRUE(grid.steady);
    EXPECT_NEAR(grid.downbeats[0], 1.1, 0.03);
    EXPECT_NEAR(grid.downbeats[1] - grid.downbeats[0], 240 / grid.bpm, 1e-9);
    EXPECT_EQ(grid.boundaries().back(), 23);
    MusicGrid even;
    even.downbeats = {0, 2, 4};
    even.duration = 4.0005;
    EXPECT_EQ(even.boundaries(), even.downbeats) << "a rest of half a millisecond is no bar";
    even.downbeats.clear();
    EXPECT_TRUE(even.boundaries().empty());
}

TEST(Grid, MeterOfThreeNeedsContrast) {
    TempoResult tempo;
    tempo.bpm = 100;
    tempo.meter.group = 3;
    tempo.meter.contrast = 0.45;
    EXPECT_EQ(GridBuilder::build(tempo, {}, 5).beatsPerBar, 4);
    tempo.meter.contrast = 0.46;
    EXPECT_EQ(GridBuilder::build(tempo, {}, 5).beatsPerBar, 3);
    tempo.meter.group = 2;
    EXPECT_EQ(GridBuilder::build(tempo, {}, 5).beatsPerBar, 4);
    const MusicGrid none = GridBuilder::build(tempo, {}, 5, 90.0, 5);
    EXPECT_EQ(none.downbeats, std::vector<double>{0.0}) << "no beats: one bar";
    EXPECT_EQ(none.bpm, 90);
    EXPECT_EQ(none.beatsPerBar, 5);
}

// Pulse similarity, clarity and groove start by their plain definition.
DownbeatDetector::Result plainDetect(const std::vector<float>& x, double fs, double bpm, int bar) {
    const int hop = std::max(int(fs * 0.005), 1);
    const int n = (int(x.size()) - 2 * hop) / hop;
    const double dt = hop / fs;
    std::vector<double> o;
    double before = 0;
    for (int i = 0; i < n; ++i) {
        const double level = Signal::rms(x, i * hop, i * hop + 2 * hop);
        o.push_back(std::max(0.0, level - before));
        before = level;
    }
    const double beatSeconds = 60 / bpm;
    const int lag = std::max(int(std::lround(beatSeconds / dt)), 1);
    const int barFrames = int(std::lround(beatSeconds * bar / dt));
    const int reach = std::max(lag, barFrames);
    const auto at = [&](int i) { return i < n ? o[size_t(i)] : 0; };
    std::vector<double> s;
    for (int i = 0; i < n; ++i) {
        const int lo = std::max(i - reach, 0);
        const int hi = std::max(lo, std::min(i + reach, n - lag));
        double cross = 0, now = 0, later = 0;
        for (int j = lo; j < hi; ++j) {
            cross += at(j) * at(j + lag), now += at(j) * at(j), later += at(j + lag) * at(j + lag);
        }
        s.push_back(now > 1e-12 && later > 1e-12 ? std::max(cross / std::sqrt(now * later), 0.0) : 0);
    }
    double best = 0, total = 0;
    for (int k = 0; k < 64; ++k) {
        double sum = 0;
        for (int m = 0; beatSeconds * k / 64 + m * beatSeconds < dt * n; ++m) {
            const auto i = int(std::lround((beatSeconds * k / 64 + m * beatSeconds) / dt));
            double most = 0;
            for (int j = i - 1; j <= i + 1; ++j) {
                const auto c = size_t(std::clamp(j, 0, n - 1));
                most = std::max(most, o[c] * s[c]);
            }
            sum += most;
        }
        best = std::max(best, sum);
        total += sum;
    }
    const double peak = *std::ranges::max_element(o);
    for (int i = 0; i < n; ++i) {
        int run = 0;
        while (i + run < n && s[size_t(i + run)] >= 0.5) { ++run; }
        double near = 0;
        for (int j = std::max(i - lag, 0); j <= std::min(i + lag, n - 1); ++j) { near = std::max(near, o[size_t(j)]); }
        if (run >= std::max(barFrames, 1) && near >= 0.15 * peak) {
            return {std::clamp(best / std::max(total / 64, 1e-9) - 1, 0.0, 1.0), dt * i};
        }
    }
    return {std::clamp(best / std::max(total / 64, 1e-9) - 1, 0.0, 1.0), 0};
}

TEST(Downbeats, DetectionEqualsThePlainTwin) {
    for (uint32_t seed = 1; seed <= 6; ++seed) {
        auto x = test::noise(size_t(9 * test::rate), seed);
        for (float& v : x) { v *= 0.02F * float(seed); }
        const double bpm = 70 + 20.0 * seed;
        for (double t = 2.5; t < 9; t += 60 / bpm) { test::addTone(x, t, 300, 0.5, 0.05); }
        const auto got = DownbeatDetector::detect(x, test::rate, bpm, 3);
        const auto want = plainDetect(x, test::rate, bpm, 3);
        EXPECT_NEAR(got.confidence, want.confidence, 1e-4) << "seed " << seed;
        EXPECT_NEAR(got.grooveStart, want.grooveStart, 0.0051) << "seed " << seed;
    }
    const DownbeatDetector::Result none = DownbeatDetector::detect(std::vector<float>(900, 1.0F), test::rate, 120, 4);
    EXPECT_EQ(none.confidence, 0) << "under 8 frames";
}

}  // namespace
}  // namespace brindlehum
