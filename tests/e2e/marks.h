// Sounds in which every sample tells its channel and its frame.
#pragma once

#include <cstddef>
#include <cstdint>

#include "support/signals.h"

namespace brindlehum::test {

// A value that identifies channel and frame, never 0, exact in a float.
inline float mark(size_t channel, size_t frame) {
    uint64_t x = (frame + 1) * 0x9E3779B97F4A7C15ULL ^ (channel + 1) * 0xD1B54A32D192ED03ULL;
    x = (x ^ (x >> 29)) * 0xBF58476D1CE4E5B9ULL;
    return (float((x >> 40) & 0x7FFFFF) + 0.5F) / 16777216.0F;
}

inline Planes marks(size_t channels, size_t frames) {
    Planes planes(channels, std::vector<float>(frames));
    for (size_t c = 0; c < channels; ++c) {
        for (size_t i = 0; i < frames; ++i) { planes[c][i] = mark(c, i); }
    }
    return planes;
}

}  // namespace brindlehum::test
