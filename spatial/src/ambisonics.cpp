// Spherical harmonics up to third order, their max-rE weights and the conversion of normalisations.
#include "spatial/ambisonics.h"

#include <algorithm>
#include <cmath>

#include "degrees.h"

namespace brindlehum::Ambisonics {

std::vector<double> sh(int order, const Vec3& v) {
    const double length = std::sqrt(v[0] * v[0] + v[1] * v[1] + v[2] * v[2]);
    const double az = std::atan2(v[1], v[0]);
    const double s = std::clamp(v[2] / std::max(length, 1e-12), -1.0, 1.0);
    const double el = std::asin(s);
    const double c = std::cos(el);
    const double sin2el = std::sin(2 * el);
    const double half3 = std::sqrt(3.0) / 2;
    const double half15 = std::sqrt(15.0) / 2;
    const double root58 = std::sqrt(5.0 / 8);
    const double root38 = std::sqrt(3.0 / 8);

    std::vector<double> y = {
        1,
        std::sin(az) * c,
        s,
        std::cos(az) * c,
        half3 * std::sin(2 * az) * c * c,
        half3 * std::sin(az) * sin2el,
        (3 * s * s - 1) / 2,
        half3 * std::cos(az) * sin2el,
        half3 * std::cos(2 * az) * c * c,
        root58 * std::sin(3 * az) * c * c * c,
        half15 * std::sin(2 * az) * s * c * c,
        root38 * std::sin(az) * c * (5 * s * s - 1),
        s * (5 * s * s - 3) / 2,
        root38 * std::cos(az) * c * (5 * s * s - 1),
        half15 * std::cos(2 * az) * s * c * c,
        root58 * std::cos(3 * az) * c * c * c,
    };
    y.resize(std::min(y.size(), componentCount(order)));
    return y;
}

std::vector<double> maxRE(int order) {
    // An angle of 137.9 degrees / (N + 1.51) approximates the root that maximises the energy vector.
    const double x = std::cos(2.4068090385001804 / (order + 1.51));
    std::vector<double> weights = {1, x, (3 * x * x - 1) / 2, (5 * x * x * x - 3 * x) / 2};
    weights.resize(std::min<size_t>(weights.size(), size_t(order) + 1));
    return weights;
}

Matrix toSN3D(int order, AmbiNorm norm) {
    if (norm == AmbiNorm::fuma) {
        // FuMa stores W 3 dB down, and the first order as X Y Z.
        return {{std::sqrt(2.0), 0, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}, {0, 1, 0, 0}};
    }
    const size_t count = componentCount(order);
    Matrix matrix(count, std::vector<double>(count, 0.0));
    for (size_t k = 0; k < count; ++k) {
        matrix[k][k] = norm == AmbiNorm::n3d ? 1 / std::sqrt(2.0 * degreeOf(k) + 1) : 1.0;
    }
    return matrix;
}

}  // namespace brindlehum::Ambisonics
