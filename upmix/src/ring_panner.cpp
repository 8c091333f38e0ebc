// Panning over a ring: the arc that holds the azimuth shares the power by the sines of its parts.
#include "ring_panner.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <numeric>
#include <optional>
#include <utility>

namespace brindlehum::UpmixPlanner {
namespace {

constexpr double tolerance = 1e-9;

double radians(double degrees) {
    return degrees * std::numbers::pi / 180;
}

// Gains of the speakers at a and b for the azimuth t, or none when t isn't between them.
std::optional<std::pair<double, double>> arcGains(double t, double a, double b) {
    const double determinant = std::sin(radians(b - a));
    if (t < a - tolerance || t > b + tolerance || b - a >= 180 || std::abs(determinant) <= tolerance) {
        return std::nullopt;
    }
    const double ga = std::max(std::sin(radians(b - t)) / determinant, 0.0);
    const double gb = std::max(std::sin(radians(t - a)) / determinant, 0.0);
    const double power = std::hypot(ga, gb);
    if (power == 0) { return std::nullopt; }
    return std::pair(ga / power, gb / power);
}

}  // namespace

void normalize(std::vector<double>& gains) {
    const double power = std::sqrt(std::inner_product(gains.begin(), gains.end(), gains.begin(), 0.0));
    if (power == 0) { return; }
    for (double& gain : gains) { gain /= power; }
}

std::vector<double> vbap(double azimuth, std::vector<RingSpeaker> ring, int count) {
    std::vector<double> gains(size_t(count), 0.0);
    if (ring.empty()) { return gains; }
    std::ranges::stable_sort(ring, {}, &RingSpeaker::az);
    for (size_t i = 0; i < ring.size() && ring.size() > 1; ++i) {
        const bool wraps = i + 1 == ring.size();
        const RingSpeaker& from = ring[i];
        const RingSpeaker& to = ring[wraps ? 0 : i + 1];
        const double t = azimuth < from.az ? azimuth + 360 : azimuth;
        if (const auto pair = arcGains(t, from.az, wraps ? to.az + 360 : to.az)) {
            gains[size_t(from.index)] += pair->first;
            gains[size_t(to.index)] += pair->second;
            return gains;
        }
    }
    const auto away = [&](const RingSpeaker& speaker) { return std::abs(std::remainder(speaker.az - azimuth, 360)); };
    gains[size_t(std::ranges::min_element(ring, {}, away)->index)] = 1;
    return gains;
}

}  // namespace brindlehum::UpmixPlanner
