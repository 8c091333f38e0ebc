// Plans of an upmix: what they promise of power, direction, fold-down and filters, over all presets and rooms.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>

#include "plan_parts.h"
#include "random_numbers.h"
#include "ring_panner.h"
#include "spatial/layout_matrix.h"
#include "upmix/upmix_planner.h"

namespace brindlehum {
namespace {

using enum SpeakerID;

constexpr UpmixTransform transform{};
constexpr double degree = std::numbers::pi / 180;

float at(const UpmixPlan& plan, const std::vector<float>& list, int out, int k) {
    return list[size_t(out) * size_t(plan.bins) + size_t(k)];
}

int find(const SpeakerList& room, SpeakerID speaker) {
    return int(std::ranges::find(room, speaker) - room.begin());
}

// The published numbers of both generators.
TEST(UpmixPlans, TheSeedsOfTheTurnsAreThePublishedOnes) {
    EXPECT_EQ(fnv1a(""), 0xcbf29ce484222325);
    EXPECT_EQ(fnv1a("a"), 0xaf63dc4c8601ec8c);
    EXPECT_EQ(SplitMix64(0).next(), 0xe220a8397b1dcdaf);
}

TEST(UpmixPlans, PanningKeepsThePowerAndTheDirection) {
    for (const LayoutID layout : allLayouts) {
        const SpeakerList& room = speakers(layout);
        for (const UpmixPreset preset : allUpmixPresets) {
            const UpmixParams p = params(preset);
            const UpmixPlan plan = UpmixPlanner::plan({{L, R}, room, p}, transform);
            for (int step = 0; step < plan.panSteps && !p.exact; ++step) {
                const double theta = step / 64.0 * std::numbers::pi / 2;
                double power = 0, x = 0, y = 0;
                for (int i = 0; i < plan.outs; ++i) {
                    const auto g = double(plan.direct[size_t(i * plan.panSteps + step)]);
                    const auto v = direction(room[size_t(i)], room).unitVector();
                    power += g * g;
                    x += g * v[0];
                    y += g * v[1];
                }
                SCOPED_TRACE(testing::Message() << rawValue(preset) << " " << rawValue(layout) << " step " << step);
                ASSERT_NEAR(power, 1, 1e-6);
                if (p.centerWidth > 0 || (layout == LayoutID::stereo && p.stage > 30)) { continue; }
                // The tangent law of stereophony (Bernfeld 1973), stretched to the stage.
                const double ratio = (std::cos(theta) - std::sin(theta)) / (std::cos(theta) + std::sin(theta));
                const double azimuth = std::atan(ratio * std::tan(30 * degree)) / degree * p.stage / 30;
                ASSERT_NEAR(std::atan2(y, x) / degree, azimuth, 0.1);
            }
        }
    }
}

TEST(UpmixPlans, ARingSpeaksThroughTheSpeakersAroundTheAzimuth) {
    using UpmixPlanner::vbap;
    const std::vector<UpmixPlanner::RingSpeaker> ring = {{0, 30}, {1, -30}, {2, 180}};
    const struct {
        double az;
        std::vector<UpmixPlanner::RingSpeaker> ring;
        std::vector<double> gains;
    } cases[] = {
        {0, ring, {std::sqrt(0.5), std::sqrt(0.5), 0}},
        {105, ring, {std::sqrt(0.5), 0, std::sqrt(0.5)}},
        {-105, ring, {0, std::sqrt(0.5), std::sqrt(0.5)}},  // over the seam
        {30, ring, {1, 0, 0}},
        {20, {{1, -120}}, {0, 1, 0}},
        {20, {{0, 90}, {2, -90}}, {1, 0, 0}},  // no arc is less than half a circle: the nearest
        {20, {}, {0, 0, 0}},
    };
    for (const auto& c : cases) {
        const auto gains = vbap(c.az, c.ring, 3);
        for (size_t i = 0; i < 3; ++i) { EXPECT_NEAR(gains[i], c.gains[i], 1e-9) << c.az << " of " << c.ring.size(); }
    }
}

// Each side's ambience: f stays in front, the rest is spread at the ambience's level.
TEST(UpmixPlans, AmbienceHasThePowerOfItsFormula) {
    for (const LayoutID layout : {LayoutID::l51, LayoutID::l714, LayoutID::l916}) {
        for (const UpmixPreset preset : allUpmixPresets) {
            for (const double strength : {0.0, 0.3, 1.0}) {
                UpmixParams p = params(preset);
                p.strength = strength;
                if (p.exact) { continue; }
                const UpmixPlan plan = UpmixPlanner::plan({{L, R}, speakers(layout), p}, transform);
                const double spread = p.frontAmbience + std::pow(10, p.ambienceDB / 10) * (1 - p.frontAmbience);
                for (const auto* row : {&plan.ambL, &plan.ambR}) {
                    double power = 0;
                    for (const float g : *row) { power += double(g) * double(g); }
                    EXPECT_NEAR(power, 1 - strength + strength * spread, 1e-5) << rawValue(preset);
                }
            }
        }
    }
}

// Gains with their outputs, as a mixer would write them down.
TEST(UpmixPlans, SpeakersGetWhatTheirPlaceAsksFor) {
    const SpeakerList& l714 = speakers(LayoutID::l714);
    const SpeakerList& l916 = speakers(LayoutID::l916);
    UpmixParams p = params(UpmixPreset::film);
    const UpmixPlan film = UpmixPlanner::plan({{L, R}, l714, p}, transform);
    EXPECT_FLOAT_EQ(film.direct[size_t(find(l714, C) * 65 + 32)], 1);  // no centre width: the middle is the centre
    EXPECT_EQ(film.lfeOut, find(l714, LFE));
    EXPECT_NEAR(film.lfeGain, std::pow(10, -0.5), 1e-6);
    for (int k = 0; k < film.bins; ++k) { ASSERT_NEAR(film.lfeLP[size_t(k)] + film.mainHP[size_t(k)], 1, 1e-6); }
    EXPECT_NEAR(film.delay[size_t(find(l714, Ls))], 48 * (10 + 12 * 0.45), 1e-2);
    EXPECT_EQ(film.delay[size_t(find(l714, C))], 0);
    // A Butterworth high-pass is at half power at its corner, and closed for 0 Hz.
    const int corner = find(l714, Ltf);
    const double hertz = transform.hertz(3);
    EXPECT_NEAR(at(film, film.curve, corner, 3), 1 / std::sqrt(1 + std::pow(150 / hertz, 4)), 1e-6);
    EXPECT_EQ(at(film, film.curve, corner, 0), 0);
    for (int i = 0; i < film.outs; ++i) {
        for (int k = 0; k < film.bins; ++k) {
            ASSERT_NEAR(std::hypot(at(film, film.decorRe, i, k), at(film, film.decorIm, i, k)), 1, 1e-6);
        }
        EXPECT_EQ(at(film, film.decorIm, i, film.bins - 1), 0);
    }

    p.stage = 60;
    const UpmixPlan wide = UpmixPlanner::plan({{L, R}, l916, p}, transform);
    EXPECT_NEAR(wide.direct[size_t(find(l916, Lw) * 65)], 1, 1e-6);  // a hard-panned source stands at 60 degrees

    const UpmixPlan speech = UpmixPlanner::plan({{L, R}, l714, params(UpmixPreset::speech)}, transform);
    for (const SpeakerID high : {Ltf, Rtf, Ltr, Rtr}) {
        EXPECT_EQ(speech.ambL[size_t(find(l714, high))] + speech.ambR[size_t(find(l714, high))], 0);
    }
    p.focus = 0;
    EXPECT_FLOAT_EQ(UpmixPlanner::plan({{L, R}, l714, p}, transform).kappa[0], 10);
    EXPECT_EQ(UpmixPlanner::plan({{L, R}, {C, LFE}, p}, transform), UpmixPlan());
}

TEST(UpmixPlans, ABedKeepsItsSpeakersAndItsPairsFillTheOthers) {
    const SpeakerList& l51 = speakers(LayoutID::l51);
    const SpeakerList& l714 = speakers(LayoutID::l714);
    const UpmixPlan plan = UpmixPlanner::plan({l51, l714, params(UpmixPreset::hall)}, transform);
    EXPECT_EQ(plan.pairIn, (std::vector<int32_t>{0, 1, 4, 5}));
    EXPECT_EQ(plan.routeIn, (std::vector<int32_t>{2, 3}));
    EXPECT_EQ(plan.routeOut, (std::vector<int32_t>{2, 3}));
    EXPECT_EQ(plan.home, (std::vector<int32_t>{1, 1}));
    const auto fillsOf = [&](const std::vector<float>& row, size_t pair) {
        std::vector<SpeakerID> fills;
        for (size_t i = 0; i < l714.size(); ++i) {
            if (row[pair * l714.size() + i] > 0) { fills.push_back(l714[i]); }
        }
        return fills;
    };
    EXPECT_EQ(fillsOf(plan.ambL, 0), (std::vector{L, Ltf}));
    EXPECT_EQ(fillsOf(plan.ambR, 1), (std::vector{Rs, Rrs, Rtr}));
    // A pair that the room lacks goes to the nearest speakers, an LFE nowhere.
    const UpmixPlan inner = UpmixPlanner::plan({{L, R, Lc, Rc, LFE}, {L, R, C, Ls, Rs}, {}}, transform);
    EXPECT_EQ(inner.routeIn, (std::vector<int32_t>{2, 3}));
    EXPECT_EQ(inner.routeOut, (std::vector<int32_t>{0, 1}));
}

}  // namespace
}  // namespace brindlehum
