// SpectralFrames: the short-time spectrum of the working signal, folded to pitch classes and bands.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <utility>
#include <vector>

#include "analysis/spectrum/pitch_sums.h"
#include "dsp/signal.h"

namespace brindlehum {

// One row per frame of 4096 samples, 2048 apart, at Signal::analysisRate; none for a signal of up to 4096 samples. A
// row sums magnitudes of the Hann-windowed frame, not powers, unscaled.
struct SpectralFrames {
    static constexpr int frameSize = 4096;
    static constexpr int hop = 2048;
    using Chroma = std::array<float, 12>;  // by pitch class, 0 is C
    using Bands = std::array<float, 7>;    // in bandEdges order
    // Hz; an edge belongs to the band below it.
    static constexpr std::array<std::pair<double, double>, 7> bandEdges = {
        {{20, 60}, {60, 250}, {250, 500}, {500, 2000}, {2000, 4000}, {4000, 6000}, {6000, 11025}}};

    SpectralFrames() = default;
    explicit SpectralFrames(std::span<const float> mono22k);

    std::vector<Chroma> chroma;
    std::vector<Bands> bands;
    std::vector<float> rms;          // of the unwindowed samples
    std::vector<PitchSums> pitches;  // per PitchSums::frames frames

    // The middle of a frame, in seconds.
    static double centre(int64_t frame) { return double(frame * hop + hop) / Signal::analysisRate; }

    // The mean of the rows whose centre is in from <= t < to; zeros when there are none.
    template <class Row>
    static Row average(const std::vector<Row>& rows, double from, double to);
    static float average(const std::vector<float>& values, double from, double to);

private:
    // The frames [first, last) of `count` whose centre is in from <= t < to.
    static std::pair<size_t, size_t> range(size_t count, double from, double to);
};

template <class Row>
Row SpectralFrames::average(const std::vector<Row>& rows, double from, double to) {
    Row mean{};
    const auto [first, last] = range(rows.size(), from, to);
    if (first >= last) { return mean; }
    for (size_t i = 0; i < mean.size(); ++i) {
        double sum = 0;
        for (size_t f = first; f < last; ++f) { sum += rows[f][i]; }
        mean[i] = float(sum / double(last - first));
    }
    return mean;
}

inline float SpectralFrames::average(const std::vector<float>& values, double from, double to) {
    const auto [first, last] = range(values.size(), from, to);
    double sum = 0;
    for (size_t f = first; f < last; ++f) { sum += values[f]; }
    return first < last ? float(sum / double(last - first)) : 0.0F;
}

}  // namespace brindlehum
