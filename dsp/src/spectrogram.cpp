// Levels of Hann windows.
#include "dsp/spectrogram.h"

#include <algorithm>
#include <cmath>
#include <span>

namespace brindlehum {
namespace {

constexpr double windowSeconds = 0.043;
constexpr int64_t mostWindows = 4;  // of one column

int sizeFor(double sampleRate) {
    const double wanted = std::clamp(sampleRate * windowSeconds, 64.0, double(Spectrogram::longest));
    return 1 << int(std::lround(std::log2(wanted)));
}

}  // namespace

Spectrogram::Spectrogram(double sampleRate)
    : sampleRate_(sampleRate),
      spectrum_(sizeFor(sampleRate)),
      samples_(size_t(spectrum_.size())),
      magnitudes_(size_t(spectrum_.bins())),
      power_(size_t(spectrum_.bins())) {}

void Spectrogram::window(const Track& track, int64_t centre) {
    const int64_t start = centre - size() / 2;
    const int64_t from = std::clamp<int64_t>(start, 0, track.length());
    const int64_t to = std::clamp<int64_t>(start + size(), from, track.length());
    std::ranges::fill(samples_, 0.0F);
    if (from < to) { track.read(from, std::span(samples_).subspan(size_t(from - start), size_t(to - from))); }
    spectrum_.magnitudes(samples_.data(), magnitudes_.data());
}

void Spectrogram::levels(const Track& track, int64_t from, int64_t to, float* db) {
    const int64_t windows = std::clamp<int64_t>((to - from) / size(), 1, mostWindows);
    std::ranges::fill(power_, 0.0F);
    for (int64_t i = 0; i < windows; ++i) {
        window(track, from + (to - from) * (2 * i + 1) / (2 * windows));
        for (size_t k = 0; k < power_.size(); ++k) { power_[k] += magnitudes_[k] * magnitudes_[k]; }
    }
    // The magnitude of a sine of amplitude 1: half the sum of the window.
    const double full = double(size() - 1) / 4;
    const auto scale = float(1 / (full * full * double(windows)));
    const float least = std::pow(10.0F, floorDb / 10);
    for (size_t k = 0; k < power_.size(); ++k) { db[k] = 10 * std::log10(std::max(power_[k] * scale, least)); }
}

}  // namespace brindlehum
