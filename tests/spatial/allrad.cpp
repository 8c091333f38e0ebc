// Ambisonic sources on every layout, as properties of what a listener in the middle would hear.
#include <gtest/gtest.h>

#include <algorithm>

#include "spatial/layout_matrix.h"
#include "sphere.h"

namespace brindlehum {
namespace {

using namespace test;

// Energy and energy vector of what arrives in the middle.
struct Arrival {
    double energy = 0;
    Vec3 vector{};
};

Arrival arrival(const std::vector<double>& gains, const SpeakerList& room) {
    Arrival out;
    for (size_t s = 0; s < room.size(); ++s) {
        out.energy += gains[s] * gains[s];
        const Vec3 u = direction(room[s], room).unitVector();
        for (size_t i = 0; i < 3; ++i) out.vector[i] += gains[s] * gains[s] * u[i];
    }
    return out;
}

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
    const SpeakerList& room = speakers(layout);
    const Matrix decoder = layoutDecoder(layout, order);
    Worst worst;
    for (const Vec3& v : ringGrid(40, 72)) {
        // Layouts without heights cover the ring, up to 17 degrees above it.
        const bool flat = layout == LayoutID::l51 || layout == LayoutID::l71;
        if (v[2] < 0 || (flat && v[2] > 0.3)) continue;
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

TEST(AllRAD, Measure) {
    for (LayoutID layout : allLayouts) {
        for (int order = 1; order <= 3; ++order) {
            const Worst h = measure(layout, order);
            std::printf("%-7s order %d: energy %+.2f to %+.2f dB, rE off by %.1f degrees, mirror %.2f dB %.2f degrees\n",
                        std::string(rawValue(layout)).c_str(), order, h.minDb, h.maxDb, h.degrees, h.mirrorDb, h.mirrorDegrees);
        }
    }
}

}  // namespace
}  // namespace brindlehum
