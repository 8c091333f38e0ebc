// PitchSums: how strong each pitch class was in about a second, finely enough to find out how the piece is tuned.
#pragma once

#include <array>

namespace brindlehum {

struct PitchSums {
    static constexpr int frames = 11;       // of SpectralFrames: 1.02 s
    static constexpr int perSemitone = 10;  // cells of 10 cents; the first starts at C in a tuning of A at 440 Hz
    static constexpr int cells = 12 * perSemitone;
    using Cells = std::array<float, cells>;

    Cells linear{};      // magnitudes of spectral peaks from 65 to 4000 Hz
    Cells compressed{};  // their square roots, from 100 to 1500 Hz
};

}  // namespace brindlehum
