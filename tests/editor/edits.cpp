// Steps of edits and their undo against plain arrays, joins of cuts, pastes of other rates, and pins among bars.
#include <gtest/gtest.h>

#include <algorithm>

#include "dsp/edit_ops.h"
#include "editor/document/edit_commands.h"
#include "editor/document/edit_history.h"
#include "editor/document/macros.h"
#include "editor/music/pin_moves.h"
#include "support/signals.h"

namespace brindlehum {
namespace {

using test::noise;
using Samples = std::vector<float>;
using Channels = EditOps::Channels;
constexpr double rate = 48000;

// What a naive editor keeps: whole copies.
struct Twin {
    struct State {
        Channels samples;
        bool operator==(const State&) const = default;
    };
    std::vector<State> undo, redo;
    State now;
    void push(Channels samples) {
        undo.push_back(now);
        if (undo.size() > 16) { undo.erase(undo.begin()); }
        redo.clear();
        now.samples = std::move(samples);
    }
    static bool step(std::vector<State>& from, std::vector<State>& to, State& now) {
        if (from.empty()) { return false; }
        to.push_back(now);
        now = from.back();
        from.pop_back();
        return true;
    }
};

Channels replaced(Channels samples, const FrameRange& range, const Channels& with) {
    for (size_t c = 0; c < samples.size(); ++c) {
        auto& x = samples[c];
        x.erase(x.begin() + range.lower, x.begin() + range.upper);
        x.insert(x.begin() + range.lower, with[c].begin(), with[c].end());
    }
    return samples;
}

TEST(Edits, RandomScriptsEqualANaiveEditor) {
    for (uint32_t seed = 1; seed <= 3; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        std::mt19937 random(seed);
        const auto below = [&](int64_t n) { return int64_t(random() % uint64_t(n)); };
        Twin twin;
        twin.now.samples = {noise(3000, seed), noise(3000, seed + 50)};
        EditHistory history(Sound(twin.now.samples));
        EditState state{history.now(), std::nullopt, 0};
        std::optional<Clip> clip = EditCommands::copy({history.now(), FrameRange{0, 600}, 0}, rate);
        Channels copied = EditOps::slice(twin.now.samples, 0, 600);
        int64_t compared = 0;
        for (int step = 0; step < 3400; ++step) {
            state = fitted({history.now(), state.selection, state.cursor});
            const int64_t total = state.sound.frames();
            // Without a selection an edit takes all, which would leave little to compare.
            if ((below(3) == 0 || (!state.selection && below(30) > 0)) && total > 0) {
                const int64_t start = below(total);
                state.selection = FrameRange{start, start + 1 + below(std::min<int64_t>(total - start, 700))};
                state.cursor = below(total + 1);
            }
            const FrameRange range = state.range();
            const Channels selected = EditOps::slice(twin.now.samples, range.lower, range.upper);
            std::optional<EditStep> done;
            Channels expected;
            const bool isShort = total < 1500 && below(4) > 0;  // it grows again by pasting
            switch (isShort ? 2 : below(8)) {
                case 0:
                    if (range.length() < 300) { continue; }
                    if (const auto copy = EditCommands::copy(state, rate)) { clip = copy, copied = selected; }
                    continue;
                case 1:
                    done = EditCommands::cut(state, rate, CutStyle::exact);
                    expected = replaced(twin.now.samples, range, {{}, {}});
                    break;
                case 2: {
                    if (!clip || total > 6000) { continue; }
                    done = EditCommands::paste(state, rate, *clip);
                    const FrameRange at = state.selection.value_or(FrameRange{state.cursor, state.cursor});
                    expected = replaced(twin.now.samples, at, copied);
                    break;
                }
                case 3:
                    if (total < 2000) { continue; }
                    done = EditCommands::trim(state, rate, CutStyle::exact);
                    expected = selected;
                    break;
                case 4:
                    done = EditCommands::silence(state);
                    expected = replaced(twin.now.samples, range,
                                        {Samples(size_t(range.length())), Samples(size_t(range.length()))});
                    break;
                case 5: {
                    done = EditCommands::apply(state, rate, "reverse", {});
                    Channels turned = selected;
                    for (auto& x : turned) { std::ranges::reverse(x); }
                    expected = replaced(twin.now.samples, range, turned);
                    break;
                }
                case 6:
                    ASSERT_EQ(history.undo(), Twin::step(twin.undo, twin.redo, twin.now));
                    continue;
                default:
                    ASSERT_EQ(history.redo(), Twin::step(twin.redo, twin.undo, twin.now));
                    continue;
            }
            if (!done) { continue; }
            history.push(done->name, done->state.sound);
            twin.push(expected);
            state = done->state;
            ASSERT_EQ(history.now().gather(), twin.now.samples) << done->name << " in step " << step;
            compared += history.now().frames();
            ASSERT_LE(state.cursor, state.sound.frames());
            ASSERT_TRUE(!state.selection || state.selection->upper <= state.sound.frames());
        }
        EXPECT_GT(compared, 1000000) << "frames; the document was hardly ever empty";
    }
}

TEST(Edits, OnlyUndoingBackToTheSavedStateMakesADocumentClean) {
    EditHistory history(Sound(Channels{{1}}));
    EXPECT_FALSE(history.isDirty());
    history.push("Cut", Sound(Channels{{}}));
    EXPECT_EQ(std::pair(history.undoName(), history.redoName()), std::pair(std::string("Cut"), std::string()));
    EXPECT_TRUE(history.isDirty());
    history.undo();
    EXPECT_FALSE(history.isDirty());
    EXPECT_EQ(history.redoName(), "Cut");
    history.redo();
    history.markSaved();
    history.undo();
    EXPECT_TRUE(history.isDirty());
    history.push("Reverse", Sound(Channels{{2}}));
    history.undo();
    EXPECT_TRUE(history.isDirty()) << "the saved state can't be reached any more";
    for (int i = 0; i < 17; ++i) { history.push("Paste", Sound(Channels{{3}})); }
    EXPECT_EQ(history.names().size(), 17U);
}

TEST(Edits, SoftCutsLeaveNoStepAtTheirJoin) {
    const Samples tone = test::sine(48000, 200, rate);
    const EditState state{Sound(Channels{tone}), FrameRange{10000, 20060}, 0};
    const auto jump = [&](CutStyle style) {
        return test::maxJump(EditCommands::cut(state, rate, style)->state.sound.gather()[0]);
    };
    const double own = test::maxJump(tone);
    EXPECT_GT(jump(CutStyle::exact), 10 * own);
    EXPECT_LT(jump(CutStyle::zeroCrossing), 1.1 * own);
    EXPECT_LT(jump(CutStyle::crossfade), 1.5 * own);
    EXPECT_EQ(EditCommands::cut(state, rate, CutStyle::crossfade)->state.sound.frames(), 48000 - 10060);
    const auto trimmed = EditCommands::trim(state, rate, CutStyle::zeroCrossing)->state.sound.gather()[0];
    EXPECT_LT(std::abs(trimmed.front()), own);
    EXPECT_LT(std::abs(trimmed.back()), own);
}

TEST(Edits, AClipSoundsTheSameInADocumentOfAnotherRate) {
    const EditState empty{Sound(Channels{{}, {}, {}}), std::nullopt, 0};
    const Clip mono{Sound(Channels{test::sine(44100, 1000, 44100)}), 44100};
    const auto pasted = EditCommands::paste(empty, rate, mono)->state.sound.gather();
    const Samples expected = test::sine(48000, 1000, rate);
    for (const Samples& x : pasted) {
        ASSERT_EQ(x.size(), 48000U);
        EXPECT_LT(test::errorDb({x.begin() + 1000, x.end() - 1000}, {expected.begin() + 1000, expected.end() - 1000}),
                  -80);
    }
    const Clip pair{Sound(Channels{{1, 2}, {3, 4}}), rate};
    EXPECT_EQ(EditCommands::paste(empty, rate, pair)->state.sound.gather(), (Channels{{1, 2}, {3, 4}, {0, 0}}));
}

// Points and regions by hand, in a document of 100 frames.
TEST(Edits, CuePointsMoveWithTheirSound) {
    using Points = std::vector<std::pair<int64_t, int64_t>>;  // frame and length
    EditState state{Sound(Channels{noise(100, 1)}), std::nullopt, 50, {}};
    const Points opened = {{0, 0}, {20, 30}, {40, 0}, {60, 0}, {100, 0}};
    for (const auto& [frame, length] : opened) {
        state.marks.cues.push_back({uint32_t(frame), frame, length, std::to_string(frame)});
    }
    const auto with = [&](int64_t lower, int64_t upper) {
        EditState selected = state;
        selected.selection = FrameRange{lower, upper};
        return selected;
    };
    const Clip clip{Sound(Channels{Samples(10)}), rate};
    const auto cut = [&](int64_t lower, int64_t upper) {
        return EditCommands::cut(with(lower, upper), rate, CutStyle::exact);
    };
    const struct {
        const char* what;
        std::optional<EditStep> step;
        Points points;
        int64_t start;  // of the first frame in the source
    } cases[] = {
        {"a cut at the head", cut(0, 20), {{0, 30}, {20, 0}, {40, 0}, {80, 0}}, 20},
        {"a cut with a point in it", cut(35, 45), {{0, 0}, {20, 20}, {50, 0}, {90, 0}}, 0},
        {"a cut over the end of a region", cut(45, 55), {{0, 0}, {20, 25}, {40, 0}, {50, 0}, {90, 0}}, 0},
        {"all", cut(0, 100), {{0, 0}}, 100},
        {"a paste", EditCommands::paste(state, rate, clip), {{0, 0}, {20, 30}, {40, 0}, {70, 0}, {110, 0}}, 0},
        {"a paste over a point",
         EditCommands::paste(with(39, 41), rate, clip),
         {{0, 0}, {20, 38}, {68, 0}, {108, 0}},
         0},
        {"silence in front",
         EditCommands::insertSilence({state.sound, {}, 0, state.marks}, 5),
         {{5, 0}, {25, 30}, {45, 0}, {65, 0}, {105, 0}},
         -5},
        {"a trim", EditCommands::trim(with(10, 60), rate, CutStyle::exact), {{10, 30}, {30, 0}}, 10},
        {"a trim to the end",
         EditCommands::trim(with(30, 100), rate, CutStyle::exact),
         {{10, 0}, {30, 0}, {70, 0}},
         30},
        {"backwards",
         EditCommands::apply(with(10, 70), rate, "reverse", {}),
         {{0, 0}, {30, 30}, {39, 0}, {19, 0}, {100, 0}},
         0},
        {"backwards in one lane", EditCommands::apply(with(10, 70), rate, "reverse", std::vector{0}), opened, 0},
        {"a hall's tail",
         run(Macro::verbTail, with(30, 50), 10, {}),
         {{0, 0}, {20, 30}, {40, 0}, {100, 0}, {140, 0}},
         0},
        {"a texture", run(Macro::texture, with(30, 50), 10, {}), {{0, 0}, {20, 170}, {200, 0}, {240, 0}}, 0},
    };
    for (const auto& c : cases) {
        Points points;
        for (const WavCue& cue : c.step->state.marks.cues) {
            points.emplace_back(cue.frame, cue.length);
            EXPECT_EQ(cue.entries, std::to_string(cue.name));
        }
        EXPECT_EQ(points, c.points) << c.what;
        EXPECT_EQ(c.step->state.marks.start, c.start) << c.what;
    }
}

TEST(PinMoves, KeepTheirOrderAndTheirGlue) {
    const std::vector<double> times = {0, 2, 4, 6, 8, 10};
    const BarTimes bars{times, 1000, 9500};
    const Pins pins{
        .introEnd = 1, .loopStart = 1, .loopEnd = 3, .endingStart = 4, .musicEnd = 4, .finalHit = 4, .loopFile = true};
    const auto after = [&](PinKind kind, int64_t frame) { return moved(pins, kind, frame, bars); };
    EXPECT_EQ(after(PinKind::introEnd, 9000).introEnd, 3) << "one bar short of the ending";
    EXPECT_EQ(after(PinKind::introEnd, 9000).loopStart, 3) << "glued to the intro";
    EXPECT_EQ(after(PinKind::introEnd, 9000).loopEnd, 4);
    EXPECT_EQ(after(PinKind::introEnd, 5000).introEnd, 2) << "the earlier of two equally near bar lines";
    EXPECT_EQ(after(PinKind::loopEnd, 0).loopEnd, 2);
    EXPECT_EQ(after(PinKind::endingStart, 100).endingStart, 2);
    EXPECT_EQ(after(PinKind::endingStart, 9900).finalHit, 5);
    EXPECT_FALSE(after(PinKind::loopEnd, 6000).loopFile);
    EXPECT_EQ(moved(pins, PinKind::loopEnd, 6000, {{}, 1000, 9500}), pins);
    EXPECT_EQ(frameOfBoundary(bars, 5), 9500) << "cut to the document";
    EXPECT_EQ(frameOfBoundary(bars, 6) + frameOfBoundary(bars, -1), 0);
    EXPECT_EQ(barAt(2000, bars), (FrameRange{2000, 4000}));
    EXPECT_EQ(barAt(9600, bars), std::nullopt);
    EXPECT_EQ(snapped(2016, times, 1000, 0.5), 2000) << "8 pixels";
    EXPECT_EQ(snapped(2018, times, 1000, 0.5), 2018) << "9 pixels";
    std::mt19937 random(7);
    Pins walk = pins;
    for (int i = 0; i < 2000; ++i) {
        walk = moved(walk, allPins[random() % 3], int64_t(random() % 12000), bars);
        ASSERT_LT(walk.introEnd, walk.endingStart);
        ASSERT_LT(walk.loopStart, walk.loopEnd);
    }
}

}  // namespace
}  // namespace brindlehum
