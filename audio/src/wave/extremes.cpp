// Computes minimum and maximum in independent lanes, so that the compiler can vectorise them without changing how
// samples that aren't numbers are treated.
#include "wave/extremes.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>

namespace brindlehum {

namespace {

constexpr size_t lanes = 32;  // eight SSE registers each for minima and maxima, enough to hide the latency

constexpr float largest = std::numeric_limits<float>::max();

// An infinite sample counts as none, since one would flatten all others in a picture. The comparisons are false when a
// side isn't a number, which keeps the previous extreme.
inline void take(float sample, float& least, float& greatest) {
    const bool finite = std::abs(sample) <= largest;
    least = (sample < least) & finite ? sample : least;
    greatest = (sample > greatest) & finite ? sample : greatest;
}

}  // namespace

Extremes extremes(const float* samples, int64_t count) noexcept {
    std::array<float, lanes> least{};
    std::array<float, lanes> greatest{};
    least.fill(std::numeric_limits<float>::infinity());
    greatest.fill(-std::numeric_limits<float>::infinity());
    const auto width = int64_t(lanes);
    int64_t i = 0;
    for (; i + width <= count; i += width) {
        const float* group = samples + i;
        for (size_t lane = 0; lane < lanes; ++lane) { take(group[lane], least[lane], greatest[lane]); }
    }
    for (; i < count; ++i) { take(samples[i], least[0], greatest[0]); }
    const float min = *std::ranges::min_element(least);
    const float max = *std::ranges::max_element(greatest);
    return min > max ? Extremes{} : Extremes{min, max};
}

}  // namespace brindlehum
