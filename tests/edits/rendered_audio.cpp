// Lengths and splices, measured in the rendered audio of an analysed song.
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

}  // namespace
}  // namespace brindlehum
