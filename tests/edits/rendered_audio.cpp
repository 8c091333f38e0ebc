// What the ear would find: lengths, splices and wraps, measured in the rendered audio of an analysed song.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "analysis/music_analysis.h"
#include "edits/temp_edit_planner.h"
#include "edits/temp_edit_renderer.h"
#include "song.h"

namespace brindlehum {
namespace {

using Samples = std::vector<float>;
using Span = EditPlan::Span;
using test::Song;

constexpr int64_t crossfade = 1323;  // 30 ms
constexpr int64_t window = 88;       // 2 ms

struct Studied {
    explicit Studied(double pickup) : song(pickup) {
        options.targets = {12, 20, 30, 36, 41.5, 45, 52, 60, 68, 75, 90};
        const auto outcome = analyzeMusic({song.channels, Song::rate, std::nullopt, "song.wav", {}, {}});
        analysis = *outcome.analysis;
        plans = TempEditPlanner::plans(analysis.grid, analysis.structure, Song::rate, frames(), options);
    }
    int64_t frames() const { return int64_t(song.channels[0].size()); }
    const Samples& source() const { return song.channels[0]; }
    Samples render(const EditPlan& plan) const {
        return TempEditRenderer::render(plan, song.channels, Song::rate, options)[0];
    }
    Song song;
    TempEditOptions options;
    MusicAnalysis analysis;
    std::vector<EditPlan> plans;
};

const std::vector<Studied>& studied() {
    static const std::vector<Studied> all = [] {
        std::vector<Studied> out;
        for (const double pickup : {0.0, 0.5}) out.emplace_back(pickup);
        return out;
    }();
    return all;
}

// Calls `check(out, position in it, span before, span after)` for each splice whose surroundings no fade touches.
template <class Check>
int forEachSplice(const Studied& piece, Check check) {
    int count = 0;
    for (const EditPlan& plan : piece.plans) {
        const Samples out = piece.render(plan);
        const int64_t untouched = int64_t(out.size()) - (plan.cutAtSec ? int64_t(Song::rate) : 0);
        int64_t at = 0;
        for (size_t i = 1; i < plan.spans.size(); ++i) {
            at += plan.spans[i - 1].end - plan.spans[i - 1].start;
            if (at + 8192 > untouched) continue;
            SCOPED_TRACE(plan.name + " at " + std::to_string(double(at) / Song::rate) + " s: " + plan.map);
            check(out, at, plan.spans[i - 1], plan.spans[i]);
            ++count;
        }
    }
    return count;
}

// The shift of `source` around `from` at which it is most like out[at ..< at + 4096], searched over 30 ms either way.
int64_t bestShift(const Samples& out, int64_t at, const Samples& source, int64_t from) {
    double best = -1;
    int64_t found = 0;
    for (int64_t shift = -crossfade; shift <= crossfade; ++shift) {
        double product = 0;
        double energy = 1e-12;
        for (int64_t i = 0; i < 4096; ++i) {
            const double x = source[size_t(from + shift + i)];
            product += x * double(out[size_t(at + i)]);
            energy += x * x;
        }
        const double likeness = product / std::sqrt(energy);
        if (likeness > best) {
            best = likeness;
            found = shift;
        }
    }
    return found;
}

// Energy of the second difference, which a click is full of.
double sharpness(const Samples& x, int64_t from, int64_t frames) {
    double sum = 0;
    for (int64_t i = std::max<int64_t>(from, 2); i < from + frames; ++i) {
        const auto n = size_t(i);
        const double d = double(x[n]) - 2 * double(x[n - 1]) + double(x[n - 2]);
        sum += d * d;
    }
    return sum;
}

// Over all windows of 2 ms around a splice: the sharpness against the most that its two sides can make of it, in dB.
double clickDb(const Samples& out, int64_t at, const Samples& source, const Span& before, const Span& after) {
    double worst = -400;
    for (int64_t from = -crossfade - window; from <= window; from += window / 4) {
        const double own = sharpness(source, before.end + from, window) + sharpness(source, after.start + from, window);
        worst = std::max(worst, 10 * std::log10(sharpness(out, at + from, window) / (2 * own)));
    }
    return worst;
}

TEST(RenderedEdits, AreAsLongAsAsked) {
    for (const Studied& piece : studied()) {
        size_t lengths = 0;
        for (const EditPlan& plan : piece.plans) {
            if (!plan.targetSec) continue;
            ++lengths;
            const auto asked = int64_t(Song::rate * *plan.targetSec);
            const auto got = int64_t(piece.render(plan).size());
            // Where the spans don't reach, up to three bars and what is left of a fourth may be missing.
            if (plan.cutAtSec) {
                EXPECT_EQ(got, asked) << plan.name;
            } else {
                EXPECT_LE(got, asked) << plan.name;
                EXPECT_GT(got, asked - 4 * Song::barFrames) << plan.name << ": " << plan.map;
            }
        }
        EXPECT_EQ(lengths, 12U) << "a length is missing";
    }
}

TEST(RenderedEdits, AreSplicedOnBarLines) {
    for (const Studied& piece : studied()) {
        const int count = forEachSplice(piece, [&](const Samples& out, int64_t at, const Span& before,
                                                   const Span& after) {
            for (const int64_t frame : {before.end, after.start}) {
                const int64_t line =
                    piece.song.line(int(std::lround(double(frame - piece.song.line(0)) / Song::barFrames)));
                EXPECT_NEAR(double(frame), double(line), 0.01 * Song::rate) << "off the bar line";
            }
            EXPECT_EQ(bestShift(out, at, piece.source(), after.start), 0) << "the later bar is off its place";
            EXPECT_EQ(bestShift(out, at - crossfade - 4096, piece.source(), before.end - crossfade - 4096), 0)
                << "the earlier bar is off its place";
            // The crossfade has all of its 30 ms before the line and none after it.
            EXPECT_TRUE(std::equal(&out[size_t(at)], &out[size_t(at + 8192)], &piece.source()[size_t(after.start)]));
            EXPECT_NE(out[size_t(at - crossfade)], piece.source()[size_t(before.end - crossfade)]);
            EXPECT_EQ(out[size_t(at - crossfade - 1)], piece.source()[size_t(before.end - crossfade - 1)]);
        });
        EXPECT_GE(count, 6) << "the song gives too few splices to say anything";
    }
}

TEST(RenderedEdits, DontClick) {
    for (const Studied& piece : studied()) {
        forEachSplice(piece, [&](const Samples& out, int64_t at, const Span& before, const Span& after) {
            EXPECT_LT(clickDb(out, at, piece.source(), before, after), 0.5);
        });
        // The measure hears splices in the middle of notes that have no crossfade, and passes those that have one.
        double butt = -400;
        for (int64_t shift = 0; shift < 1000; shift += 100) {
            EditPlan rough;
            rough.spans = {{0, piece.song.line(10) + 24000},
                           {piece.song.line(17) + 24777 + shift, piece.song.line(20)}};
            const auto measure = [&](double crossfadeMs) {
                TempEditOptions options;
                options.crossfadeMs = crossfadeMs;
                const Samples out = TempEditRenderer::render(rough, piece.song.channels, Song::rate, options)[0];
                return clickDb(out, rough.spans[0].end, piece.source(), rough.spans[0], rough.spans[1]);
            };
            EXPECT_LT(measure(30), 0.5);
            butt = std::max(butt, measure(0));
        }
        EXPECT_GT(butt, 7);
    }
}

// Within 10 ms of the wraps of three rounds, against the piece itself at the two ends of the loop, in dB.
double seamDb(const Studied& piece, const EditPlan& plan) {
    const Samples round = piece.render(plan);
    Samples rounds;
    for (int i = 0; i < 3; ++i) rounds.insert(rounds.end(), round.begin(), round.end());
    const auto& [start, end] = plan.spans[0];
    const auto around = [](const Samples& x, int64_t at) { return sharpness(x, at - 5 * window, 10 * window); };
    const double own = std::max(around(piece.source(), start), around(piece.source(), end));
    const double seam = std::max(around(rounds, end - start), around(rounds, 2 * (end - start)));
    return 10 * std::log10(seam / own);
}

TEST(RenderedEdits, LoopWithoutASeam) {
    for (const Studied& piece : studied()) {
        const auto loop = std::find_if(piece.plans.begin(), piece.plans.end(),
                                       [](const EditPlan& plan) { return plan.kind == EditPlan::Kind::loop; });
        ASSERT_NE(loop, piece.plans.end());
        EXPECT_LT(seamDb(piece, *loop), 3.5) << "the guard alone raises the level by 3 dB; " << loop->map;
        double inNotes = -400;
        for (int64_t shift = 0; shift < 2000; shift += 50) {
            EditPlan rough = *loop;
            const int64_t start = loop->spans[0].start + 24000;
            rough.spans = {{start, start + 2 * Song::barFrames + 777 + shift}};
            inNotes = std::max(inNotes, seamDb(piece, rough));
        }
        EXPECT_GT(inNotes, 7) << "the measure doesn't hear a wrap in the middle of notes";
    }
}

}  // namespace
}  // namespace brindlehum
