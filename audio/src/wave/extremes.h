// The smallest and the largest sample of a run, for one bucket of a waveform.
#pragma once

#include <cstdint>

namespace brindlehum {

struct Extremes {
    float min = 0;
    float max = 0;
};

// Samples that aren't numbers are passed over; both are 0 when nothing is left. Wait-free.
Extremes extremes(const float* samples, int64_t count) noexcept;

}  // namespace brindlehum
