// PitchFold: makes PitchSums of spectra, frame by frame.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "analysis/spectrum/pitch_sums.h"

namespace brindlehum {

class PitchFold {
public:
    PitchFold();
    // The magnitudes of the next frame of SpectralFrames.
    void add(std::span<const float> magnitudes);
    std::vector<PitchSums> finish();

private:
    std::vector<PitchSums> out_;
    int frames_ = 0;              // in the last of `out_`
    std::vector<uint8_t> cells_;  // the cell of each sixteenth of a bin
};

}  // namespace brindlehum
