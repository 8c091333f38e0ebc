// Gathers a channel's samples into the upper bytes of whole integers, then turns those into floats, vector by vector.
#include "decode/pcm_planes.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstring>

namespace brindlehum {
namespace {

static_assert(std::endian::native == std::endian::little, "samples are loaded as they stand in a register");

constexpr int tileFrames = 64;

// A load of four bytes ends with the sample's; those before it are masked out.
template <int SampleBytes>
void split(const uint8_t* in, int channels, int frames, float* const* planes, int at) {
    constexpr uint32_t mask = ~uint32_t(0) << (8 * (4 - SampleBytes));
    const auto frameBytes = ptrdiff_t(channels) * SampleBytes;
    for (int done = 0; done < frames; done += tileFrames) {
        const int count = std::min(tileFrames, frames - done);
        for (int c = 0; c < channels; ++c) {
            const uint8_t* from = in + done * frameBytes + ptrdiff_t(c) * SampleBytes - (4 - SampleBytes);
            uint32_t row[tileFrames];
            for (int i = 0; i < count; ++i) { std::memcpy(row + i, from + i * frameBytes, sizeof(uint32_t)); }
            float* to = planes[c] + at + done;
            for (int i = 0; i < count; ++i) { to[i] = float(int32_t(row[i] & mask)) * 0x1p-31F; }
        }
    }
}

}  // namespace

void splitPcm(const uint8_t* in, int sampleBytes, int channels, int frames, float* const* planes, int at) {
    if (sampleBytes == 2) {
        split<2>(in, channels, frames, planes, at);
    } else {
        split<3>(in, channels, frames, planes, at);
    }
}

}  // namespace brindlehum
