// Rotation of the sound field as a 3 x 3 matrix.
#include <cmath>
#include <numbers>

#include "spatial/ambisonics.h"

namespace brindlehum {

Mat3x3 Mat3::mul(const Mat3x3& a, const Mat3x3& b) {
    Mat3x3 out{};
    for (size_t r = 0; r < 3; ++r) {
        for (size_t c = 0; c < 3; ++c) { out[r][c] = a[r][0] * b[0][c] + a[r][1] * b[1][c] + a[r][2] * b[2][c]; }
    }
    return out;
}

Vec3 Mat3::transposeApply(const Mat3x3& m, const Vec3& v) {
    Vec3 out{};
    for (size_t c = 0; c < 3; ++c) { out[c] = m[0][c] * v[0] + m[1][c] * v[1] + m[2][c] * v[2]; }
    return out;
}

Mat3x3 Rotation::matrix() const {
    constexpr double radians = std::numbers::pi / 180;
    const double a = yaw * radians;
    const double b = -pitch * radians;
    const double c = roll * radians;
    const Mat3x3 rz = {{{std::cos(a), -std::sin(a), 0}, {std::sin(a), std::cos(a), 0}, {0, 0, 1}}};
    const Mat3x3 ry = {{{std::cos(b), 0, std::sin(b)}, {0, 1, 0}, {-std::sin(b), 0, std::cos(b)}}};
    const Mat3x3 rx = {{{1, 0, 0}, {0, std::cos(c), -std::sin(c)}, {0, std::sin(c), std::cos(c)}}};
    return Mat3::mul(Mat3::mul(rz, ry), rx);
}

}  // namespace brindlehum
