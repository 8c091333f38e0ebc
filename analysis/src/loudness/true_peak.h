// TruePeak: the peak between the samples of one channel that comes in blocks.
#pragma once

#include <span>
#include <vector>

#include "loudness/loudness_kernels.h"

namespace brindlehum::Loudness {

class TruePeak {
public:
    explicit TruePeak(const Kernels& kernels = fastestKernels());
    // Both return the larger of `floor` and the linear peak. Places that can't exceed `floor` are skipped.
    float push(std::span<const float> block, float floor);
    float finish(float floor);

private:
    float measure(float floor);

    const Kernels* kernels_;
    // Whole blocks of samples that aren't measured to their end yet, after the block before them: zeros at the start.
    std::vector<float> held_;
    std::vector<float> largest_;  // work space
};

}  // namespace brindlehum::Loudness
