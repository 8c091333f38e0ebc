// Triangulates a speaker set by exhaustive search, and pans on the result.
#include "spatial/vbap.h"

#include <algorithm>
#include <cmath>

namespace brindlehum {
namespace {

Vec3 cross(const Vec3& a, const Vec3& b) {
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

double dot(const Vec3& a, const Vec3& b) {
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

Vec3 scaled(const Vec3& v, double factor) {
    return {v[0] * factor, v[1] * factor, v[2] * factor};
}

// The triangle of points i, j, k if it is a face of the hull and its plane misses the centre.
std::optional<VBAP::Triangle> hullTriangle(const std::vector<Vec3>& points, int i, int j, int k) {
    const Vec3& a = points[size_t(i)];
    const Vec3& b = points[size_t(j)];
    const Vec3& c = points[size_t(k)];
    const Vec3 normal = cross({b[0] - a[0], b[1] - a[1], b[2] - a[2]}, {c[0] - a[0], c[1] - a[1], c[2] - a[2]});
    if (dot(normal, normal) < 1e-12) { return std::nullopt; }
    const double distance = dot(normal, a);
    if (std::abs(distance) < 1e-9) { return std::nullopt; }

    bool above = false;
    bool below = false;
    for (int m = 0; m < int(points.size()); ++m) {
        if (m == i || m == j || m == k) { continue; }
        const double side = dot(normal, points[size_t(m)]) - distance;
        above = above || side > 1e-9;
        below = below || side < -1e-9;
    }
    if (above && below) { return std::nullopt; }

    const double det = dot(a, cross(b, c));
    if (std::abs(det) < 1e-9) { return std::nullopt; }
    return VBAP::Triangle{{i, j, k},
                          {scaled(cross(b, c), 1 / det), scaled(cross(c, a), 1 / det), scaled(cross(a, b), 1 / det)}};
}

// Unit-energy gains at the triangle's points, if v lies inside it.
std::optional<Vec3> triangleGains(const VBAP::Triangle& triangle, const Vec3& v) {
    constexpr double edge = -1e-6;
    Vec3 g = {dot(v, triangle.inverse[0]), dot(v, triangle.inverse[1]), dot(v, triangle.inverse[2])};
    const double energy = dot(g, g);
    if (g[0] < edge || g[1] < edge || g[2] < edge || energy <= 0) { return std::nullopt; }
    for (double& gain : g) { gain = std::max(gain / std::sqrt(energy), 0.0); }
    return g;
}

}  // namespace

VBAP::VBAP(const std::vector<Direction>& directions) : speakers(int(directions.size())) {
    for (const Direction& direction : directions) { points.push_back(direction.unitVector()); }
    bottom = int(points.size());
    points.push_back({0, 0, -1});
    if (std::ranges::none_of(directions, [](const Direction& d) { return d.el > 30; })) {
        top = int(points.size());
        points.push_back({0, 0, 1});
    }
    const int count = int(points.size());
    for (int i = 0; i < count; ++i) {
        for (int j = i + 1; j < count; ++j) {
            for (int k = j + 1; k < count; ++k) {
                if (auto triangle = hullTriangle(points, i, j, k)) { triangles.push_back(*triangle); }
            }
        }
    }
}

std::vector<double> VBAP::gains(const Vec3& v) const {
    std::vector<double> out(size_t(speakers), 0.0);
    for (const Triangle& triangle : triangles) {
        const std::optional<Vec3> g = triangleGains(triangle, v);
        if (!g) { continue; }
        for (size_t corner = 0; corner < 3; ++corner) {
            const int point = triangle.points[corner];
            const double gain = (*g)[corner];
            if (point < speakers) {
                out[size_t(point)] += gain;
            } else if (top == point) {
                for (double& speaker : out) { speaker += gain / std::sqrt(double(speakers)); }
            }
        }
        return out;
    }
    const auto real = points.begin() + speakers;
    const auto nearest =
        std::max_element(points.begin(), real, [&v](const Vec3& a, const Vec3& b) { return dot(a, v) < dot(b, v); });
    if (nearest != real) { out[size_t(nearest - points.begin())] = 1; }
    return out;
}

}  // namespace brindlehum
