// SpectrumTile: a piece of a lane's spectrogram, and what it was made from.
#pragma once

#include <compare>
#include <cstdint>
#include <functional>
#include <vector>

#include "dsp/spectrogram.h"
#include "ui/picture/spectrum_axis.h"

namespace brindlehum {

// Columns and rows of levels from 0, silence, to 255, full scale; rows from the top.
struct SpectrumTile {
    static constexpr int columns = 128;
    static constexpr float lowestDb = -96;  // the level 0

    struct Place {
        int channel = 0;
        int rows = 0;
        int64_t hop = 0;    // frames of a column
        int64_t index = 0;  // of the tile in its lane
        bool isLinear = false;
        auto operator<=>(const Place&) const = default;
        int64_t first() const { return index * columns * hop; }  // frame
    };
    Place place;
    std::vector<uint8_t> levels;  // empty when it was stopped
    Track under;                  // the samples that it shows, and those that its windows reach
    uint64_t revision = 0;        // the latest one that it is known to fit
    uint64_t used = 0;

    // Whether the samples under it are the same still.
    bool fits(const Sound& sound) const;
    static SpectrumTile make(const Sound& sound, const Place& place, const SpectrumAxis& axis, Spectrogram& spectrogram,
                             const std::function<bool()>& stop);
};

// The frames of a column for this zoom: a power of two, of which a pixel shows one to two.
int64_t spectrumHop(double framesPerPixel);

}  // namespace brindlehum
