// Splits interleaved samples into planes.
#pragma once

#include <cstddef>

namespace brindlehum {

// Writes `frames` frames to each plane, starting at its index `at`.
inline void deinterleave(const float* in, int channels, int frames, float* const* planes, int at) {
    if (channels == 2) {  // both at once: the compiler turns this single pass into shuffles
        float* left = planes[0] + at;
        float* right = planes[1] + at;
        for (int i = 0; i < frames; ++i) {
            left[i] = in[2 * i];
            right[i] = in[2 * i + 1];
        }
        return;
    }
    for (int c = 0; c < channels; ++c) {
        const float* from = in + c;
        float* to = planes[c] + at;
        for (int i = 0; i < frames; ++i) { to[i] = from[ptrdiff_t(i) * channels]; }
    }
}

}  // namespace brindlehum
