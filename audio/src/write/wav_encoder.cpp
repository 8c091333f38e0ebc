// Encodes tiles that stay in the first cache in two steps: vectors of samples to integers, then each to its bytes.
#include "write/wav_encoder.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace brindlehum {
namespace {

static_assert(std::endian::native == std::endian::little, "samples are stored as they stand in a register");

constexpr int64_t tileFrames = 64;

constexpr int64_t lanes = 8;
static_assert(tileFrames % lanes == 0);
using Floats = float __attribute__((vector_size(lanes * sizeof(float))));
using Doubles = double __attribute__((vector_size(lanes * sizeof(double))));
using Integers = int32_t __attribute__((vector_size(lanes * sizeof(int32_t))));

struct Scale {
    double factor;
    float most;  // what a larger sample, or one that isn't a number, counts as
};
constexpr Scale symmetric = {8388607.0, 1.0F};
constexpr Scale lossless = {8388608.0, 8388607.0F / 8388608.0F};

// Fills whole vectors of `out`. In double precision the product and the product plus a half are exact, so truncating
// that sum rounds the product, halves away from zero.
__attribute__((always_inline)) inline void quantise(const float* x, int64_t count, int32_t* out, Scale scale) {
    for (int64_t i = 0; i < count; i += lanes) {
        Floats samples{};
        if (count - i >= lanes) {
            std::memcpy(&samples, x + i, sizeof samples);
        } else {
            std::memcpy(&samples, x + i, size_t(count - i) * sizeof(float));
        }
        samples = samples < scale.most ? samples : Floats{} + scale.most;
        samples = samples > -1.0F ? samples : Floats{} - 1.0F;
        // Chosen among floats: the compiler has no vectors as wide as Doubles, and would choose one by one.
        const Floats half = samples < 0.0F ? Floats{} - 0.5F : Floats{} + 0.5F;
        const Doubles scaled = __builtin_convertvector(samples, Doubles) * scale.factor;
        const Integers rounded = __builtin_convertvector(scaled + __builtin_convertvector(half, Doubles), Integers);
        std::memcpy(out + i, &rounded, sizeof rounded);
    }
}

using Quantise = void (*)(const float*, int64_t, int32_t*, Scale);
void quantisePlain(const float* x, int64_t count, int32_t* out, Scale scale) {
    quantise(x, count, out, scale);
}

#if defined(__x86_64__)
__attribute__((target("avx2"))) void quantiseAvx2(const float* x, int64_t count, int32_t* out, Scale scale) {
    quantise(x, count, out, scale);
}
#endif

Quantise fastestQuantise() {
#if defined(__x86_64__)
    __builtin_cpu_init();
    if (__builtin_cpu_supports("avx2")) { return quantiseAvx2; }
#endif
    return quantisePlain;
}

}  // namespace

WavEncoder::WavEncoder(int channels, WavSamples samples)
    : channels_(channels), samples_(samples), tile_(size_t(channels) * size_t(tileFrames)) {}

void WavEncoder::encode(std::span<const float* const> planes, int64_t first, int64_t frames, uint8_t* out) {
    const size_t frameBytes = size_t(channels_) * size_t(bytesOf(samples_));
    const size_t given = std::min(planes.size(), size_t(channels_));
    if (given == 0) {
        std::memset(out, 0, size_t(frames) * frameBytes);
        return;
    }
    std::fill(tile_.begin() + std::ptrdiff_t(given) * tileFrames, tile_.end(), 0);
    for (int64_t done = 0; done < frames; done += tileFrames) {
        const int64_t count = std::min(tileFrames, frames - done);
        for (size_t c = 0; c < given; ++c) {
            takeRow(planes[c] + first + done, count, tile_.data() + c * size_t(tileFrames));
        }
        store(count, out);
        out += size_t(count) * frameBytes;
    }
}

void WavEncoder::takeRow(const float* samples, int64_t count, int32_t* row) const {
    static const Quantise quantiseRow = fastestQuantise();
    if (samples_ == WavSamples::float32) {
        std::memcpy(row, samples, size_t(count) * sizeof(float));
    } else {
        quantiseRow(samples, count, row, samples_ == WavSamples::pcm24 ? symmetric : lossless);
    }
}

// Writes four bytes at a time: of three-byte samples, the next one overwrites the fourth.
void WavEncoder::store(int64_t frames, uint8_t* out) const {
    const int sampleBytes = bytesOf(samples_);
    for (int64_t i = 0; i < frames; ++i) {
        for (int c = 0; c < channels_; ++c, out += sampleBytes) {
            std::memcpy(out, &tile_[size_t(c) * size_t(tileFrames) + size_t(i)], sizeof(int32_t));
        }
    }
}

}  // namespace brindlehum
