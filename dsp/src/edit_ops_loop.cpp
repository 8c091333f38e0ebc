// The seamless loop.
#include <algorithm>
#include <cmath>
#include <numbers>

#include "edit_ops_detail.h"

namespace brindlehum::EditOps {
namespace {

constexpr double guardSeconds = 0.008;
constexpr int64_t shortestGuard = 10;
constexpr double longestCarry = 3;  // seconds
constexpr float ceiling = 0.999F;

// Overlaps the loop's rounds at equal power around the wrap. One round fades out as cos while the next fades in as sin.
// Both are the same loop, so each sample is multiplied by cos + sin, which rises from 1 to the square root of 2 at the
// wrap and falls back to 1.
void guardWrap(std::vector<float>& loop, int64_t guard) {
    const int64_t half = guard / 2;
    const auto length = int64_t(loop.size());
    for (int64_t i = 0; i < 2 * half; ++i) {
        const double phi = double(i) / double(2 * half) * std::numbers::pi / 2;
        float& x = loop[size_t(i < half ? length - half + i : i - half)];
        x = float(double(x) * std::cos(phi) + double(x) * std::sin(phi));
    }
}

}  // namespace

float detail::peak(std::span<const float> x) {
    float most = 0;
    for (const float sample : x) { most = std::max(most, std::abs(sample)); }
    return most;
}

void detail::scale(std::span<float> x, float gain) {
    for (float& sample : x) { sample *= gain; }
}

std::optional<SeamlessLoop> seamlessLoop(const Channels& channels, double sr, int64_t start, int64_t end,
                                         bool carryTail) {
    const int64_t length = end - start;
    const int64_t guard = std::min(length / 2, detail::framesIn(sr, guardSeconds));
    if (channels.empty() || guard < shortestGuard) { return std::nullopt; }
    const int64_t after = int64_t(channels[0].size()) - end;
    const int64_t carry =
        carryTail ? std::max<int64_t>(std::min({length, after, detail::framesIn(sr, longestCarry)}), 0) : 0;

    SeamlessLoop loop{slice(channels, start, end), guard, carry};
    float peak = 0;
    for (size_t c = 0; c < channels.size(); ++c) {
        auto& x = loop.channels[c];
        for (int64_t i = 0; i < carry; ++i) { x[size_t(i)] += channels[c][size_t(end + i)]; }
        guardWrap(x, guard);
        peak = std::max(peak, detail::peak(x));
    }
    if (peak > ceiling) {
        for (auto& x : loop.channels) { detail::scale(x, ceiling / peak); }
    }
    return loop;
}

}  // namespace brindlehum::EditOps
