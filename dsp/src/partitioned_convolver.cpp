// PartitionedConvolver: overlap-save over a frequency-domain delay line of every input.
#include "dsp/partitioned_convolver.h"

#include <algorithm>
#include <cstring>

#include "dsp/real_fft.h"
#include "spectrum_shape.h"

namespace brindlehum {

using Spectrum = std::complex<float>*;

// Every input has a window of two partitions, the last whole one and the one in hand (zero where nothing has come
// yet), and the spectra of its last windows, one a partition of the longest filter. All inputs are summed in the
// frequency domain, so each output takes one inverse transform, or two while a filter changes.
struct PartitionedConvolver::State {
    State(int in, int out, int frames, int taps)
        : inputs(in),
          outputs(out),
          partition(frames),
          depth(std::max(1, (taps + frames - 1) / frames)),
          bins(paddedBins(frames)),
          fft(2 * frames),
          sum(fastestSpectralSum()),
          windows(makeAligned<float>(size_t(in) * 2 * size_t(frames))),
          spectra(makeAligned<std::complex<float>>(size_t(in) * size_t(depth) * size_t(bins))),
          silent(size_t(in) * size_t(depth), 1),
          lastSounds(size_t(in), 0),
          sounds(size_t(in), 0),
          common(makeAligned<std::complex<float>>(size_t(bins))),
          total(makeAligned<std::complex<float>>(size_t(bins))),
          time(makeAligned<float>(2 * size_t(frames))),
          timeBefore(makeAligned<float>(2 * size_t(frames))) {
        for (auto* terms : {&steady, &after, &before}) terms->reserve(size_t(in) * size_t(depth));
    }

    float* window(int input) { return windows.get() + int64_t(input) * 2 * partition; }
    // The spectrum of an input's window `age` partitions ago.
    int slotOf(int input, int age) const { return input * depth + (head - age + depth) % depth; }
    Spectrum spectrum(int slot) { return spectra.get() + int64_t(slot) * bins; }

    void take(int input, const float* samples, int frames) noexcept;
    void gather(std::vector<SpectralTerm>& terms, int input, const ConvolverFilter* filter, int output) noexcept;
    bool transformBack(const std::vector<SpectralTerm>& terms, const std::complex<float>* base, float* to) noexcept;
    void shift() noexcept;

    int inputs, outputs;
    int partition;   // frames
    int depth;       // partitions of the longest filter
    int bins;        // padded
    int filled = 0;  // frames of the partition in hand
    int head = 0;    // its place in the delay lines
    RealFFT fft;
    SpectralSum sum;
    AlignedArray<float> windows;
    AlignedArray<std::complex<float>> spectra;
    std::vector<uint8_t> silent;              // which spectra are all zero, and not even stored
    std::vector<uint8_t> lastSounds, sounds;  // whether an input's last and present partition hold anything but zeros
    std::vector<SpectralTerm> steady, after, before;
    AlignedArray<std::complex<float>> common, total;
    AlignedArray<float> time, timeBefore;
};

void PartitionedConvolver::State::take(int input, const float* samples, int frames) noexcept {
    const auto i = size_t(input);
    const bool hasSound = std::any_of(samples, samples + frames, [](float x) { return x != 0; });
    if (hasSound) std::memcpy(window(input) + partition + filled, samples, sizeof(float) * size_t(frames));
    if (hasSound) sounds[i] = 1;
    const int slot = slotOf(input, 0);
    silent[size_t(slot)] = !(sounds[i] | lastSounds[i]);
    if (!silent[size_t(slot)]) fft.forward(window(input), spectrum(slot));
}

void PartitionedConvolver::State::gather(std::vector<SpectralTerm>& terms, int input, const ConvolverFilter* filter,
                                         int output) noexcept {
    if (filter == nullptr) return;
    const int parts = std::min(depth, filter->partitions());
    for (int part = 0; part < parts; ++part) {
        const int slot = slotOf(input, part);
        if (!silent[size_t(slot)]) terms.push_back({spectrum(slot), filter->spectrum(output, part)});
    }
}

// False when there is nothing to sum; then `to` is as it was.
bool PartitionedConvolver::State::transformBack(const std::vector<SpectralTerm>& terms, const std::complex<float>* base,
                                                float* to) noexcept {
    if (terms.empty() && base == nullptr) return false;
    sum(terms.data(), int(terms.size()), base, bins, total.get());
    fft.inverse(total.get(), to);
    return true;
}

// The partition in hand is whole: it becomes the last one.
void PartitionedConvolver::State::shift() noexcept {
    for (int input = 0; input < inputs; ++input) {
        float* w = window(input);
        if (lastSounds[size_t(input)] | sounds[size_t(input)]) {
            std::memcpy(w, w + partition, sizeof(float) * size_t(partition));
            std::memset(w + partition, 0, sizeof(float) * size_t(partition));
        }
    }
    lastSounds.swap(sounds);
    std::fill(sounds.begin(), sounds.end(), uint8_t{0});
    head = (head + 1) % depth;
    filled = 0;
}

PartitionedConvolver::PartitionedConvolver(int inputs, int outputs, int partition, int maxTaps) {
    checkPartition(partition);
    state_ = std::make_unique<State>(inputs, outputs, partition, maxTaps);
}
PartitionedConvolver::~PartitionedConvolver() = default;

void PartitionedConvolver::reset() noexcept {
    State& s = *state_;
    std::memset(s.windows.get(), 0, sizeof(float) * size_t(s.inputs) * 2 * size_t(s.partition));
    std::fill(s.silent.begin(), s.silent.end(), uint8_t{1});
    std::fill(s.lastSounds.begin(), s.lastSounds.end(), uint8_t{0});
    std::fill(s.sounds.begin(), s.sounds.end(), uint8_t{0});
    s.filled = 0;
    s.head = 0;
}

void PartitionedConvolver::process(const float* const* inputs, const ConvolverFilter* const* filters,
                                   const ConvolverFilter* const* previous, float* const* outputs, int frames) noexcept {
    State& s = *state_;
    int n = 0;
    for (int done = 0; done < frames; done += n) {
        n = std::min(s.partition - s.filled, frames - done);
        for (int i = 0; i < s.inputs; ++i) s.take(i, inputs[i] + done, n);
        for (int o = 0; o < s.outputs; ++o) {
            s.steady.clear();
            s.after.clear();
            s.before.clear();
            for (int i = 0; i < s.inputs; ++i) {
                const bool changed = previous != nullptr && previous[i] != filters[i];
                s.gather(changed ? s.after : s.steady, i, filters[i], o);
                if (changed) s.gather(s.before, i, previous[i], o);
            }
            float* out = outputs[o] + done;
            const float* fresh = s.time.get() + s.partition + s.filled;
            const float* old = s.timeBefore.get() + s.partition + s.filled;
            if (s.after.empty() && s.before.empty()) {
                if (s.transformBack(s.steady, nullptr, s.time.get())) {
                    std::memcpy(out, fresh, sizeof(float) * size_t(n));
                } else {
                    std::memset(out, 0, sizeof(float) * size_t(n));
                }
                continue;
            }
            s.sum(s.steady.data(), int(s.steady.size()), nullptr, s.bins, s.common.get());
            s.transformBack(s.before, s.common.get(), s.timeBefore.get());
            s.transformBack(s.after, s.common.get(), s.time.get());
            for (int i = 0; i < n; ++i) {
                const float up = float(done + i + 1) / float(frames);
                out[i] = old[i] + (fresh[i] - old[i]) * up;
            }
        }
        s.filled += n;
        if (s.filled == s.partition) s.shift();
    }
}

}  // namespace brindlehum
