// The upmix processor: its memory, its plan, and samples in and out around the hops.
#include "core/mn_upmix.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>
#include <numbers>

#include "upmix_state.h"

namespace {

using namespace brindlehum::core;

constexpr double smoothingSeconds = 0.02;

// Hands out arrays from one block. Counts only while it has none.
class Layout {
public:
    explicit Layout(std::byte* memory) : memory_(memory) {}
    template <class T>
    void take(T*& list, int32_t count) {
        constexpr size_t line = 64;
        list = memory_ != nullptr ? reinterpret_cast<T*>(memory_ + bytes_) : nullptr;
        bytes_ += (sizeof(T) * size_t(count) + line - 1) / line * line;
    }
    void take(Spectrum& spectrum, int32_t bins) {
        take(spectrum.re, bins);
        take(spectrum.im, bins);
    }
    void take(PairPowers& powers, int32_t bins) {
        take(powers.left, bins);
        take(powers.right, bins);
        take(powers.cross, bins);
    }
    size_t bytes() const { return bytes_; }

private:
    std::byte* memory_;
    size_t bytes_ = 0;
};

void takeScratch(mn_upmix& u, Layout& from) {
    from.take(u.smoothed, u.bins);
    from.take(u.sums.left, u.bins + 1);
    from.take(u.sums.right, u.bins + 1);
    from.take(u.sums.cross, u.bins + 1);
    from.take(u.split.cosine, u.bins);
    from.take(u.split.sine, u.bins);
    from.take(u.split.step, u.bins);
    from.take(u.split.part, u.bins);
    from.take(u.split.share, u.bins);
    for (Spectrum* s : {&u.split.direct, &u.split.ambLeft, &u.split.ambRight, &u.spread, &u.foldLeft, &u.foldRight}) {
        from.take(*s, u.bins);
    }
    from.take(u.spectrum, u.size + 2);
    from.take(u.joined, u.size);
    from.take(u.time, u.size);
    from.take(u.other, u.size);
}

// Lays all arrays out in `memory`, or finds their size when it is null.
size_t layOut(mn_upmix& u, std::byte* memory) {
    Layout from(memory);
    from.take(u.window, u.size);
    from.take(u.synthesis, u.size);
    from.take(u.bias, u.bins);
    takeScratch(u, from);
    for (PairPowers& averages : u.averages) { from.take(averages, u.bins); }
    for (int32_t i = 0; i < u.ins; ++i) {
        from.take(u.in[size_t(i)].time, u.size);
        from.take(u.in[size_t(i)].spectrum, u.bins);
    }
    for (int32_t i = 0; i < u.outs; ++i) {
        UpmixOutput& out = u.out[size_t(i)];
        from.take(out.spectrum, u.bins);
        from.take(out.sum, u.size);
        from.take(out.block, u.hop);
        from.take(out.history, delayRingFrames);
    }
    return from.bytes();
}

// The squared windows of the four hops over a sample add up to 2, and both transforms multiply by N.
void fillTables(mn_upmix& u, double sampleRate) {
    u.keep = float(std::exp(-u.hop / ((sampleRate > 0 ? sampleRate : 48000) * smoothingSeconds)));
    for (int32_t n = 0; n < u.size; ++n) {
        const double w = std::sqrt(0.5 - 0.5 * std::cos(2 * std::numbers::pi * n / u.size));
        u.window[n] = float(w);
        u.synthesis[n] = float(w / (2.0 * u.size));
    }
    for (int32_t k = 0; k < u.bins; ++k) { u.bias[k] = chanceCorrelation(k); }
}

bool fits(int32_t ins, int32_t outs, int32_t size) {
    return ins >= 1 && ins <= mn_upmix_max_in && outs >= 1 && outs <= mn_upmix_max_out && size >= 256 && size <= 8192 &&
           std::has_single_bit(uint32_t(size));
}

bool allocate(mn_upmix& u) {
    u.fft = mn_fft_create(u.size);
    u.pair = mn_fft_pair_create(u.size);
    u.directPeaks = mn_peaks_create(u.outs);
    u.ambiencePeaks = mn_peaks_create(u.outs);
    const size_t bytes = layOut(u, nullptr);
    u.memory = static_cast<std::byte*>(std::aligned_alloc(64, bytes));
    const bool hasPeaks = u.directPeaks != nullptr && u.ambiencePeaks != nullptr;
    if (u.fft == nullptr || u.pair == nullptr || u.memory == nullptr || !hasPeaks) { return false; }
    std::memset(u.memory, 0, bytes);
    layOut(u, u.memory);
    return true;
}

// A processor's squares and their ratios stay finite for samples up to the greatest; the least is some -500 dB.
void copyClean(const float* from, float* to, int32_t count) {
    constexpr float greatest = 1e15F;
    constexpr float least = 1e-25F;
    for (int32_t i = 0; i < count; ++i) {
        const float size = std::fabs(from[i]);
        const float limited = size > greatest ? std::copysign(greatest, from[i]) : from[i];
        to[i] = size >= least && size <= std::numeric_limits<float>::max() ? limited : 0;
    }
}

}  // namespace

extern "C" {

mn_upmix* mn_upmix_create(int32_t in_channels, int32_t out_channels, int32_t size, double sample_rate) noexcept {
    if (!fits(in_channels, out_channels, size)) { return nullptr; }
    auto* u = new (std::nothrow) mn_upmix{};
    if (u == nullptr) { return nullptr; }
    u->ins = in_channels;
    u->outs = out_channels;
    u->size = size;
    u->hop = size / 4;
    u->bins = size / 2 + 1;
    u->kernels = &fastestUpmixKernels();
    if (!allocate(*u)) {
        mn_upmix_destroy(u);
        return nullptr;
    }
    fillTables(*u, sample_rate);
    return u;
}

void mn_upmix_destroy(mn_upmix* upmix) noexcept {
    if (upmix == nullptr) { return; }
    mn_fft_destroy(upmix->fft);
    mn_fft_pair_destroy(upmix->pair);
    mn_peaks_destroy(upmix->directPeaks);
    mn_peaks_destroy(upmix->ambiencePeaks);
    std::free(upmix->memory);
    delete upmix;
}

int32_t mn_upmix_bins(const mn_upmix* upmix) noexcept {
    return upmix->bins;
}
int32_t mn_upmix_latency(const mn_upmix* upmix) noexcept {
    return upmix->size;
}
int32_t mn_upmix_tail(const mn_upmix* upmix) noexcept {
    const mn_upmix_plan* plan = upmix->plan.load(std::memory_order_acquire);
    int32_t longest = 0;
    for (int32_t i = 0; i < upmix->outs; ++i) {
        longest = std::max({longest, upmix->out[size_t(i)].delay, plannedDelay(plan, i)});
    }
    return 2 * upmix->size + longest;
}
int32_t mn_upmix_in_channels(const mn_upmix* upmix) noexcept {
    return upmix->ins;
}
int32_t mn_upmix_out_channels(const mn_upmix* upmix) noexcept {
    return upmix->outs;
}

void mn_upmix_set_plan(mn_upmix* upmix, const mn_upmix_plan* plan) noexcept {
    upmix->plan.exchange(plan);
}

void mn_upmix_measure(mn_upmix* upmix, int32_t on) noexcept {
    upmix->measures.store(on, std::memory_order_relaxed);
}
float mn_upmix_take_direct(mn_upmix* upmix, int32_t output) noexcept {
    return mn_peaks_take(upmix->directPeaks, output);
}
float mn_upmix_take_ambience(mn_upmix* upmix, int32_t output) noexcept {
    return mn_peaks_take(upmix->ambiencePeaks, output);
}

void mn_upmix_reset(mn_upmix* upmix) noexcept {
    const auto zero = [](float* list, int32_t count) { std::fill_n(list, count, 0.0F); };
    for (PairPowers& averages : upmix->averages) {
        zero(averages.left, upmix->bins);
        zero(averages.right, upmix->bins);
        zero(averages.cross, upmix->bins);
    }
    for (int32_t i = 0; i < upmix->ins; ++i) { zero(upmix->in[size_t(i)].time, upmix->size); }
    const mn_upmix_plan* plan = upmix->plan.load(std::memory_order_acquire);
    for (int32_t i = 0; i < upmix->outs; ++i) {
        UpmixOutput& out = upmix->out[size_t(i)];
        zero(out.sum, upmix->size);
        zero(out.block, upmix->hop);
        zero(out.history, delayRingFrames);
        out.delay = plannedDelay(plan, i);
    }
    upmix->position = 0;
    upmix->writeIndex = 0;
}

void mn_upmix_process(mn_upmix* upmix, const float* const* inputs, int32_t frames, float* const* outputs) noexcept {
    mn_upmix& u = *upmix;
    for (int32_t done = 0; done < frames;) {
        const int32_t count = std::min(u.hop - u.position, frames - done);
        for (int32_t c = 0; c < u.ins; ++c) {
            float* to = u.in[size_t(c)].time + u.size - u.hop + u.position;
            if (inputs != nullptr && inputs[c] != nullptr) {
                copyClean(inputs[c] + done, to, count);
            } else {
                std::fill_n(to, count, 0.0F);
            }
        }
        for (int32_t i = 0; outputs != nullptr && i < u.outs; ++i) {
            if (outputs[i] != nullptr) { std::copy_n(u.out[size_t(i)].block + u.position, count, outputs[i] + done); }
        }
        done += count;
        u.position += count;
        if (u.position == u.hop) {
            runUpmixHop(u);
            u.position = 0;
        }
    }
}

}  // extern "C"
