// TempEditPlanner: names, sections, and lengths, those that can't be reached too.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <functional>

#include "hand_made.h"

namespace brindlehum {
namespace {

using Kind = EditPlan::Kind;
using Spans = std::vector<EditPlan::Span>;
using TempEditPlanner::JumpTable;
using test::HandMade;
using testing::ElementsAre;

constexpr int64_t bar = 96000;  // frames

std::vector<std::string> namesOf(const std::vector<EditPlan>& plans) {
    std::vector<std::string> out;
    for (const auto& plan : plans) { out.push_back(plan.name); }
    return out;
}

// 24 bars: an intro of 4, a body in phrases of 4 that are like each other, an ending of 4 with a final hit.
HandMade song() {
    HandMade song(24);
    song.structure.pins = {0, 4, 4, 20, 20, 24, 23, false};
    song.alike([](int i, int j) { return (j - i) % 4 == 0 ? 0.9 : 0.2; });
    return song;
}

TEST(TempEditPlanner, CutsTheSections) {
    const auto plans = song().plans();
    ASSERT_THAT(namesOf(plans), ElementsAre("Intro", "Loop", "Ending", "Sting"));
    const char* maps[] = {"Intro b1–b4 · cut on the downbeat of b5", "Loop b5–b20 (16 bars), wraps seamlessly",
                          "Ending b21–b24 + ring-out", "Sting: final hit at b24 + ring-out"};
    const EditPlan::Span spans[] = {{0, 4 * bar}, {4 * bar, 20 * bar}, {20 * bar, 24 * bar}, {23 * bar, 24 * bar}};
    for (size_t i = 0; i < 4; ++i) {
        EXPECT_EQ(plans[i].map, maps[i]);
        EXPECT_EQ(plans[i].spans, Spans{spans[i]});
        EXPECT_EQ(plans[i].kind, i == 1 ? Kind::loop : Kind::piece);
    }
}

TEST(TempEditPlanner, LeavesOutMissingSections) {
    struct Case {
        Pins pins;
        double firstDownbeat;
        std::vector<std::string> names;
        const char* firstMap;
    };
    const Case cases[] = {
        {{0, 0, 0, 20, 20, 24, 20}, 0, {"Loop", "Ending"}, "Loop b1–b20 (20 bars), wraps seamlessly"},
        {{0, 4, 8, 8, 20, 24, 21},
         0.051,
         {"Intro", "Ending", "Sting"},
         "Intro pickup + b1–b4 · cut on the downbeat of b5"},
        {{3.74, 2, 8, 7, 20, 24, 19}, 0, {"Intro", "Ending"}, "Intro b1–b2 · cut on the downbeat of b3"},
        {{3.75, 2, 8, 7, 20, 24, 19}, 0, {"Ending"}, "Ending b21–b24 + ring-out"},
        {{0, 21, 8, 10, 20, 24, 23}, 0, {}, ""},
    };
    for (const auto& [pins, firstDownbeat, names, firstMap] : cases) {
        HandMade piece(24);
        piece.structure.pins = pins;
        piece.grid.downbeats[0] = firstDownbeat;
        const auto plans = piece.plans();
        EXPECT_EQ(namesOf(plans), names) << firstMap;
        EXPECT_EQ(plans.empty() ? "" : plans[0].map, firstMap);
        for (const auto& plan : plans) { EXPECT_EQ(plan.carryLoopTail, plan.kind == Kind::loop && pins.loopEnd >= 24); }
    }
}

TEST(TempEditPlanner, CutsDownBetweenSimilarBars) {
    HandMade piece = song();
    // 32.25 s: a little more than 8 bars of the body fit, a whole number of phrases.
    piece.options.targets = {32.25, 48, 15.5, 47.9, 49.1};
    const auto plans = piece.plans();
    ASSERT_THAT(namesOf(plans), ElementsAre("Intro", "Loop", "Ending", "Sting", "32s", "48s", "16s"))
        << "47.9 is called as 48 is, and 49.1 is more than half a bar longer than the piece";
    const EditPlan& shorter = plans[4];
    EXPECT_EQ(shorter.kind, Kind::cutdown);
    EXPECT_EQ(shorter.spans, (Spans{{0, 8 * bar}, {16 * bar, 24 * bar}})) << "of equal jumps the last";
    EXPECT_EQ(shorter.map, "b1–8 ↷ b17–24 + ring");
    EXPECT_NEAR(shorter.quality, 0.9, 1e-12);
    EXPECT_FALSE(shorter.cutAtSec) << "there is nothing past 32 s";
    EXPECT_EQ(shorter.padFrames, 12000) << "but silence up to 32.25";
    EXPECT_EQ(plans[5].spans, (Spans{{0, 24 * bar}}));
    EXPECT_EQ(plans[6].kind, Kind::backtimed) << "intro and ending alone take 16 s";
}

TEST(TempEditPlanner, CutsAtTheExactLengthOnlyWhatIsLonger) {
    HandMade piece = song();
    piece.grid.downbeats.push_back(48);
    piece.grid.duration = 50.5;  // rings out from 48 s on
    piece.totalFrames = int64_t(50.5 * 48000);
    piece.options.targets = {33.5};
    const EditPlan cut = piece.plan("34s");
    EXPECT_EQ(cut.spans, (Spans{{0, 8 * bar}, {16 * bar, piece.totalFrames}})) << "one second of the ring-out counts";
    EXPECT_EQ(cut.cutAtSec, 33.5);
    piece.options.exactLength = false;
    EXPECT_FALSE(piece.plan("34s").cutAtSec);
}

// The end of a fade alone would hardly be heard.
TEST(TempEditPlanner, TakesTheHeadOfAPieceThatFadesOut) {
    HandMade piece = song();
    piece.alike([](int, int) { return 0.79; });
    piece.structure.fadeStart = 18;
    piece.structure.pins.endingStart = piece.structure.pins.finalHit = 18;
    piece.options.targets = {15, 29.5, 45};
    EXPECT_EQ(piece.plan("Ending").map, "Ending b19–b24 · fades out");
    const EditPlan half = piece.plan("15s");
    EXPECT_EQ(half.kind, Kind::cutdown);
    EXPECT_EQ(half.spans, (Spans{{4 * bar, 12 * bar}})) << "the intro would take more than half";
    EXPECT_EQ(half.map, "b5–12 · faded out, as the source ends on a fade-out");
    EXPECT_EQ(half.cutAtSec, 15);
    EXPECT_EQ(half.fadeOutFrames, 0) << "the cut fades by itself";
    piece.options.exactLength = false;
    EXPECT_EQ(piece.plan("15s").fadeOutFrames, bar);
    EXPECT_EQ(piece.plan("45s").kind, Kind::backtimed) << "the piece fades before that";
}

TEST(TempEditPlanner, BacktimesLengthsWithoutAGoodPath) {
    HandMade piece = song();
    piece.alike([](int, int) { return 0.79; });
    piece.structure.pins.loopEnd = 0;
    piece.structure.pins.startTime = 1;
    piece.options.targets = {32.5, 14.5, 0.5, -3, NAN};
    const auto plans = piece.plans();
    ASSERT_THAT(namesOf(plans), ElementsAre("Intro", "Ending", "Sting", "33s", "15s"));
    EXPECT_EQ(plans[3].spans, (Spans{{8 * bar, 24 * bar}}));
    EXPECT_EQ(plans[3].map, "Backtimed: b9–b24 + ring-out (starts on a downbeat)");
    EXPECT_EQ(plans[4].spans, (Spans{{17 * bar, 24 * bar}}));
    for (size_t i : {3, 4}) {
        EXPECT_EQ(plans[i].kind, Kind::backtimed);
        EXPECT_EQ(plans[i].fadeInFrames, 480);
    }
    // A ring-out of 3 seconds counts as one, so the edit starts a bar later, and is then longer than its target.
    piece.totalFrames += int64_t(3) * 48000;
    EXPECT_EQ(piece.plan("15s").spans, (Spans{{18 * bar, piece.totalFrames}}));
    EXPECT_EQ(piece.plan("15s").cutAtSec, 14.5);
}

// Of 33 seconds whole bars leave one open. With beats that all sound alike an entry two beats early fills it, at the
// jump that is there anyway; where beats differ, a pause where the music is silent, and else one at the jump.
TEST(TempEditPlanner, FillsWhatBarsLeaveOpen) {
    HandMade piece = song();
    piece.options.targets = {33};
    const auto same = [](int) { return 0; };
    const auto different = [](int beat) { return beat % 12; };
    const auto sounds = [&piece](const std::function<int(int)>& pitch) {
        piece.grid.beats.clear();
        piece.structure.beatFeatures.clear();
        for (int beat = 0; beat < 24 * 4; ++beat) {
            piece.grid.beats.push_back(0.5 * beat);
            auto& feature = piece.structure.beatFeatures.emplace_back();
            feature.chroma[size_t(pitch(beat))] = 1;
            feature.bands[0] = 1;
        }
    };
    const auto expectPlan = [&piece](const Spans& spans, const char* map, double quality) {
        const EditPlan plan = piece.plan("33s");
        EXPECT_EQ(plan.spans, spans) << plan.map;
        EXPECT_EQ(plan.map, map);
        EXPECT_NEAR(plan.quality, quality, 1e-6);
    };
    sounds(same);
    expectPlan({{0, 8 * bar}, {16 * bar - 48000, 24 * bar, 0, 3}}, "b1–8 ↷ b16.3–24 + ring", 0.9);
    sounds(different);
    expectPlan({{0, 8 * bar}, {16 * bar, 24 * bar, 48000}}, "b1–8 · 1.00 s pause · b17–24 + ring", 0.55);
    piece.structure.profile.activeLevel = 0.5F;
    piece.structure.profile.lineLevels.assign(25, 0.5F);
    piece.structure.profile.lineLevels[20] = 0;
    expectPlan({{0, 8 * bar}, {16 * bar, 20 * bar}, {20 * bar, 24 * bar, 48000}},
               "b1–8 ↷ b17–20 · 1.00 s pause · b21–24 + ring", 0.85);
    piece.options.exactLength = false;
    expectPlan({{0, 8 * bar}, {16 * bar, 24 * bar}}, "b1–8 ↷ b17–24 + ring", 0.9);

    piece.options.exactLength = true;
    piece.alike([](int, int) { return 0.79; });
    piece.structure.pins.loopEnd = 0;
    expectPlan({{8 * bar - 48000, 24 * bar, 0, 3}}, "Backtimed: b8.3–b24 + ring-out (starts on beat 3)", 1);
    piece.grid.beats.clear();
    expectPlan({{8 * bar, 20 * bar}, {20 * bar, 24 * bar, 48000}},
               "Backtimed: b9–b24 + ring-out (starts on a downbeat) · 1.00 s pause before b21", 0.85);
}

TEST(TempEditPlanner, ExtendsOnlyPiecesThatAreClearlyShorter) {
    struct Case {
        int bars;
        double extended;
        bool asked;
    };
    for (const auto& [bars, extended, asked] :
         {Case{24, 50.1, true}, {24, 50.0, false}, {15, 60.0, true}, {14, 60.0, false}, {24, INFINITY, false}}) {
        HandMade piece(bars);
        piece.structure.pins = {0, 0, 0, bars, bars, bars, bars, false};
        piece.options.extended = extended;
        EXPECT_EQ(namesOf(piece.plans()).size(), asked ? 2U : 1U) << bars << " bars to " << extended;
    }
}

TEST(TempEditPlanner, ExtendsByTheLoop) {
    HandMade piece(24);  // no two bars alike, so that only the loop's own seam allows a jump
    piece.structure.pins = {0, 4, 4, 20, 20, 24, 24, false};
    piece.options.extended = 80;
    const EditPlan plan = piece.plan("1m20s extended");
    EXPECT_EQ(plan.map, "b1–20 ↷ b5–24 + ring");
    EXPECT_NEAR(plan.quality, 0.9, 1e-12);
    EXPECT_FALSE(plan.cutAtSec) << "exactly as long as asked";
}

TEST(TempEditPlanner, FadesALoopFileOut) {
    HandMade piece(16);
    piece.structure.pins = {0, 0, 0, 16, 16, 16, 16, true};
    piece.options.targets = {20, 1, 20.9};  // less than a bar: none
    piece.options.extended = 60;
    const auto plans = piece.plans();
    ASSERT_THAT(namesOf(plans), ElementsAre("Loop", "20s", "21s", "1m00s extended"));
    EXPECT_EQ(plans[0].map, "The whole file (16 bars), wrap guarded");
    EXPECT_EQ(plans[0].spans, (Spans{{0, 16 * bar}}));
    EXPECT_FALSE(plans[0].carryLoopTail);
    EXPECT_EQ(plans[1].spans, (Spans{{0, 10 * bar}}));
    EXPECT_EQ(plans[1].map, "b1–10 · 1-bar fade out");
    EXPECT_EQ(plans[2].spans, (Spans{{0, int64_t(20.9 * 48000)}})) << "a fade may end anywhere";
    EXPECT_EQ(plans[3].map, "b1–16 + ring ↷ b1–14 · 1-bar fade out");
    for (size_t i : {1, 2, 3}) {
        EXPECT_EQ(plans[i].fadeOutFrames, bar);
        EXPECT_FALSE(plans[i].cutAtSec);
    }
}

TEST(JumpTable, WeighsBothSidesOfAJump) {
    HandMade piece(6);
    piece.alike([](int i, int j) { return 0.5 + 0.04 * i + 0.06 * j; });
    const JumpTable jumps(piece.structure.similarity, Pins{0, 9, 1, 3, 0});
    const auto expectCost = [&jumps](int from, int to, std::optional<double> cost) {
        const auto got = jumps.cost(from, to);
        ASSERT_EQ(got.has_value(), cost.has_value()) << from << " to " << to;
        EXPECT_NEAR(got.value_or(0), cost.value_or(0), 1e-12) << from << " to " << to;
    };
    expectCost(5, 4, 1 - (0.96 + 0.86) / 2);
    expectCost(5, 0, 0.2);           // nothing before the first bar
    expectCost(6, 5, 1 - 0.96);      // nothing after the last one
    expectCost(4, 2, std::nullopt);  // 0.82 and 0.72 are too unlike
    expectCost(3, 1, 0.1);           // the loop's seam, at 0.74
    expectCost(1, 3, std::nullopt);  // but not the other way round
    expectCost(7, 6, std::nullopt);  // no bars there
    EXPECT_NEAR(*JumpTable(piece.structure.similarity, Pins{0, 0, 2, 6, 0}).cost(6, 2), 0.1, 1e-12);
    EXPECT_NEAR(*JumpTable(piece.structure.similarity, Pins{0, 0, 4, 5, 0}).cost(5, 4), 0.04, 1e-12);
}

}  // namespace
}  // namespace brindlehum
