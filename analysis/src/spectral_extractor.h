// SpectralExtractor: computes the spectral frames of a signal that comes in blocks.
#pragma once

#include <span>
#include <utility>
#include <vector>

#include "analysis/spectral_frames.h"
#include "dsp/signal_spectrum.h"
#include "frame_slicer.h"

namespace brindlehum {

class SpectralExtractor {
public:
    // Neighbouring bins [from, to) that feed the same cell of a row.
    struct Run {
        int cell, from, to;
    };

    SpectralExtractor();
    // Usable samples at Signal::analysisRate.
    void push(std::span<const float> block);
    SpectralFrames finish() { return std::move(frames_); }

private:
    FrameSlicer slicer_;  // a frame that ends with the signal isn't used
    HannSpectrum spectrum_;
    std::vector<float> magnitudes_;
    std::vector<Run> classRuns_, bandRuns_;
    SpectralFrames frames_;
};

}  // namespace brindlehum
