// Helpers that the sources of EditOps share.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "dsp/edit_ops.h"

namespace brindlehum::EditOps::detail {

// Whole frames in `seconds`; the fraction is cut off.
inline int64_t framesIn(double sr, double seconds) {
    return int64_t(sr * seconds);
}

float peak(std::span<const float> x);
void scale(std::span<float> x, float gain);

// A bank of feedback delay lines, applied to one channel in place. Each line is max(ceil(sr x ms / 1000), 1) samples
// long and starts empty; `delaysMs` isn't empty. The output is (1 - mix) x plus `mix` times the mean of the lines'
// outputs; each line is fed x plus `feedback` times its own output.
void feedbackDelay(std::vector<float>& channel, std::span<const double> delaysMs, double sr, float feedback, float mix);

}  // namespace brindlehum::EditOps::detail
