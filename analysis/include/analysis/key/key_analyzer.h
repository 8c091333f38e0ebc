// KeyAnalyzer: determines one key, the spectral balance and words that describe them. Stateless, any thread.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "analysis/spectrum/spectral_frames.h"

namespace brindlehum {

struct KeyResult {
    std::string tonic = "C";     // sharps only
    std::string mode = "major";  // or "minor"
    double confidence = 0;       // 0 to 1, to two decimals
    // Share of the spectral magnitude in each of SpectralFrames::bandEdges; all 0 without a signal.
    std::array<double, 7> bands{};
    std::vector<std::string> spectralTags;
    std::vector<std::string> moodTags;  // no duplicates
};

namespace KeyAnalyzer {
// `bpmConfidence` is the score of the tempo; the tags include a word about the tempo only above 0.2.
KeyResult analyze(const SpectralFrames& frames, double bpm, double bpmConfidence);
}  // namespace KeyAnalyzer

}  // namespace brindlehum
