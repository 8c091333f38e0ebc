// Ambisonic sources on every layout: level and direction as a listener in the middle would hear them.
#include <gtest/gtest.h>

#include "spatial/layout_matrix.h"
#include "sphere.h"

namespace brindlehum {
namespace {

using namespace test;

double decibels(double energy) {
    return 10 * std::log10(energy);
}

Matrix layoutDecoder(LayoutID layout, int order) {
    const auto source = SourceFormat::ambisonic(order, AmbiNorm::sn3d);
    return MixBuilder::layoutMatrix(source, (order + 1) * (order + 1), speakers(layout), ListenMode::normal, {}, false);
}

// Worst values over the directions that a layout covers.
struct Worst {
    double minDb = 400;
    double maxDb = -400;
    double degrees = 0;        // between source and energy vector
    double mirrorDb = 0;       // level of a source against its mirror image
    double mirrorDegrees = 0;  // direction of a source against its mirror image
};

Worst measure(LayoutID layout, int order) {
    std::vector<Direction> room;
    for (SpeakerID s : speakers(layout)) { room.push_back(direction(s, speakers(layout))); }
    const Matrix decoder = layoutDecoder(layout, order);
    Worst worst;
    for (const Vec3& v : ringGrid(40, 72)) {
        // Layouts without heights cover the ring, up to 17 degrees above it.
        const bool flat = layout == LayoutID::l51 || layout == LayoutID::l71;
        if (v[2] < 0 || (flat && v[2] > 0.3)) { continue; }
        const Arrival here = arrival(decode(decoder, order, v), room);
        Arrival mirror = arrival(decode(decoder, order, {v[0], -v[1], v[2]}), room);
        mirror.vector[1] = -mirror.vector[1];
        worst.minDb = std::min(worst.minDb, decibels(here.energy));
        worst.maxDb = std::max(worst.maxDb, decibels(here.energy));
        worst.degrees = std::max(worst.degrees, angleBetween(here.vector, v));
        worst.mirrorDb = std::max(worst.mirrorDb, std::abs(decibels(here.energy / mirror.energy)));
        worst.mirrorDegrees = std::max(worst.mirrorDegrees, angleBetween(here.vector, mirror.vector));
    }
    return worst;
}

// The limits lie 0.3 dB and 3 degrees beyond the measured values. Four speakers in one plane, as heights are, make a
// face that is cut along the diagonal found first, so that a source above isn't an exact mirror image of its twin.
TEST(AllRAD, KeepsLevelAndDirectionOnEveryLayout) {
    struct Case {
        LayoutID layout;
        double minDb;
        double maxDb;
        std::array<double, 3> degrees;  // by order
        double mirrorDb;
        double mirrorDegrees;
    };
    const Case cases[] = {
        {LayoutID::l51, -1.7, 2.0, {29, 32, 30}, 0.1, 1},   {LayoutID::l71, -1.0, 2.0, {20, 20, 21}, 0.1, 1},
        {LayoutID::l514, -2.4, 2.4, {26, 33, 32}, 0.6, 32}, {LayoutID::l712, -1.0, 2.4, {25, 17, 24}, 0.7, 20},
        {LayoutID::l714, -0.9, 2.0, {24, 14, 15}, 0.4, 11}, {LayoutID::l916, -1.0, 2.9, {24, 15, 15}, 0.5, 11},
    };
    for (const Case& c : cases) {
        for (int order = 1; order <= 3; ++order) {
            SCOPED_TRACE(testing::Message() << displayName(c.layout) << " order " << order);
            const Worst worst = measure(c.layout, order);
            EXPECT_GT(worst.minDb, c.minDb);
            EXPECT_LT(worst.maxDb, c.maxDb);
            EXPECT_LT(worst.degrees, c.degrees[size_t(order - 1)]);
            EXPECT_LT(worst.mirrorDb, c.mirrorDb);
            EXPECT_LT(worst.mirrorDegrees, c.mirrorDegrees);
        }
    }
}

// The pair is decoded through 26 virtual speakers, which mirror each other exactly.
TEST(StereoFoldOfAmbisonics, IsSymmetricAndLeansToTheSource) {
    for (int order = 1; order <= 3; ++order) {
        const Matrix pair = layoutDecoder(LayoutID::stereo, order);
        double previous = -1;
        for (double az = 0; az <= 90; az += 10) {
            const auto here = decode(pair, order, Direction{az, 0}.unitVector());
            const auto mirror = decode(pair, order, Direction{-az, 0}.unitVector());
            EXPECT_NEAR(here[0], mirror[1], 1e-12) << az;
            EXPECT_NEAR(here[1], mirror[0], 1e-12) << az;
            // The share of the left grows all the way from the front to the side.
            const double share = here[0] / (here[0] + here[1]);
            EXPECT_GT(share, previous) << order << " " << az;
            if (az == 0) { EXPECT_NEAR(share, 0.5, 1e-12); }
            previous = share;
        }
        EXPECT_GT(previous, 0.7) << order;
    }
}

}  // namespace
}  // namespace brindlehum
