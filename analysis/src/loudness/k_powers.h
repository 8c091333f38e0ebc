// KPowers: the K-weighted mean squares of channels, by blocks of 100 ms.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <utility>
#include <vector>

#include "analysis/loudness/loudness.h"
#include "loudness/loudness_kernels.h"

namespace brindlehum::Loudness {

class KPowers {
public:
    // Called for each full block, counted from 0, and each channel. For the blocks of one push it may come channel by
    // channel.
    using Sink = std::function<void(size_t block, size_t channel, double meanSquare)>;

    // `sampleRate` in Hz, above 0; only these channels are measured.
    KPowers(double sampleRate, const std::vector<size_t>& channels);
    // One plane per channel, those that aren't measured, too. Samples must be usable numbers.
    void push(const float* const* planes, int64_t frames, const Sink& sink);

    int64_t blockFrames() const { return blockFrames_; }
    int64_t frames() const { return frames_; }  // pushed so far

private:
    // Up to 4 channels that are filtered together.
    struct Group {
        std::vector<size_t> channels;
        KState state;
        std::array<double, 4> energies{};  // of the block that isn't full yet
    };
    void measure(Group& group, const float* const* planes, int64_t frames, const Sink& sink) const;

    int64_t blockFrames_;
    std::pair<Biquad, Biquad> filters_;
    std::vector<Group> groups_;
    int64_t frames_ = 0;
};

}  // namespace brindlehum::Loudness
