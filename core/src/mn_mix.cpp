// The matrix kernel: gathers the sounding taps of a row and hands them to the row kernel, tile by tile.
#include "core/mn_mix.h"

#include <algorithm>
#include <array>
#include <atomic>

#include "mix_kernel.h"

namespace brindlehum::core {
namespace {

// Taps of one pass over an output; a row with more of them takes several passes.
constexpr int32_t maxTaps = 64;
// Frames of one tile: 32 input planes of it fill 32 KiB, the first-level cache of common processors.
constexpr int32_t tileFrames = 256;

void chooseRow(const Tap* taps, int32_t count, const float* ramp, int32_t frames, float* out);

// Starts as the choice itself, so that whoever comes first, on any thread, neither waits nor finds null.
constinit std::atomic<MixRow> mixRow{chooseRow};

void chooseRow(const Tap* taps, int32_t count, const float* ramp, int32_t frames, float* out) {
    const MixRow fastest = fastestMixRow();
    mixRow.store(fastest, std::memory_order_relaxed);
    fastest(taps, count, ramp, frames, out);
}

void accumulateRow(const float* gains, const float* const* inputs, int32_t channels, int32_t start, const float* ramp,
                   int32_t frames, float* out) {
    std::array<Tap, maxTaps> taps;
    const MixRow row = mixRow.load(std::memory_order_relaxed);
    const float* tileRamp = ramp != nullptr ? ramp + start : nullptr;
    int32_t count = 0;
    for (int32_t c = 0; c < channels; ++c) {
        if (gains[c] != 0) taps[static_cast<size_t>(count++)] = {gains[c], inputs[c] + start};
        if (count == maxTaps || (c + 1 == channels && count > 0)) {
            row(taps.data(), count, tileRamp, frames, out + start);
            count = 0;
        }
    }
}

}  // namespace
}  // namespace brindlehum::core

extern "C" void mn_mix_accumulate(const mn_mix_config* config, const float* const* inputs, int32_t frames,
                                  float* const* outputs, int32_t out_count, const float* ramp) noexcept {
    using namespace brindlehum::core;
    if (config->matrix == nullptr) return;
    const int32_t rows = std::min(config->rows, out_count);
    const int32_t channels = config->in_channels;
    for (int32_t start = 0; start < frames; start += tileFrames) {
        const int32_t n = std::min(tileFrames, frames - start);
        for (int32_t r = 0; r < rows; ++r) {
            if (outputs[r] == nullptr) continue;
            accumulateRow(config->matrix + int64_t(r) * channels, inputs, channels, start, ramp, n, outputs[r]);
        }
    }
}
