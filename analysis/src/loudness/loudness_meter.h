// LoudnessMeter: the loudness measurement of a signal that comes in blocks.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "analysis/loudness/loudness.h"
#include "loudness/k_powers.h"
#include "loudness/true_peak.h"

namespace brindlehum::Loudness {

class LoudnessMeter {
public:
    static constexpr size_t pieceFrames = 16384;  // a length of block that stays in the nearer caches

    // `sampleRate` in Hz, above 0; `source` as for `measure`.
    LoudnessMeter(double sampleRate, const std::optional<SourceFormat>& source, int channels);
    ~LoudnessMeter();
    // One plane per channel. Samples that aren't usable numbers count as silence.
    void push(const float* const* planes, int frames);
    LoudnessResult finish();

private:
    double sampleRate_;
    bool ambisonic_;
    std::vector<double> weights_;
    KPowers channelPowers_;
    std::vector<TruePeak> truePeaks_;  // one per measured channel
    std::vector<std::vector<float>> repaired_;
    std::vector<const float*> planes_;
    std::vector<double> powers_;  // weighted, of every full block, summed over the channels
    float samplePeak_ = 0;
    float truePeak_ = 0;
};

}  // namespace brindlehum::Loudness
