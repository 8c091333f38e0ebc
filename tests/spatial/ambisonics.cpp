// Harmonics, weights, grids and decoders against independent formulas and published numbers.
#include "spatial/ambisonics.h"

#include <gtest/gtest.h>

#include <cmath>

#include "sphere.h"

namespace brindlehum {
namespace {

using namespace test;

// SN3D harmonic of degree l and signed order m by the associated Legendre functions of the standard library.
double referenceHarmonic(int l, int m, const Vec3& v) {
    const auto n = unsigned(std::abs(m));
    const double az = std::atan2(v[1], v[0]);
    const double factorials = std::tgamma(l - int(n) + 1) / std::tgamma(l + int(n) + 1);
    const double norm = std::sqrt((m == 0 ? 1 : 2) * factorials);
    const double turn = m < 0 ? std::sin(n * az) : std::cos(n * az);
    return norm * std::assoc_legendre(unsigned(l), n, v[2]) * turn;
}

TEST(Ambisonics, HarmonicsAgreeWithLegendreFunctionsInAcnOrder) {
    const uint32_t seed = announced(20113);
    for (const Vec3& unit : randomDirections(500, seed)) {
        const Vec3 longer = {unit[0] * 7, unit[1] * 7, unit[2] * 7};
        for (int order = 0; order <= 3; ++order) {
            const auto y = Ambisonics::sh(order, longer);
            ASSERT_EQ(y.size(), size_t((order + 1) * (order + 1)));
            for (int l = 0; l <= order; ++l) {
                for (int m = -l; m <= l; ++m) {
                    ASSERT_NEAR(y[size_t(l * l + l + m)], referenceHarmonic(l, m, unit), 1e-12) << l << " " << m;
                }
            }
        }
    }
}

// A plane wave written by each convention's own encoding equations.
TEST(Ambisonics, EveryNormalisationGivesTheSameField) {
    const uint32_t seed = announced(411);
    for (const Vec3& v : randomDirections(50, seed)) {
        const auto expectSame = [&](int order, AmbiNorm norm, const std::vector<double>& file) {
            const auto y = Ambisonics::sh(order, v);
            const Matrix t = Ambisonics::toSN3D(order, norm);
            ASSERT_EQ(t.size(), y.size());
            for (size_t k = 0; k < y.size(); ++k) {
                double sum = 0;
                for (size_t c = 0; c < file.size(); ++c) { sum += t[k][c] * file[c]; }
                ASSERT_NEAR(sum, y[k], 1e-12) << rawValue(norm) << " " << k;
            }
        };
        expectSame(1, AmbiNorm::fuma, {1 / std::sqrt(2.0), v[0], v[1], v[2]});
        std::vector<double> n3d;
        for (int l = 0; l <= 3; ++l) {
            for (int m = -l; m <= l; ++m) { n3d.push_back(std::sqrt(2 * l + 1) * referenceHarmonic(l, m, v)); }
        }
        expectSame(3, AmbiNorm::n3d, n3d);
        expectSame(2, AmbiNorm::sn3d, Ambisonics::sh(2, v));
    }
    EXPECT_EQ(Ambisonics::toSN3D(3, AmbiNorm::fuma).size(), 4U);
}

TEST(Rotation, TurnsAsYawPitchAndRollAreDefined) {
    struct Case {
        Rotation rotation;
        Vec3 from;
        Vec3 to;
    };
    const Vec3 front = {1, 0, 0};
    const Vec3 left = {0, 1, 0};
    const Vec3 up = {0, 0, 1};
    const double h = std::sqrt(0.5);
    const Case cases[] = {
        {{}, front, front},
        {{.yaw = 90}, front, left},
        {{.yaw = 90}, up, up},
        {{.pitch = 90}, front, up},
        {{.pitch = 45}, front, {h, 0, h}},
        {{.roll = 90}, left, up},
        {{.roll = 90}, front, front},
        // First roll, then pitch, then yaw.
        {{.yaw = 90, .pitch = 90}, front, up},
        {{.yaw = 90, .pitch = 90, .roll = 90}, left, {0, -1, 0}},
    };
    for (const Case& c : cases) {
        const Mat3x3 m = c.rotation.matrix();
        const Vec3 back = Mat3::transposeApply(m, c.to);
        for (size_t i = 0; i < 3; ++i) {
            EXPECT_NEAR(dot(m[i], c.from), c.to[i], 1e-12) << c.rotation.yaw << c.rotation.pitch << c.rotation.roll;
            EXPECT_NEAR(back[i], c.from[i], 1e-12);
        }
    }
}

// Exact integration up to degree 7 makes products of any two harmonics up to third order orthogonal.
TEST(Ambisonics, LebedevGridIntegratesThirdOrderExactly) {
    const auto& grid = Ambisonics::lebedev26();
    ASSERT_EQ(grid.dirs.size(), 26U);
    double sum = 0;
    std::vector<std::vector<double>> y;
    for (size_t i = 0; i < 26; ++i) {
        sum += grid.weights[i];
        y.push_back(Ambisonics::sh(3, grid.dirs[i].unitVector()));
    }
    EXPECT_NEAR(sum, 1, 1e-14);
    for (size_t a = 0; a < 16; ++a) {
        for (size_t b = 0; b < 16; ++b) {
            double product = 0;
            for (size_t i = 0; i < 26; ++i) { product += grid.weights[i] * y[i][a] * y[i][b]; }
            EXPECT_NEAR(product, a == b ? 1 / (2 * std::floor(std::sqrt(double(a))) + 1) : 0, 1e-12) << a << " " << b;
        }
    }
}

// The longest energy vector that an order can give is the largest root of the next Legendre polynomial (Zotter and
// Frank 2012). Basic weights would give 0.5, 0.667 and 0.75.
TEST(Ambisonics, SamplingDecodersReachTheLongestEnergyVector) {
    const std::vector<Direction> dense = Ambisonics::fibonacci(400);
    const double longest[] = {0.57735, 0.77460, 0.86114};
    for (int order = 1; order <= 3; ++order) {
        const Matrix decoder = Ambisonics::samplingDecoder(order, dense, {}, {}, true);
        for (const Vec3& v : ringGrid(6, 8)) {
            const auto [energy, vector] = arrival(decode(decoder, order, v), dense);
            EXPECT_NEAR(std::sqrt(dot(vector, vector)) / energy, longest[order - 1], 0.01) << order;
            EXPECT_LT(angleBetween(vector, v), 1) << order;
        }
    }
}

// Turning the decoder is the same as turning the source, for any rotation. The decoders differ at most by the
// scale of the energy average, which sees the field through 400 directions only.
TEST(Ambisonics, TurningTheDecoderTurnsTheSource) {
    const uint32_t seed = announced(7021);
    std::mt19937 engine(seed);
    std::uniform_real_distribution<double> turn(-180, 180);
    const auto& grid = Ambisonics::lebedev26();
    const std::vector<Direction> room = directionsOf(LayoutID::l514);
    for (int trial = 0; trial < 12; ++trial) {
        const Rotation rotation = {turn(engine), turn(engine), turn(engine)};
        const Mat3x3 m = rotation.matrix();
        const int order = 1 + trial % 3;
        const auto compare = [&](const Matrix& still, const Matrix& turned, double tolerance) {
            for (const Vec3& v : randomDirections(20, seed + uint32_t(trial))) {
                const auto expected = decode(still, order, {dot(m[0], v), dot(m[1], v), dot(m[2], v)});
                const auto heard = decode(turned, order, v);
                for (size_t s = 0; s < heard.size(); ++s) { ASSERT_NEAR(heard[s], expected[s], tolerance) << trial; }
            }
        };
        compare(Ambisonics::samplingDecoder(order, grid.dirs, grid.weights, {}, false),
                Ambisonics::samplingDecoder(order, grid.dirs, grid.weights, rotation, false), 1e-12);
        compare(Ambisonics::allradDecoder(order, room, {}), Ambisonics::allradDecoder(order, room, rotation), 2e-3);
    }
}

}  // namespace
}  // namespace brindlehum
