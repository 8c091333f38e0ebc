// Directions for tests over the sphere, and plain vector arithmetic.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <numbers>
#include <random>
#include <vector>

#include "spatial/ambisonics.h"

namespace brindlehum::test {

inline constexpr double degrees = 180 / std::numbers::pi;

inline double dot(const Vec3& a, const Vec3& b) {
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

// Angle in degrees between vectors of any length.
inline double angleBetween(const Vec3& a, const Vec3& b) {
    return std::acos(std::clamp(dot(a, b) / std::sqrt(dot(a, a) * dot(b, b)), -1.0, 1.0)) * degrees;
}

// Prints a seed, so that a failure can be repeated.
inline uint32_t announced(uint32_t seed) {
    std::printf("seed %u\n", seed);
    return seed;
}

// Uniform on the sphere.
inline std::vector<Vec3> randomDirections(size_t count, uint32_t seed) {
    std::mt19937 engine(seed);
    std::normal_distribution<double> normal;
    std::vector<Vec3> out(count);
    for (Vec3& v : out) {
        v = {normal(engine), normal(engine), normal(engine)};
        const double length = std::sqrt(dot(v, v));
        for (double& x : v) { x /= length; }
    }
    return out;
}

// Equal areas: rings of equal height, equally many points each; not the spiral that the decoders use.
inline std::vector<Vec3> ringGrid(int rings, int perRing) {
    std::vector<Vec3> out;
    for (int i = 0; i < rings; ++i) {
        const double z = (2 * i + 1.0) / rings - 1;
        const double r = std::sqrt(1 - z * z);
        for (int j = 0; j < perRing; ++j) {
            const double az = 2 * std::numbers::pi * (j + 0.5) / perRing;
            out.push_back({r * std::cos(az), r * std::sin(az), z});
        }
    }
    return out;
}

// Outputs of a decoder for a plane wave.
inline std::vector<double> decode(const Matrix& decoder, int order, const Vec3& source) {
    const std::vector<double> y = Ambisonics::sh(order, source);
    std::vector<double> out;
    for (const auto& row : decoder) {
        double sum = 0;
        for (size_t k = 0; k < y.size(); ++k) { sum += row[k] * y[k]; }
        out.push_back(sum);
    }
    return out;
}

// The sound in the middle of speakers in these directions.
struct Arrival {
    double energy = 0;
    Vec3 vector{};  // the energy vector times the energy
};
inline Arrival arrival(const std::vector<double>& gains, const std::vector<Direction>& room) {
    Arrival out;
    for (size_t s = 0; s < room.size(); ++s) {
        const Vec3 u = room[s].unitVector();
        out.energy += gains[s] * gains[s];
        for (size_t i = 0; i < 3; ++i) { out.vector[i] += gains[s] * gains[s] * u[i]; }
    }
    return out;
}

// The directions of a layout's speakers, the LFE left out.
inline std::vector<Direction> directionsOf(LayoutID layout) {
    std::vector<Direction> out;
    for (SpeakerID s : speakers(layout)) {
        if (s != SpeakerID::LFE) { out.push_back(direction(s, speakers(layout))); }
    }
    return out;
}

// The speaker on the other side of the listener.
inline SpeakerID mirrored(SpeakerID speaker) {
    const auto swapped = [](char c) { return c == 'L' ? 'R' : c == 'R' ? 'L' : c; };
    std::string name(rawValue(speaker));
    if (name != "LFE") { name[0] = swapped(name[0]); }
    return *speakerFromRaw(name);
}

}  // namespace brindlehum::test
