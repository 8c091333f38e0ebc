// TempEditRenderer: splices, fades and cuts on sources whose every sample states its frame.
#include "edits/temp_edit_renderer.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <numbers>
#include <numeric>

#include "dsp/edit_ops.h"
#include "support/signals.h"

namespace brindlehum {
namespace {

using Planes = std::vector<std::vector<float>>;
using Spans = std::vector<EditPlan::Span>;

EditPlan planOf(Spans spans, EditPlan::Kind kind = EditPlan::Kind::cutdown) {
    EditPlan plan;
    plan.kind = kind;
    plan.spans = std::move(spans);
    return plan;
}

// At 1000 Hz, so that milliseconds are frames; the second channel is the first one upside down.
std::vector<float> render(const EditPlan& plan, const std::vector<float>& source, double crossfadeMs = 30) {
    std::vector<float> other = source;
    for (float& x : other) { x = -x; }
    TempEditOptions options;
    options.crossfadeMs = crossfadeMs;
    const Planes out = TempEditRenderer::render(plan, Sound(Planes{source, other}), 1000, options);
    EXPECT_EQ(out.size(), 2U);
    EXPECT_TRUE(std::ranges::equal(out[0], out[1], {}, {}, std::negate<>()));
    EXPECT_EQ(int64_t(out[0].size()), TempEditRenderer::length(plan, 1000));
    return out[0];
}

TEST(TempEditRenderer, CrossfadesBeforeTheSpan) {
    struct Case {
        Spans spans;
        double crossfadeMs;
        std::vector<int64_t> fades;  // length of the crossfade before each span but the first
    };
    const Case cases[] = {
        {{{100, 200}, {500, 600}}, 30, {30}},
        {{{100, 200}, {200, 600}}, 30, {0}},   // follows in the source
        {{{100, 200}, {0, 50}}, 30, {0}},      // nothing precedes the source
        {{{100, 200}, {20, 50}}, 30, {20}},    // not enough precedes
        {{{100, 110}, {500, 600}}, 30, {10}},  // not enough is written
        {{{100, 110}, {500, 510}, {900, 950}}, 30, {10, 20}},
        {{{100, 200}, {500, 600}}, 0, {1}},  // never less than a frame
        {{{400, 500}, {100, 200}, {200, 300}, {100, 200}}, 7.9, {7, 0, 7}},
        {{}, 30, {}},
    };
    std::vector<float> source(1000);
    std::iota(source.begin(), source.end(), 1.0F);
    for (size_t n = 0; n < std::size(cases); ++n) {
        const auto& [spans, ms, fades] = cases[n];
        const auto out = render(planOf(spans), source, ms);
        std::vector<double> expected;
        for (size_t s = 0; s < spans.size(); ++s) {
            for (int64_t m = s > 0 ? fades[s - 1] : 0, i = 0; i < m; ++i) {
                const double x = (double(i) + 0.5) / double(m) * std::numbers::pi / 2;
                double& y = expected[expected.size() - size_t(m - i)];
                y = y * std::cos(x) + double(spans[s].start - m + i + 1) * std::sin(x);
            }
            for (int64_t i = spans[s].start; i < spans[s].end; ++i) { expected.push_back(double(i + 1)); }
        }
        ASSERT_EQ(out.size(), expected.size()) << "case " << n;
        for (size_t i = 0; i < out.size(); ++i) {
            ASSERT_NEAR(out[i], expected[i], 1e-3) << "case " << n << " at " << i;
        }
    }
}

TEST(TempEditRenderer, PausesBetweenFadesAndPadsTheEnd) {
    EditPlan plan = planOf({{100, 200}, {200, 300, 50}});
    plan.padFrames = 20;
    const auto out = render(plan, std::vector<float>(1000, 1.0F), 30);
    ASSERT_EQ(out.size(), 270U);
    const double half = std::sqrt(0.5);
    const std::pair<size_t, double> samples[] = {{19, 1},
                                                 {20, 1},
                                                 {60, half},
                                                 {99, std::cos(79 * std::numbers::pi / 160)},
                                                 {100, 0},
                                                 {119, 0},
                                                 {135, std::sin(15.5 / 30 * std::numbers::pi / 2)},
                                                 {150, 1},
                                                 {249, 1},
                                                 {250, 0},
                                                 {269, 0}};
    for (const auto& [at, value] : samples) { EXPECT_NEAR(out[at], value, 1e-6) << at; }
}

TEST(TempEditRenderer, FadesAndCuts) {
    struct Case {
        int64_t fadeIn, fadeOut;
        std::optional<double> cut;
        size_t length;
        std::vector<std::pair<size_t, double>> samples;  // of a source of ones
    };
    const double half = std::sqrt(0.5);
    const Case cases[] = {
        {100, 0, {}, 8000, {{0, 0}, {50, half}, {100, 1}, {7999, 1}}},
        {9000, 0, {}, 8000, {{0, 0}, {4000, half}}},
        {0, 100, {}, 8000, {{7899, 1}, {7900, 1}, {7950, 0.5}, {7999, 0.01}}},
        {0, 16000, {}, 8000, {{0, 1}, {4000, 0.5}}},
        {0, 0, 6.0, 6000, {{4999, 1}, {5000, 1}, {5500, half}, {5999, std::cos(0.999 * std::numbers::pi / 2)}}},
        {0, 0, 2.0009, 2000, {{1499, 1}, {1750, half}}},  // a quarter of the whole
        {0, 0, 9.0, 8000, {{6999, 1}, {7500, half}}},     // no longer than it is
        {0, 0, 0.0, 0, {}},
        {10, 0, 0.003, 3, {{0, 0}}},
    };
    for (const auto& [fadeIn, fadeOut, cut, length, samples] : cases) {
        EditPlan plan = planOf({{0, 8000}});
        plan.fadeInFrames = fadeIn;
        plan.fadeOutFrames = fadeOut;
        plan.cutAtSec = cut;
        const auto out = render(plan, std::vector<float>(8000, 1.0F));
        ASSERT_EQ(out.size(), length);
        for (const auto& [at, value] : samples) {
            EXPECT_NEAR(out[at], value, 1e-6) << "frame " << at << " of " << length;
        }
    }
}

TEST(TempEditRenderer, RendersLoopsSeamlessly) {
    const std::vector<float> source = test::noise(9000, 5);
    EditPlan plan = planOf({{3000, 6000}}, EditPlan::Kind::loop);
    for (const bool carry : {false, true}) {
        plan.carryLoopTail = carry;
        const Planes expected = EditOps::seamlessLoop(Planes{source}, 8000, 3000, 6000, carry)->channels;
        EXPECT_EQ(TempEditRenderer::render(plan, Sound(Planes{source}), 8000, {}), expected);
    }
}

}  // namespace
}  // namespace brindlehum
