// HarmonyFold: makes HarmonyFrames of spectra, frame by frame.
#pragma once

#include <span>
#include <vector>

#include "analysis/spectrum/harmony_frames.h"

namespace brindlehum {

class HarmonyFold {
public:
    // The magnitudes of the next frame, as HannSpectrum gives them.
    void add(std::span<const float> magnitudes);
    HarmonyFrames finish();

private:
    HarmonyFrames out_;
    std::vector<float> roots_;
    double power_ = 0;  // summed over frames and bins
    size_t bins_ = 0;   // of all frames
};

}  // namespace brindlehum
