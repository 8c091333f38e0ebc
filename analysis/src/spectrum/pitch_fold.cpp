#include "spectrum/pitch_fold.h"

#include <cmath>
#include <utility>

#include "analysis/spectrum/spectral_frames.h"

namespace brindlehum {
namespace {

constexpr int steps = 16;  // to a bin
constexpr double binWidth = Signal::analysisRate / SpectralFrames::frameSize;
constexpr int binAbove(double hz) {
    return int(hz / binWidth) + 1;
}
constexpr int first = binAbove(65), last = binAbove(4000);
constexpr int compressedFirst = binAbove(100), compressedLast = binAbove(1500);

uint8_t cellOf(double hz) {
    const double semitones = 12 * std::log2(hz / 440) + 69;  // 0 is a C
    const double cell = std::floor((semitones - 12 * std::floor(semitones / 12)) * PitchSums::perSemitone);
    return uint8_t(int(cell) % PitchSums::cells);
}

}  // namespace

PitchFold::PitchFold() {
    for (int i = 0; i < (last + 1) * steps; ++i) {
        cells_.push_back(i == 0 ? uint8_t(0) : cellOf((i + 0.5) / steps * binWidth));
    }
}

void PitchFold::add(std::span<const float> magnitudes) {
    if (frames_ == 0) { out_.emplace_back(); }
    frames_ = (frames_ + 1) % PitchSums::frames;
    PitchSums& sums = out_.back();
    for (int k = first; k < last; ++k) {
        const float m = magnitudes[size_t(k)];
        const float below = magnitudes[size_t(k - 1)];
        const float above = magnitudes[size_t(k + 1)];
        if (m <= below || m < above) { continue; }
        // Two bins of a Hann-windowed sinusoid give its place between them exactly.
        const float side = above > below ? above : below;
        const float offset = (2 * side - m) / (m + side);
        const float at = float(k) + (above > below ? offset : -offset);
        const size_t cell = cells_[size_t(at * steps)];
        sums.linear[cell] += m;
        if (k >= compressedFirst && k < compressedLast) { sums.compressed[cell] += std::sqrt(m); }
    }
}

std::vector<PitchSums> PitchFold::finish() {
    frames_ = 0;
    return std::exchange(out_, {});
}

}  // namespace brindlehum
