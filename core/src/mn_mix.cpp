// The matrix kernel: gathers the non-zero taps of a row, or of a group of similar rows, and runs the row kernel on
// them, tile by tile.
#include "core/mn_mix.h"

#include <algorithm>
#include <array>
#include <atomic>

#include "mix_kernel.h"

namespace brindlehum::core {
namespace {

// Taps in one pass over an output; a row with more taps takes several passes.
constexpr int32_t maxTaps = 64;

// A tile is short enough that all its inputs stay in the second-level cache while the rows read them again and again,
// and no shorter than that, since every tile gathers the taps again.
int32_t tileFrames(int32_t channels) {
    constexpr int32_t samples = 16384;
    constexpr int32_t stretch = 64;
    return std::clamp(samples / std::max(channels, 1) / stretch * stretch, stretch, 16 * stretch);
}

void chooseRows(const Tap* taps, int32_t count, int32_t rows, const float* ramp, int32_t frames, float* const* outs);

// Starts as the choosing function, so that the first caller on any thread neither waits nor finds null.
constinit std::atomic<MixRows> mixRows{chooseRows};

void chooseRows(const Tap* taps, int32_t count, int32_t rows, const float* ramp, int32_t frames, float* const* outs) {
    const MixRows fastest = fastestMixRows();
    mixRows.store(fastest, std::memory_order_relaxed);
    fastest(taps, count, rows, ramp, frames, outs);
}

// Whether a group of rows skips the same inputs, so that they can be added side by side.
bool skipAlike(const float* gains, int32_t channels) {
    bool alike = true;
    for (int32_t r = 1; r < rowGroup; ++r) {
        const float* other = gains + int64_t(r) * channels;
        for (int32_t c = 0; c < channels; ++c) { alike &= (gains[c] == 0) == (other[c] == 0); }
    }
    return alike;
}

// How many rows can be added at once from the first one on: a whole group or one.
int32_t rowsAtOnce(const float* gains, int32_t channels, int32_t rowsLeft, float* const* outputs, const float* ramp) {
    if (ramp != nullptr || rowsLeft < rowGroup) { return 1; }
    for (int32_t r = 0; r < rowGroup; ++r) {
        if (outputs[r] == nullptr || std::count(outputs, outputs + rowGroup, outputs[r]) > 1) { return 1; }
    }
    return skipAlike(gains, channels) ? rowGroup : 1;
}

struct Stretch {
    int32_t start, frames;
};

void accumulate(const float* gains, int32_t rows, const float* const* inputs, int32_t channels, float* const* outputs,
                const float* ramp, Stretch stretch) {
    std::array<Tap, maxTaps> taps;
    std::array<float*, rowGroup> outs{};
    for (int32_t r = 0; r < rows; ++r) { outs[size_t(r)] = outputs[r] + stretch.start; }
    const float* fade = ramp != nullptr ? ramp + stretch.start : nullptr;
    const MixRows add = mixRows.load(std::memory_order_relaxed);
    int32_t count = 0;
    for (int32_t c = 0; c < channels; ++c) {
        if (gains[c] != 0) {
            Tap& tap = taps[size_t(count++)];
            for (int32_t r = 0; r < rows; ++r) { tap.gains[size_t(r)] = gains[int64_t(r) * channels + c]; }
            tap.input = inputs[c] + stretch.start;
        }
        if (count == maxTaps || (c + 1 == channels && count > 0)) {
            add(taps.data(), count, rows, fade, stretch.frames, outs.data());
            count = 0;
        }
    }
}

}  // namespace
}  // namespace brindlehum::core

extern "C" void mn_mix_accumulate(const mn_mix_config* config, const float* const* inputs, int32_t frames,
                                  float* const* outputs, int32_t out_count, const float* ramp) noexcept {
    using namespace brindlehum::core;
    if (config->matrix == nullptr) { return; }
    const int32_t rows = std::min(config->rows, out_count);
    const int32_t channels = config->in_channels;
    const int32_t tile = tileFrames(channels);
    for (int32_t start = 0; start < frames; start += tile) {
        const int32_t n = std::min(tile, frames - start);
        for (int32_t r = 0, step = 1; r < rows; r += step) {
            step = 1;
            if (outputs[r] == nullptr) { continue; }
            const float* gains = config->matrix + int64_t(r) * channels;
            step = rowsAtOnce(gains, channels, rows - r, outputs + r, ramp);
            accumulate(gains, step, inputs, channels, outputs + r, ramp, {start, n});
        }
    }
}
