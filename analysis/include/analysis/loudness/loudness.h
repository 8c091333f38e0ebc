// Loudness: integrated, momentary and short-term loudness and peaks by ITU-R BS.1770-4. Stateless, any thread.
#pragma once

#include <limits>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "audio/speakers/source_format.h"

namespace brindlehum {

struct LoudnessResult {
    static constexpr double floor = -70;  // LUFS, of the three loudness values
    double integrated = floor;            // LUFS, gated
    double momentaryMax = floor;          // LUFS, largest 400 ms value
    double shortTermMax = floor;          // LUFS, largest 3 s value
    // Minus infinity for digital silence.
    double samplePeak = -std::numeric_limits<double>::infinity();  // dBFS
    double truePeak = -std::numeric_limits<double>::infinity();    // dBTP, never below samplePeak
    std::optional<std::string> note;                               // a remark for the user
};

namespace Loudness {

// Measures channels of equal length at their own rate (Hz, above 0). `source` names the speakers for the channel
// weights; of an Ambisonic source only W is measured. Samples that aren't usable numbers count as silence.
LoudnessResult measure(const std::vector<std::vector<float>>& channels, double sampleRate,
                       const std::optional<SourceFormat>& source);

// A second-order section with a0 = 1.
struct Biquad {
    double b0 = 1, b1 = 0, b2 = 0, a1 = 0, a2 = 0;
};
// The shelf and the high-pass of the K weighting at any rate.
std::pair<Biquad, Biquad> kWeighting(double sampleRate);

// One weight per channel: 0 for the LFE, 1.41 for side speakers, else 1.
std::vector<double> weights(const std::optional<SourceFormat>& source, int channels);

// Linear peak of one channel, oversampled 4 times.
float truePeak(std::span<const float> x);

}  // namespace Loudness
}  // namespace brindlehum
