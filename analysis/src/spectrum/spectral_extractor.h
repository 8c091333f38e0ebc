// SpectralExtractor: computes the spectral and the harmony frames of a signal that comes in blocks.
#pragma once

#include <span>
#include <utility>
#include <vector>

#include "analysis/spectrum/spectral_frames.h"
#include "dsp/signal_spectrum.h"
#include "signal/frame_slicer.h"
#include "spectrum/harmony_fold.h"
#include "spectrum/pitch_fold.h"

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
    SpectralFrames finish();
    HarmonyFrames finishHarmony() { return harmony_.finish(); }

private:
    FrameSlicer slicer_;  // a frame that ends with the signal isn't used
    HannSpectrum spectrum_;
    std::vector<float> magnitudes_;
    std::vector<Run> classRuns_, bandRuns_;
    SpectralFrames frames_;  // of every second frame
    HarmonyFold harmony_;
    PitchFold pitches_;
    bool second_ = false;
};

}  // namespace brindlehum
