// The smallest and the largest sample in a run, for one bucket of a waveform.
#pragma once

#include <cstdint>

namespace brindlehum {

struct Extremes {
    float min = 0;
    float max = 0;
};

// Ignores samples that aren't numbers; both extremes are 0 when no sample is left. Wait-free.
Extremes extremes(const float* samples, int64_t count) noexcept;

}  // namespace brindlehum
