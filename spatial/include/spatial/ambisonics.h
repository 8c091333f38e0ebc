// Ambisonics up to third order: harmonics, max-rE weights, normalisations and decoders, all in 64-bit floats.
//
// Components are in ACN order with SN3D weights unless said otherwise; order N has (N+1)^2 components. Pure functions
// for the control side.
#pragma once

#include <array>
#include <vector>

#include "audio/speakers/source_format.h"
#include "spatial/matrix.h"
#include "spatial/vbap.h"

namespace brindlehum {

using Mat3x3 = std::array<std::array<double, 3>, 3>;

namespace Mat3 {
Mat3x3 mul(const Mat3x3& a, const Mat3x3& b);
// The transpose of m times v, which is the inverse rotation when m is a rotation.
Vec3 transposeApply(const Mat3x3& m, const Vec3& v);
}  // namespace Mat3

// Degrees; yaw 90 turns a source from the front to the left.
struct Rotation {
    double yaw = 0;
    double pitch = 0;
    double roll = 0;
    bool operator==(const Rotation&) const = default;
    // Rz(yaw) x Ry(-pitch) x Rx(roll).
    Mat3x3 matrix() const;
};

namespace Ambisonics {

// Real SN3D harmonics of v, (order+1)^2 values, order 0 to 3. v needn't have unit length.
std::vector<double> sh(int order, const Vec3& v);
// Per-degree max-rE weights, order + 1 entries (Zotter and Frank 2012, Legendre approximation).
std::vector<double> maxRE(int order);
// Square matrix that converts a file's channels to ACN/SN3D; always 4 x 4 for fuma.
Matrix toSN3D(int order, AmbiNorm norm);
std::vector<Direction> fibonacci(int n);

struct Grid {
    std::vector<Direction> dirs;
    std::vector<double> weights;  // add up to 1
};
// Lebedev's 26-point grid, computed once.
const Grid& lebedev26();

// One row per direction; empty `weights` means equal weights.
Matrix samplingDecoder(int order, const std::vector<Direction>& dirs, const std::vector<double>& weights,
                       const Rotation& rotation, bool normalize);
// All-round decoder to real speakers (Zotter and Frank 2012): 240 virtual directions panned by VBAP.
Matrix allradDecoder(int order, const std::vector<Direction>& speakers, const Rotation& rotation);
// Scales the matrix so that a plane wave has unit energy on average; returns an all-zero matrix unchanged.
Matrix energyNormalized(Matrix matrix, int order);

}  // namespace Ambisonics
}  // namespace brindlehum
