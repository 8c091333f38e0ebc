// HarmonyFrames: folds the bins of each frame.
#include "analysis/spectrum/harmony_frames.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "spectrum/harmony_fold.h"
#include "spectrum/spectral_extractor.h"

namespace brindlehum {
namespace {

constexpr double binWidth = Signal::analysisRate / HarmonyFrames::frameSize;  // Hz
constexpr int binAbove(double hz) {
    return int(hz / binWidth) + 1;
}
constexpr int lowFrom = binAbove(30), lowTo = binAbove(150);
constexpr int chromaFrom = binAbove(130), chromaTo = binAbove(2500);

// The pitch class of each bin.
std::array<uint8_t, size_t(chromaTo)> pitchClasses() {
    std::array<uint8_t, size_t(chromaTo)> out{};
    for (int k = chromaFrom; k < chromaTo; ++k) {
        out[size_t(k)] = uint8_t(std::lround(12 * std::log2(k * binWidth / 440) + 69) % 12);
    }
    return out;
}

}  // namespace

void HarmonyFold::add(std::span<const float> magnitudes) {
    static const auto classes = pitchClasses();
    power_ += Signal::energy(magnitudes);
    bins_ += magnitudes.size();
    out_.lowEnergy.push_back(float(Signal::energy(magnitudes.subspan(lowFrom, lowTo - lowFrom))));
    roots_.resize(chromaTo);
    std::transform(&magnitudes[chromaFrom], &magnitudes[chromaTo], &roots_[chromaFrom],
                   [](float m) { return std::sqrt(m); });
    HarmonyFrames::Chroma row{};
    for (size_t k = chromaFrom; k < chromaTo; ++k) { row[classes[k]] += roots_[k]; }
    out_.chroma.push_back(row);
}

HarmonyFrames HarmonyFold::finish() {
    if (bins_ > 0) { out_.meanPower = power_ / double(bins_); }
    return std::move(out_);
}

HarmonyFrames::HarmonyFrames(std::span<const float> mono22k) {
    std::vector<float> store;
    SpectralExtractor extractor;
    extractor.push(Signal::usable(mono22k, store));
    *this = extractor.finishHarmony();
}

}  // namespace brindlehum
