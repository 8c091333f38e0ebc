// Structure: each stage on hand-made bars, then songs of known form.
#include "analysis/structure/structure.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/music.h"
#include "support/signals.h"

namespace brindlehum {
namespace {

using testing::Contains;
using testing::ElementsAre;

// A signal whose bars of one second have the given RMS levels.
struct Bars {
    explicit Bars(const std::vector<double>& levels) {
        for (size_t bar = 0; bar < levels.size(); ++bar) {
            bounds.push_back(double(bar));
            for (int i = 0; i < 22050; ++i) { x.push_back(float(i % 2 == 0 ? levels[bar] : -levels[bar])); }
        }
        bounds.push_back(double(levels.size()));
    }
    BarProfile profile() const { return Structure::profile(x, test::musicRate, bounds); }
    std::vector<float> x;
    std::vector<double> bounds;
};

TEST(BarProfile, FindsWhereTheMusicStartsAndEnds) {
    struct Case {
        const char* what;
        std::vector<double> levels;
        int start, end;
    };
    for (const Case& c : {
             Case{"silent first bar", {0, 1, 1, 1}, 1, 4},
             Case{"a first bar above 18 % is still a lead-in", {0.3, 1, 1, 1}, 1, 4},
             Case{"a first bar at two thirds is music", {0.66, 1, 1, 1}, 0, 4},
             Case{"slow swell", {0.1, 0.14, 0.2, 0.28, 0.4, 1, 1, 1}, 5, 8},
             Case{"eight silent bars", {0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1}, 9, 20},
             Case{"single bar", {1}, 0, 1},
             Case{"silence", {0, 0, 0}, 0, 3},
             Case{"steep fall", {1, 1, 1, 0.5}, 0, 3},
             Case{"steep fall, still loud", {1, 1, 1, 1, 1, 1, 1, 1, 1, 2, 0.9}, 0, 11},
             Case{"between the two falls", {1, 1, 1, 0.52}, 0, 4},
             Case{"a tail of several bars", {1, 1, 1, 0.4, 0.15, 0.05}, 0, 3},
         }) {
        const BarProfile p = Bars(c.levels).profile();
        EXPECT_EQ(p.musicStartBar, c.start) << c.what;
        EXPECT_EQ(p.musicEndBar, c.end) << c.what;
    }
    EXPECT_TRUE(Structure::profile(test::noise(1000, 1), test::musicRate, std::vector<double>{0}).rms.empty());
}

TEST(Similarity, IsTheWeightedSumOfChromaBandsAndLevel) {
    SpectralFrames frames;
    for (int bar = 0; bar < 3; ++bar) {
        for (int i = 0; i < 4; ++i) {
            frames.chroma.push_back({});
            frames.chroma.back()[bar == 1 ? 7 : 0] = 5;
            frames.bands.push_back({});
            frames.bands.back()[bar == 1 ? 2 : 1] = 3;
            frames.rms.push_back(bar == 2 ? 0.05F : 0.1F);
        }
    }
    const double second = SpectralFrames::centre(4) - 0.01;
    const std::vector<double> bounds = {0, second, SpectralFrames::centre(8) - 0.01, 2};
    const auto features = Structure::barFeatures(frames, bounds);
    ASSERT_EQ(features.size(), 3U);
    EXPECT_NEAR(features[0].db, -20, 1e-4);
    const auto sim = Structure::similarity(features);
    EXPECT_NEAR(sim.at(0, 0), 1, 1e-6);
    EXPECT_NEAR(sim.at(0, 1), 0.15, 1e-6) << "only the level is shared";
    EXPECT_NEAR(sim.at(0, 2), 0.85 + 0.15 * (1 - 6.0206 / 12), 1e-5);
}

TEST(Novelty, PeaksBetweenTwoBlocks) {
    SimilarityMatrix sim(20);
    for (int i = 0; i < 20; ++i) {
        for (int j = 0; j < 20; ++j) { sim.set(i, j, (i < 7) == (j < 7) ? 1 : 0.2); }
    }
    for (const int half : {2, 4}) {
        const auto novelty = Structure::novelty(sim, half);
        ASSERT_EQ(novelty.size(), 21U);
        EXPECT_EQ(novelty[7], 1);
        for (size_t i = 0; i < novelty.size(); ++i) { EXPECT_LT(novelty[i], i == 7 ? 1.001 : 0.95) << i; }
    }
}

TEST(LevelStudy, FindsBodyAndTail) {
    const auto levels = [](const std::vector<std::pair<double, double>>& parts) {
        std::vector<float> x;
        for (const auto& [seconds, level] : parts) {
            const auto end = x.size() + size_t(seconds * test::musicRate);
            while (x.size() < end) { x.push_back(float(x.size() % 2 == 0 ? level : -level)); }
        }
        return Structure::cook(x, test::musicRate);
    };
    const auto song = levels({{6, 0.1}, {30, 0.5}, {5, 0.05}});
    ASSERT_TRUE(song.bodyEntry && song.tailStart);
    EXPECT_NEAR(*song.bodyEntry, 6, 0.15);
    EXPECT_NEAR(*song.tailStart, 36, 0.15);
    EXPECT_FALSE(levels({{6, 0.4}, {30, 0.5}}).bodyEntry) << "a head at 80 % is no quiet head";
    EXPECT_FALSE(levels({{70, 0.1}, {80, 0.5}}).bodyEntry) << "looked for in the first minute only";
    EXPECT_FALSE(levels({{30, 0.5}, {0.6, 0.05}}).tailStart) << "too short a tail";
    EXPECT_NEAR(levels({{60, 0.5}, {30, 0.05}}).tailStart.value_or(0), 70, 0.15)
        << "never more than 20 s before the end";
}

const LoopCandidate* at(const std::vector<LoopCandidate>& list, int boundary) {
    const auto found = std::ranges::find(list, boundary, &LoopCandidate::boundary);
    return found == list.end() ? nullptr : &*found;
}

TEST(LoopCandidates, RatePhrasesAndTheMusicalEnd) {
    const Bars bars(std::vector<double>(20, 0.5));
    const auto list = Structure::loopCandidates(bars.x, test::musicRate, bars.bounds, bars.profile(), 0);
    ASSERT_EQ(list.size(), 4U);
    // All splices are perfect but the end's, which meets the file's edge.
    for (const auto& [boundary, score] : {std::pair{8, 0.65}, {12, 0.59}, {16, 0.65}, {20, 0.65}}) {
        EXPECT_NEAR(at(list, boundary)->score, score, 1e-9) << boundary;
    }
    EXPECT_THAT(at(list, 8)->reasons, ElementsAre("8-bar phrase", "clean splice"));
    EXPECT_THAT(at(list, 20)->reasons, ElementsAre("musical end", "edge-to-edge file"));
    EXPECT_TRUE(at(list, 20)->isContentEnd);
    EXPECT_EQ(at(list, 20)->phraseBars, std::nullopt);
    EXPECT_EQ(list[0].boundary, 8) << "equal scores in the order of time";
    EXPECT_EQ(list[1].boundary, 16);
}

TEST(ExitCandidates, PutTheEndOrTheFinalHitFirst) {
    const Bars bars(std::vector<double>(20, 0.5));
    const auto list = Structure::exitCandidates(bars.x, test::musicRate, bars.bounds, bars.profile(), 4);
    ASSERT_EQ(list.size(), 6U);  // 20, and 2, 4, 8, 12, 16
    EXPECT_EQ(list[0].boundary, 20);
    EXPECT_NEAR(list[0].score, 0.9, 1e-9);
    EXPECT_THAT(list[0].reasons, ElementsAre("musical end", "tail rings under next cue"));
    // A last bar with a strong first beat, then silence.
    Bars hit(std::vector<double>(17, 0.3));
    for (size_t i = 16 * 22050; i < hit.x.size(); ++i) { hit.x[i] *= i < 16 * 22050 + 5512 ? 3.0F : 0.0F; }
    const auto atHit = Structure::exitCandidates(hit.x, test::musicRate, hit.bounds, hit.profile(), 4);
    EXPECT_EQ(atHit[0].boundary, 16);
    EXPECT_THAT(atHit[0].reasons, ElementsAre("musical end", "tail rings under next cue", "16-bar phrase"));
}

// A song at 120 BPM in 4/4 on an exact grid: bars of two seconds, sections with chords and a level of their own.
struct Section {
    int bars;
    int root;         // MIDI note
    double level;     // of the chords
    double drums;     // of the beats
    double endLevel;  // of the chords at the end, reached by a straight fade in decibels
};
struct Song {
    std::vector<float> x;
    MusicGrid grid;
};

Song makeSong(const std::vector<Section>& sections, bool finalHit, double silentBars = 0) {
    int bars = int(silentBars) + int(finalHit);
    for (const Section& s : sections) { bars += s.bars; }
    Song song;
    song.x.assign(size_t(2 * bars * test::musicRate), 0.0F);
    int bar = int(silentBars);
    for (const Section& s : sections) {
        for (int i = 0; i < s.bars; ++i, ++bar) {
            const double gain = s.level * std::pow(s.endLevel / s.level, double(i) / std::max(s.bars - 1, 1));
            test::addChord(song.x, 2 * bar, 2 * bar + 2, {s.root, s.root + 4, s.root + 7}, gain);
            for (int beat = 0; beat < 4; ++beat) {
                if (s.drums > 0) { test::addTone(song.x, 2 * bar + 0.5 * beat, 3000, s.drums, 0.03); }
            }
        }
    }
    if (finalHit) { test::addTone(song.x, 2 * bar, 130, 0.9, 0.15); }
    song.grid.bpm = 120;
    song.grid.steady = true;
    song.grid.duration = 2 * bars;
    for (int i = 0; i < 4 * bars; ++i) { song.grid.beats.push_back(0.5 * i); }
    for (int i = 0; i < bars; ++i) { song.grid.downbeats.push_back(2.0 * i); }
    return song;
}

StructureResult analyzeSong(const Song& song, const char* name = "Song.wav") {
    return Structure::analyze(song.x, test::musicRate, song.grid, SpectralFrames(song.x), name);
}

const Section intro{8, 57, 0.03, 0, 0.03};
const Section a{8, 48, 0.1, 0.3, 0.1};
const Section b{8, 53, 0.11, 0.3, 0.11};
const Section outro{4, 58, 0.05, 0, 0.05};

TEST(Pins, OfSongsWithSections) {
    const auto hit = analyzeSong(makeSong({intro, a, b, a, b}, true));
    EXPECT_EQ(hit.pins, (Pins{0, 8, 8, 24, 40, 41, 40, false})) << "the loop is one round of A and B";
    EXPECT_EQ(hit.exitCandidates[0].boundary, 40);
    EXPECT_EQ(hit.novelty.size(), 42U);
    const auto silent = analyzeSong(makeSong({intro, a, b, a, outro}, false, 2));
    EXPECT_EQ(silent.pins.startTime, 4);
    EXPECT_EQ(silent.pins.introEnd, 10);
    EXPECT_EQ(silent.pins.endingStart, 34);
    EXPECT_EQ(silent.pins.musicEnd, 38);
    EXPECT_EQ(silent.pins.finalHit, 37);
    EXPECT_THAT(silent.notes, ElementsAre("Skipped 4.0 s of silent head"));
    const auto fade = analyzeSong(makeSong({{16, 48, 0.1, 0, 0.1}, {8, 48, 0.1, 0, 0.01}}, false));
    EXPECT_THAT(fade.notes, Contains("Source ends on a fade-out"));
    EXPECT_FALSE(fade.pins.loopFile);
}

// A steady fade over the last 10 of 40 bars, straight in level; the music plays on under it.
TEST(Pins, OfAPieceThatFadesOut) {
    Song song = makeSong({intro, a, b, a, {8, 53, 0.11, 0.6, 0.11}}, false);
    const auto length = int64_t(song.x.size());
    const auto fade = int64_t(20 * test::musicRate);
    for (int64_t i = length - fade; i < length; ++i) { song.x[size_t(i)] *= float(length - i) / float(fade); }
    const auto got = analyzeSong(song);
    ASSERT_TRUE(got.fadeStart);
    EXPECT_NEAR(*got.fadeStart, 32.5, 0.6) << "under 0.8 of the body's level";
    EXPECT_EQ(got.pins.endingStart, *got.fadeStart);
    EXPECT_EQ(got.pins.finalHit, *got.fadeStart) << "nothing in the fade is a final hit";
    EXPECT_LE(got.pins.loopEnd, *got.fadeStart);
    EXPECT_THAT(got.notes, Contains("Source ends on a fade-out"));
    for (const auto* list : {&got.loopCandidates, &got.exitCandidates}) {
        EXPECT_LE((*list)[0].boundary, *got.fadeStart) << "rates the fade best";
        for (const LoopCandidate& c : *list) { EXPECT_LT(c.boundary > *got.fadeStart + 5 ? c.score : 0, 0.5); }
    }
    // The ring of a last chord falls as slowly, but nothing is played any more.
    Song ring = makeSong({intro, a, b}, false);
    ring.x.resize(ring.x.size() + size_t(20 * test::musicRate));
    ring.grid.duration = 68;
    for (int i = 24; i < 34; ++i) { ring.grid.downbeats.push_back(2.0 * i); }
    for (const double hz : {110.0, 165.0, 220.0}) { test::addTone(ring.x, 48, hz, 0.15, 5); }
    EXPECT_FALSE(analyzeSong(ring).fadeStart);
}

TEST(Pins, OfPiecesTooShortForSections) {
    const Section bars{3, 48, 0.1, 0, 0.1};
    EXPECT_THAT(analyzeSong(makeSong({bars}, true)).notes,
                ElementsAre("No distinct intro: edits start straight into the body", "Ending is a single final hit"));
    const Song sinking = makeSong({{3, 48, 0.1, 0, 0.035}}, false);
    const auto got = analyzeSong(sinking);
    EXPECT_THAT(got.notes, ElementsAre("No distinct intro: edits start straight into the body",
                                       "No distinct ending section: using the last 2 bars"));
    EXPECT_EQ(got.pins.endingStart, 1);
    EXPECT_EQ(got.pins.loopEnd, 1) << "under 4 bars the loop ends with the body";
}

TEST(Pins, OfLoops) {
    const Song even = makeSong({{8, 48, 0.1, 0.3, 0.1}}, false);
    const auto byEdges = analyzeSong(even);
    EXPECT_EQ(byEdges.pins, (Pins{0, 0, 0, 8, 8, 8, 8, true}));
    EXPECT_THAT(byEdges.notes,
                ElementsAre("Seamless loop file: no composed ending, so cutdowns end with a 1-bar fade"));
    // With a tail that differs from the head, only the name shows a loop.
    const Song uneven = makeSong({{7, 48, 0.1, 0.3, 0.1}, {1, 48, 0.04, 0, 0.04}}, false);
    EXPECT_TRUE(analyzeSong(uneven, "Loop_120.wav").pins.loopFile);
    for (const char* name : {"Song.wav", "Intro Loop.wav", "Loop End.wav", "Blend loop.wav"}) {
        EXPECT_FALSE(analyzeSong(uneven, name).pins.loopFile) << name;
    }
}

TEST(Pins, AreValidForAnyCountOfBars) {
    for (int bars = 1; bars <= 12; ++bars) {
        for (const bool hit : {false, true}) {
            for (const char* name : {"x.wav", "loop.wav"}) {
                const auto got = analyzeSong(makeSong({{bars, 48, 0.1, 0.3, 0.1}}, hit), name);
                const int last = bars + int(hit);
                const Pins& p = got.pins;
                EXPECT_LE(p.introEnd, p.loopEnd) << bars;
                EXPECT_LE(p.endingStart, last) << bars;
                EXPECT_LE(p.musicEnd, last) << bars;
                EXPECT_LE(p.finalHit, last) << bars;
                for (const int pin : {p.introEnd, p.loopStart, p.loopEnd, p.endingStart, p.musicEnd, p.finalHit}) {
                    EXPECT_GE(pin, 0) << bars;
                }
            }
        }
    }
}

}  // namespace
}  // namespace brindlehum
