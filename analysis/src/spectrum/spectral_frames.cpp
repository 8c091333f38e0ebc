// SpectralFrames: assigns bins to pitch classes and bands, and computes the frames.
#include "spectrum/spectral_extractor.h"

#include <algorithm>
#include <cmath>

namespace brindlehum {
namespace {

constexpr double binWidth = Signal::analysisRate / SpectralFrames::frameSize;  // Hz
constexpr int lastBin = SpectralFrames::frameSize / 2 - 1;                     // DC and Nyquist are never used

static_assert(SpectralFrames::hop == 2 * HarmonyFrames::hop && SpectralFrames::frameSize == HarmonyFrames::frameSize);

using Run = SpectralExtractor::Run;

int pitchClass(double hz) {
    if (hz < 65 || hz > 4000) { return -1; }
    const auto note = std::lround(12 * std::log2(hz / 440) + 69);
    return int(((note % 12) + 12) % 12);
}

int band(double hz) {
    for (size_t b = 0; b < SpectralFrames::bandEdges.size(); ++b) {
        const auto& [low, high] = SpectralFrames::bandEdges[b];
        if (low <= hz && hz <= high) { return int(b); }
    }
    return -1;
}

std::vector<Run> runs(int (*cellOf)(double)) {
    std::vector<Run> out;
    for (int k = 1; k <= lastBin; ++k) {
        const int cell = cellOf(k * binWidth);
        if (cell < 0) { continue; }
        if (!out.empty() && out.back().cell == cell && out.back().to == k) {
            out.back().to = k + 1;
        } else {
            out.push_back({cell, k, k + 1});
        }
    }
    return out;
}

template <class Row>
Row fold(const std::vector<Run>& table, const std::vector<float>& magnitudes) {
    std::array<double, std::tuple_size_v<Row>> sums{};
    for (const Run& run : table) {
        double sum = 0;
        for (int k = run.from; k < run.to; ++k) { sum += magnitudes[size_t(k)]; }
        sums[size_t(run.cell)] += sum;
    }
    Row row{};
    std::ranges::transform(sums, row.begin(), [](double x) { return float(x); });
    return row;
}

// The first of `count` frames whose centre isn't before `t`.
size_t firstFrameAt(size_t count, double t) {
    size_t first = 0;
    while (count > 0) {
        const size_t half = count / 2;
        if (SpectralFrames::centre(int64_t(first + half)) < t) {
            first += half + 1;
            count -= half + 1;
        } else {
            count = half;
        }
    }
    return first;
}

}  // namespace

std::pair<size_t, size_t> SpectralFrames::range(size_t count, double from, double to) {
    return {firstFrameAt(count, from), firstFrameAt(count, to)};
}

SpectralExtractor::SpectralExtractor()
    : slicer_(HarmonyFrames::frameSize, HarmonyFrames::hop, 1),
      spectrum_(SpectralFrames::frameSize),
      magnitudes_(size_t(spectrum_.bins())),
      classRuns_(runs(pitchClass)),
      bandRuns_(runs(band)) {}

void SpectralExtractor::push(std::span<const float> block) {
    slicer_.push(block, [this](const float* frame) {
        spectrum_.magnitudes(frame, magnitudes_.data());
        harmony_.add(magnitudes_);
        if (std::exchange(second_, !second_)) { return; }
        frames_.chroma.push_back(fold<SpectralFrames::Chroma>(classRuns_, magnitudes_));
        frames_.bands.push_back(fold<SpectralFrames::Bands>(bandRuns_, magnitudes_));
        pitches_.add(magnitudes_);
        frames_.rms.push_back(Signal::rms({frame, size_t(SpectralFrames::frameSize)}, 0, SpectralFrames::frameSize));
    });
}

SpectralFrames SpectralExtractor::finish() {
    frames_.pitches = pitches_.finish();
    return std::move(frames_);
}

SpectralFrames::SpectralFrames(std::span<const float> mono22k) {
    std::vector<float> store;
    SpectralExtractor extractor;
    extractor.push(Signal::usable(mono22k, store));
    *this = extractor.finish();
}

}  // namespace brindlehum
