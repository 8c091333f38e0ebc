// largestMagnitude: the peak of a plane, real-time safe.
#pragma once

#include <algorithm>
#include <bit>
#include <cstdint>

namespace brindlehum {

// Not finite when a sample isn't. Compares the samples as integers without their sign bit: that order is the one of
// magnitudes, with infinity and NaN on top, and the loop needs no branch for them.
inline float largestMagnitude(const float* plane, int32_t frames) noexcept {
    int32_t most = 0;
    for (int32_t i = 0; i < frames; ++i) { most = std::max(most, std::bit_cast<int32_t>(plane[i]) & 0x7fffffff); }
    return std::bit_cast<float>(most);
}

}  // namespace brindlehum
