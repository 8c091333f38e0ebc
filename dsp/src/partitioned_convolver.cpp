// PartitionedConvolver: overlap-save over a frequency-domain delay line of every input.
#include "dsp/partitioned_convolver.h"

#include <algorithm>
#include <cstring>

#include "dsp/real_fft.h"
#include "spectrum_shape.h"

namespace brindlehum {

using Spectrum = std::complex<float>*;

// Every input has a window of two partitions, the last complete one and the current one (zero where no samples have
// come yet), and the spectra of its last windows, one for each partition of the longest filter. All inputs are summed
// in the frequency domain, so each output takes one inverse transform, or two while a filter changes.
struct PartitionedConvolver::State {
    State(int in, int out, int frames, int taps);

    // Flags about each input's window, so that silent ones needn't be scanned.
    struct Sounds {
        bool last = false;     // the last partition has a sample other than 0
        bool present = false;  // the current one has
        bool stale = false;    // the current one still holds samples of an earlier one
    };

    float* window(int input) { return windows.get() + int64_t(input) * 2 * partition; }
    // The spectrum of an input's window `age` partitions ago.
    int slotOf(int input, int age) const { return input * depth + (head - age + depth) % depth; }
    Spectrum spectrum(int slot) { return spectra.get() + int64_t(slot) * bins; }
    SpectrumPair pair(const AlignedArray<std::complex<float>>& from) const { return {from.get(), from.get() + bins}; }

    void take(int input, const float* samples, int frames) noexcept;
    void shift() noexcept;
    void gather(std::vector<SpectralTerm>& terms, int input, const ConvolverFilter* filter, int first) noexcept;
    void gatherAll(const ConvolverFilter* const* filters, const ConvolverFilter* const* previous, int first) noexcept;
    void transformBack(const SpectrumPair& sums, AlignedArray<float>& to) noexcept;
    // This call's samples in the transformed window of output `o` of a pair.
    const float* fresh(const AlignedArray<float>& of, int o) const {
        return of.get() + int64_t(o) * 2 * partition + partition + filled;
    }

    int inputs, outputs;
    int partition;   // frames
    int depth;       // partitions of the longest filter
    int bins;        // padded
    int filled = 0;  // frames in the current partition
    int head = 0;    // its place in the delay lines
    RealFFT fft;
    SpectralSum sum;
    AlignedArray<float> windows;
    AlignedArray<std::complex<float>> spectra;
    std::vector<uint8_t> silent;  // which spectra are all zero, and not even stored
    std::vector<Sounds> sounds;
    std::vector<SpectralTerm> steady, after, before;
    AlignedArray<std::complex<float>> common, total;  // for a pair of outputs
    AlignedArray<float> time, timeBefore;             // for a pair of outputs
};

PartitionedConvolver::State::State(int in, int out, int frames, int taps)
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
      sounds(size_t(in)),
      common(makeAligned<std::complex<float>>(outputPair * size_t(bins))),
      total(makeAligned<std::complex<float>>(outputPair * size_t(bins))),
      time(makeAligned<float>(outputPair * 2 * size_t(frames))),
      timeBefore(makeAligned<float>(outputPair * 2 * size_t(frames))) {
    for (auto* terms : {&steady, &after, &before}) { terms->reserve(size_t(in) * size_t(depth)); }
}

// Adds samples to the current partition and transforms the window again.
void PartitionedConvolver::State::take(int input, const float* samples, int frames) noexcept {
    Sounds& s = sounds[size_t(input)];
    float* half = window(input) + partition;
    const bool hasSound = std::any_of(samples, samples + frames, [](float x) { return x != 0; });
    s.present |= hasSound;
    const int slot = slotOf(input, 0);
    silent[size_t(slot)] = !(s.present || s.last);
    if (silent[size_t(slot)]) { return; }
    // Only a partition's first call meets stale samples: it clears those that its own samples don't overwrite.
    if (s.stale) { std::fill(half + filled + frames, half + partition, 0.0F); }
    if (hasSound || s.stale) { std::memcpy(half + filled, samples, sizeof(float) * size_t(frames)); }
    s.stale = false;
    fft.forward(window(input), spectrum(slot));
}

// Makes the completed current partition the last one.
void PartitionedConvolver::State::shift() noexcept {
    for (int input = 0; input < inputs; ++input) {
        Sounds& s = sounds[size_t(input)];
        float* w = window(input);
        if (s.present) {
            std::memcpy(w, w + partition, sizeof(float) * size_t(partition));
        } else if (s.last) {
            std::fill(w, w + partition, 0.0F);
        }
        s = {s.present, false, true};
    }
    head = (head + 1) % depth;
    filled = 0;
}

// `first` is the first output of the pair; without a second output, the first is summed twice.
void PartitionedConvolver::State::gather(std::vector<SpectralTerm>& terms, int input, const ConvolverFilter* filter,
                                         int first) noexcept {
    if (filter == nullptr) { return; }
    const int second = std::min(first + 1, outputs - 1);
    const int parts = std::min(depth, filter->partitions());
    for (int part = 0; part < parts; ++part) {
        const int slot = slotOf(input, part);
        if (silent[size_t(slot)]) { continue; }
        terms.push_back({spectrum(slot), {filter->spectrum(first, part), filter->spectrum(second, part)}});
    }
}

void PartitionedConvolver::State::gatherAll(const ConvolverFilter* const* filters,
                                            const ConvolverFilter* const* previous, int first) noexcept {
    for (auto* terms : {&steady, &after, &before}) { terms->clear(); }
    for (int i = 0; i < inputs; ++i) {
        const bool changed = previous != nullptr && previous[i] != filters[i];
        gather(changed ? after : steady, i, filters[i], first);
        if (changed) { gather(before, i, previous[i], first); }
    }
}

void PartitionedConvolver::State::transformBack(const SpectrumPair& sums, AlignedArray<float>& to) noexcept {
    for (int o = 0; o < outputPair; ++o) { fft.inverse(sums[size_t(o)], to.get() + int64_t(o) * 2 * partition); }
}

PartitionedConvolver::PartitionedConvolver(int inputs, int outputs, int partition, int maxTaps) {
    checkPartition(partition);
    state_ = std::make_unique<State>(inputs, outputs, partition, maxTaps);
}
PartitionedConvolver::~PartitionedConvolver() = default;

void PartitionedConvolver::reset() noexcept {
    State& s = *state_;
    std::fill_n(s.windows.get(), size_t(s.inputs) * 2 * size_t(s.partition), 0.0F);
    std::ranges::fill(s.silent, uint8_t{1});
    std::ranges::fill(s.sounds, State::Sounds{});
    s.filled = 0;
    s.head = 0;
}

void PartitionedConvolver::process(const float* const* inputs, const ConvolverFilter* const* filters,
                                   const ConvolverFilter* const* previous, float* const* outputs, int frames) noexcept {
    State& s = *state_;
    int n = 0;
    for (int done = 0; done < frames; done += n) {
        n = std::min(s.partition - s.filled, frames - done);
        for (int i = 0; i < s.inputs; ++i) { s.take(i, inputs[i] + done, n); }
        for (int first = 0; first < s.outputs; first += outputPair) {
            s.gatherAll(filters, previous, first);
            const bool changes = !s.after.empty() || !s.before.empty();
            const bool sounds = changes || !s.steady.empty();
            const SpectrumPair common = s.pair(s.common);
            const SpectrumPair total = s.pair(s.total);
            if (sounds) { s.sum(s.steady.data(), int(s.steady.size()), nullptr, s.bins, common); }
            if (sounds && !changes) { s.transformBack(common, s.time); }
            if (changes) {
                s.sum(s.before.data(), int(s.before.size()), &common, s.bins, total);
                s.transformBack(total, s.timeBefore);
                s.sum(s.after.data(), int(s.after.size()), &common, s.bins, total);
                s.transformBack(total, s.time);
            }
            for (int o = 0; o < std::min(outputPair, s.outputs - first); ++o) {
                float* out = outputs[first + o] + done;
                const float* now = s.fresh(s.time, o);
                const float* old = s.fresh(s.timeBefore, o);
                if (!sounds) {
                    std::fill_n(out, n, 0.0F);
                } else if (!changes) {
                    std::copy_n(now, n, out);
                } else {
                    for (int i = 0; i < n; ++i) {
                        out[i] = old[i] + (now[i] - old[i]) * (float(done + i + 1) / float(frames));
                    }
                }
            }
        }
        s.filled += n;
        if (s.filled == s.partition) { s.shift(); }
    }
}

}  // namespace brindlehum
