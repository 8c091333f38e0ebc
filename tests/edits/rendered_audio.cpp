// Lengths and splices, measured in the rendered audio of an analysed piece.
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
using test::songRate;

constexpr int64_t crossfade = 1323;  // 30 ms

// Splices that no fade touches, in all edits.
TEST(RenderedEdits, AreSplicedOnBarLines) {
    for (const double pickup : {0.0, 0.5}) {
        const Samples source = test::song(pickup);
        const std::vector<Samples> channels = {source};
        MemorySamples samples(channels, songRate);
        const auto outcome = analyzeMusic({samples, std::nullopt, "song.wav", {}, {}});
        TempEditOptions options;
        options.targets = {12, 20, 30, 36, 41.5, 45, 52, 60, 68, 75, 90};
        const auto plans = TempEditPlanner::plans(outcome.analysis->grid, outcome.analysis->structure, songRate,
                                                  int64_t(source.size()), options);
        int count = 0;
        for (const EditPlan& plan : plans) {
            const Samples out =
                TempEditRenderer::render(plan, Sound(std::vector<Samples>{source}), songRate, options)[0];
            EXPECT_TRUE(!plan.cutAtSec || out.size() == size_t(songRate * *plan.targetSec)) << plan.name;
            const int64_t untouched = int64_t(out.size()) - (plan.cutAtSec ? int64_t(songRate) : 0);
            int64_t at = 0;
            for (size_t i = 1; i < plan.spans.size(); ++i) {
                const auto& before = plan.spans[i - 1];
                const auto& after = plan.spans[i];
                at += before.end - before.start + after.pause;
                if (at + 8192 > untouched) { continue; }
                ++count;
                SCOPED_TRACE(plan.name + " at " + std::to_string(double(at) / songRate) + " s: " + plan.map);
                const double unit = after.beat > 1 ? test::barFrames / 4.0 : double(test::barFrames);
                for (const int64_t frame : {before.end, after.start}) {
                    const double offBar = std::remainder(double(frame) - pickup * songRate, unit);
                    EXPECT_LT(std::abs(offBar), 0.01 * songRate) << "off the bar line";
                }
                EXPECT_TRUE(std::equal(&out[size_t(at)], &out[size_t(at + 8192)], &source[size_t(after.start)]));
                if (after.pause > 0) {
                    const auto* silence = &out[size_t(at - after.pause)];
                    EXPECT_TRUE(
                        std::all_of(silence, silence + after.pause - crossfade, [](float x) { return x == 0; }));
                    continue;
                }
                // The crossfade has all of its 30 ms before the line and none after it.
                const int64_t fade = at - crossfade;
                const int64_t fadeFrom = before.end - crossfade;
                EXPECT_TRUE(
                    std::equal(&out[size_t(fade - 4096)], &out[size_t(fade)], &source[size_t(fadeFrom - 4096)]));
                EXPECT_NE(out[size_t(fade)], source[size_t(fadeFrom)]);
            }
        }
        EXPECT_GE(count, 6) << "the piece gives too few splices to say anything";
    }
}

}  // namespace
}  // namespace brindlehum
