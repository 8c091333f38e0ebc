// Encodes float samples as the interleaved samples of a WAV file.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "audio/write/wav_form.h"

namespace brindlehum {

// Keeps a small work buffer between calls.
class WavEncoder {
public:
    WavEncoder(int channels, WavSamples samples);

    // Writes `frames` frames of samples, low byte first. Reads one pointer per channel, starting at frame `first`.
    // Missing channels are zeros; channels beyond the encoder's are ignored. Integers are rounded to nearest, halves
    // away from zero, and clamped: to -8388607 and 8388607, or to -8388608 for lossless ones; a sample that isn't a
    // number becomes 8388607. `out` needs room for the samples and one byte more.
    void encode(std::span<const float* const> planes, int64_t first, int64_t frames, uint8_t* out);

private:
    void takeRow(const float* samples, int64_t count, int32_t* row) const;
    void store(int64_t frames, uint8_t* out) const;

    int channels_;
    WavSamples samples_;
    std::vector<int32_t> tile_;  // one row per channel; floats as their bits
};

}  // namespace brindlehum
