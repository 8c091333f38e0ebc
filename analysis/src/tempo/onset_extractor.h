// OnsetExtractor: computes the onset envelopes of a signal that comes in blocks.
#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <vector>

#include "analysis/tempo/onset_time.h"
#include "analysis/tempo/tempo_analyzer.h"
#include "dsp/signal_spectrum.h"
#include "signal/frame_slicer.h"

namespace brindlehum::TempoAnalyzer {

class OnsetExtractor {
public:
    static constexpr int usedBins = OnsetTime::frameSize / 2;  // the bin at 11 025 Hz is left out

    OnsetExtractor();
    // Usable samples at Signal::analysisRate.
    void push(std::span<const float> block);
    // Both envelopes are empty under 1792 samples.
    Envelopes finish();

private:
    static constexpr size_t fewestFrames = 3;

    FrameSlicer slicer_;  // the last frame that fits isn't used, so that every frame has another after it
    HannSpectrum spectrum_;
    std::vector<float> magnitudes_;
    std::array<std::array<float, usedBins>, 2> logs_{};  // of the last two frames, in turn
    size_t frames_ = 0;
    Envelopes raw_;
};

}  // namespace brindlehum::TempoAnalyzer
