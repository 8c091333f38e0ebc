// The panner on real rooms, random rooms and rooms that can't be panned.
#include "spatial/vbap.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "sphere.h"

namespace brindlehum {
namespace {

using namespace test;

// All layouts but the pair, and random rooms of 4 to 20 speakers.
std::vector<std::vector<Direction>> rooms() {
    std::vector<std::vector<Direction>> out;
    for (LayoutID layout : allLayouts) {
        if (layout != LayoutID::stereo) { out.push_back(directionsOf(layout)); }
    }
    for (uint32_t size = 4; size <= 20; size += 4) {
        std::vector<Direction> room;
        for (const Vec3& v : randomDirections(size, 900 + size)) { room.push_back(Direction::fromVector(v)); }
        out.push_back(room);
    }
    return out;
}

TEST(VBAP, PansIntoTheDirectionWithUnitEnergy) {
    const uint32_t seed = announced(5150);
    int panned = 0;
    for (const auto& room : rooms()) {
        const VBAP vbap(room);
        for (const Vec3& v : randomDirections(400, seed)) {
            // Only directions inside a triangle of real speakers, with a margin to its edges.
            bool inReal = false;
            for (const auto& t : vbap.triangles) {
                const bool real = std::ranges::all_of(t.points, [&](int p) { return p < vbap.speakers; });
                const bool inside = std::ranges::all_of(t.inverse, [&](const Vec3& row) { return dot(row, v) > 1e-3; });
                inReal = inReal || (real && inside);
            }
            const auto g = vbap.gains(v);
            ASSERT_EQ(g.size(), room.size());
            double energy = 0;
            Vec3 sum{};
            for (size_t s = 0; s < g.size(); ++s) {
                ASSERT_GE(g[s], 0);
                energy += g[s] * g[s];
                for (size_t i = 0; i < 3; ++i) { sum[i] += g[s] * room[s].unitVector()[i]; }
            }
            if (!inReal) { continue; }
            ++panned;
            ASSERT_NEAR(energy, 1, 1e-9);
            ASSERT_LT(angleBetween(sum, v), 1e-4);
        }
        for (size_t s = 0; s < room.size(); ++s) {
            const auto g = vbap.gains(room[s].unitVector());
            for (size_t other = 0; other < g.size(); ++other) { EXPECT_NEAR(g[other], other == s ? 1 : 0, 2e-6); }
        }
    }
    EXPECT_GT(panned, 500);
}

TEST(VBAP, VirtualPointsCloseTheRoom) {
    const VBAP flat(directionsOf(LayoutID::l51));
    ASSERT_TRUE(flat.top.has_value());
    EXPECT_EQ(flat.bottom, 5);
    EXPECT_EQ(*flat.top, 6);
    for (double g : flat.gains({0, 0, 1})) { EXPECT_NEAR(g, 1 / std::sqrt(5.0), 1e-12); }
    for (double g : flat.gains({0, 0, -1})) { EXPECT_EQ(g, 0); }
    // Between C and the bottom point: only C is heard, and less than fully.
    const auto below = flat.gains({1, 0, -1});
    for (size_t s = 0; s < 5; ++s) { EXPECT_NEAR(below[s], s == 2 ? std::sqrt(0.5) : 0, 1e-9); }

    EXPECT_FALSE(VBAP(directionsOf(LayoutID::l714)).top.has_value());
    EXPECT_TRUE(VBAP({{0, 0}, {90, 30}, {-90, 30}}).top.has_value());
    EXPECT_FALSE(VBAP({{0, 0}, {0, 90}}).top.has_value());
}

TEST(VBAP, PlaysTheNearestSpeakerOfARoomThatCannotBePanned) {
    EXPECT_TRUE(VBAP(std::vector<Direction>{}).gains({1, 0, 0}).empty());
    const VBAP single({{30, 0}});
    EXPECT_EQ(single.gains({-1, 0, 0}), std::vector<double>{1});
    const VBAP pair({{30, 0}, {-30, 0}});
    EXPECT_EQ(pair.gains(Direction{100, 0}.unitVector()), (std::vector<double>{1, 0}));
    EXPECT_EQ(pair.gains(Direction{-170, 0}.unitVector()), (std::vector<double>{0, 1}));
    const VBAP twins({{90, 0}, {90, 0}});
    EXPECT_EQ(twins.gains({1, 0, 0}), (std::vector<double>{1, 0})) << "of equals the first";
}

}  // namespace
}  // namespace brindlehum
