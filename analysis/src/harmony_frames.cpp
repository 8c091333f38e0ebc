// HarmonyReader: transforms overlapping frames and folds their bins.
#include "analysis/harmony_frames.h"

#include <algorithm>
#include <cmath>
#include <utility>

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

HarmonyReader::HarmonyReader()
    : spectrum_(HarmonyFrames::frameSize), magnitudes_(size_t(spectrum_.bins())), roots_(size_t(chromaTo)) {}

void HarmonyReader::push(std::span<const float> samples) {
    pending_.insert(pending_.end(), samples.begin(), samples.end());
    size_t at = 0;
    for (; at + HarmonyFrames::frameSize <= pending_.size(); at += HarmonyFrames::hop) { addFrame(&pending_[at]); }
    pending_.erase(pending_.begin(), pending_.begin() + std::ptrdiff_t(at));
}

void HarmonyReader::addFrame(const float* samples) {
    static const auto classes = pitchClasses();
    spectrum_.magnitudes(samples, magnitudes_.data());
    power_ += Signal::energy(magnitudes_);
    out_.lowEnergy.push_back(float(Signal::energy({&magnitudes_[lowFrom], size_t(lowTo - lowFrom)})));
    std::transform(&magnitudes_[chromaFrom], &magnitudes_[chromaTo], &roots_[chromaFrom],
                   [](float m) { return std::sqrt(m); });
    HarmonyFrames::Chroma row{};
    for (size_t k = chromaFrom; k < chromaTo; ++k) { row[classes[k]] += roots_[k]; }
    out_.chroma.push_back(row);
}

HarmonyFrames HarmonyReader::finish() {
    if (!out_.chroma.empty()) { out_.meanPower = power_ / double(out_.chroma.size() * magnitudes_.size()); }
    pending_.clear();
    power_ = 0;
    return std::exchange(out_, {});
}

}  // namespace brindlehum
