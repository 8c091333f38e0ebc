// Onset envelopes: detect where the log spectrum rises.
#include <algorithm>
#include <array>
#include <bit>
#include <cmath>

#include "analysis/tempo/onset_time.h"
#include "dsp/signal.h"
#include "tempo/onset_extractor.h"

namespace brindlehum::TempoAnalyzer {
namespace {

constexpr int usedBins = OnsetExtractor::usedBins;
constexpr int lowBins = 12;  // up to 236.9 Hz, the last below 250 Hz
static_assert((lowBins - 1) * Signal::analysisRate / OnsetTime::frameSize < 250 &&
              lowBins * Signal::analysisRate / OnsetTime::frameSize >= 250);

using Spectrum = std::array<float, OnsetExtractor::usedBins>;

// Natural logarithm of x >= 1 within 2 units in the last place, in a form that compilers vectorise: the mantissa is
// scaled to 0.707..1.414, where log m = 2 atanh((m - 1) / (m + 1)) converges fast.
inline float logarithm(float x) {
    const auto bits = std::bit_cast<int32_t>(x);
    const int32_t exponent = (bits - 0x3f3504f3) >> 23;
    const auto mantissa = std::bit_cast<float>(bits - exponent * (1 << 23));
    const float s = (mantissa - 1.0F) / (mantissa + 1.0F);
    const float z = s * s;
    const float series = z * (2.0F / 3 + z * (2.0F / 5 + z * (2.0F / 7 + z * (2.0F / 9))));
    const auto e = float(exponent);
    // ln 2 is split in two, so that the product with the first part is exact.
    return e * 0.693359375F + (2.0F * s + (s * series + e * -2.12194440e-4F));
}

void logCompress(const float* magnitudes, Spectrum& out) {
    for (size_t k = 0; k < usedBins; ++k) { out[k] = logarithm(1.0F + 50.0F * magnitudes[k]); }
}

// The rises from `before` to `now`: summed over all used bins, and over the low ones.
std::pair<float, float> rises(const Spectrum& now, const Spectrum& before) {
    Spectrum rise;
    for (size_t k = 0; k < usedBins; ++k) { rise[k] = std::max(0.0F, now[k] - before[k]); }
    float low = 0;
    for (size_t k = 0; k < lowBins; ++k) { low += rise[k]; }
    std::array<float, 16> lanes{};
    for (size_t k = 0; k < usedBins; k += lanes.size()) {
        for (size_t j = 0; j < lanes.size(); ++j) { lanes[j] += rise[k + j]; }
    }
    float full = 0;
    for (const float lane : lanes) { full += lane; }
    return {full, low};
}

// Smooths with 1/4, 1/2, 1/4; values outside the envelope count as 0.
std::vector<float> smooth(const std::vector<float>& x) {
    std::vector<float> y(x.size());
    for (size_t i = 0; i < x.size(); ++i) {
        y[i] = 0.5F * x[i] + (i > 0 ? 0.25F * x[i - 1] : 0.0F) + (i + 1 < x.size() ? 0.25F * x[i + 1] : 0.0F);
    }
    return y;
}

void normalize(std::vector<float>& x) {
    if (x.empty()) { return; }
    const float scale = *std::ranges::max_element(x) + 1e-9F;
    for (float& value : x) { value /= scale; }
}

}  // namespace

OnsetExtractor::OnsetExtractor()
    : slicer_(OnsetTime::frameSize, OnsetTime::hop, OnsetTime::hop),
      spectrum_(OnsetTime::frameSize),
      magnitudes_(size_t(spectrum_.bins())) {}

void OnsetExtractor::push(std::span<const float> block) {
    slicer_.push(block, [this](const float* frame) {
        spectrum_.magnitudes(frame, magnitudes_.data());
        logCompress(magnitudes_.data(), logs_[frames_ % 2]);
        if (frames_++ == 0) { return; }
        const auto [full, low] = rises(logs_[(frames_ - 1) % 2], logs_[frames_ % 2]);
        raw_.full.push_back(full);
        raw_.low.push_back(low);
    });
}

Envelopes OnsetExtractor::finish() {
    if (frames_ < fewestFrames) { return {}; }
    Envelopes out{smooth(raw_.full), smooth(raw_.low)};
    normalize(out.full);
    normalize(out.low);
    return out;
}

Envelopes envelopes(std::span<const float> mono22k) {
    std::vector<float> store;
    OnsetExtractor extractor;
    extractor.push(Signal::usable(mono22k, store));
    return extractor.finish();
}

}  // namespace brindlehum::TempoAnalyzer
