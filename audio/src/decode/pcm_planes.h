// Splits the interleaved integers of a PCM file into planes of floats.
#pragma once

#include <cstdint>

namespace brindlehum {

// Writes `frames` frames to each plane, starting at its index `at`. Samples are of 2 or 3 bytes, low byte first, and
// full scale is 1. Two bytes must lie readable before `in`.
void splitPcm(const uint8_t* in, int sampleBytes, int channels, int frames, float* const* planes, int at);

}  // namespace brindlehum
