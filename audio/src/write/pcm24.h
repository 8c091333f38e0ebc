// Encodes float samples as interleaved 24-bit integers.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace brindlehum {

// Keeps a small work buffer between calls.
class Pcm24Encoder {
public:
    explicit Pcm24Encoder(int channels);

    // Writes `frames` frames of three-byte samples, low byte first. Reads one pointer per channel, starting at frame
    // `first`. Missing channels are zeros; channels beyond the encoder's are ignored. x becomes x 8388607 rounded to
    // nearest, halves away from zero, clamped to -8388607 and 8388607; a sample that isn't a number becomes 8388607.
    // `out` needs room for the samples and one byte more.
    void encode(std::span<const float* const> planes, int64_t first, int64_t frames, uint8_t* out);

private:
    int channels_;
    std::vector<int32_t> tile_;  // one row per channel
};

}  // namespace brindlehum
