// HarmonyFrames: what sounds at a time, in few numbers: the pitch classes, and the strength of the low end.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "dsp/signal.h"

namespace brindlehum {

// One row per frame of 4096 samples, 1024 apart, at Signal::analysisRate: every second one is of SpectralFrames.
struct HarmonyFrames {
    static constexpr int frameSize = 4096;
    static constexpr int hop = 1024;
    using Chroma = std::array<float, 12>;  // by pitch class, 0 is C

    std::vector<Chroma> chroma;    // sums of the square roots of magnitudes from 130 to 2500 Hz
    std::vector<float> lowEnergy;  // from 30 to 150 Hz, unscaled
    double meanPower = 0;          // of one bin, over all frames and bins

    HarmonyFrames() = default;
    explicit HarmonyFrames(std::span<const float> mono22k);

    // The fractional index of the row that is centred at `t` seconds.
    static double indexAt(double t) { return (t * Signal::analysisRate - frameSize / 2.0) / hop; }
};

}  // namespace brindlehum
