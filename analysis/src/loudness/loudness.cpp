// Loudness: measures energies of blocks of 100 ms and sums all gates and windows from them.
#include "loudness/loudness_meter.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numbers>

#include "dsp/signal.h"

namespace brindlehum::Loudness {
namespace {

double loudnessOf(double power) {
    return power > 0 ? -0.691 + 10 * std::log10(power) : LoudnessResult::floor;
}

// Mean powers of windows of `width` blocks, one block apart, for the first `count` positions.
std::vector<double> windowPowers(const std::vector<double>& blocks, size_t width, size_t count) {
    std::vector<double> out(count);
    for (size_t i = 0; i < count; ++i) {
        double sum = 0;
        for (size_t b = i; b < i + width; ++b) { sum += blocks[b]; }
        out[i] = sum / double(width);
    }
    return out;
}

double largestLoudness(const std::vector<double>& powers) {
    double largest = LoudnessResult::floor;
    for (const double power : powers) { largest = std::max(largest, loudnessOf(power)); }
    return largest;
}

double shortTermMax(const std::vector<double>& blocks) {
    constexpr size_t width = 30;
    if (blocks.size() >= width) { return largestLoudness(windowPowers(blocks, width, blocks.size() - width + 1)); }
    double sum = 0;
    for (const double block : blocks) { sum += block; }
    return std::max(loudnessOf(sum / double(std::max<size_t>(blocks.size(), 1))), LoudnessResult::floor);
}

double meanAbove(const std::vector<double>& gates, double threshold, size_t& kept) {
    double sum = 0;
    kept = 0;
    for (const double power : gates) {
        if (-0.691 + 10 * std::log10(std::max(power, 1e-12)) > threshold) {
            sum += power;
            ++kept;
        }
    }
    return kept > 0 ? sum / double(kept) : 0;
}

// Applies the absolute gate at -70 LUFS, then a relative one 10 LU below the mean of the blocks that passed.
double integrated(const std::vector<double>& gates) {
    size_t kept = 0;
    const double ungated = meanAbove(gates, LoudnessResult::floor, kept);
    if (kept == 0) { return LoudnessResult::floor; }
    const double relative = loudnessOf(ungated) - 10;
    const double mean = meanAbove(gates, std::max(relative, LoudnessResult::floor), kept);
    return kept == 0 ? LoudnessResult::floor : loudnessOf(mean);
}

std::vector<size_t> heardOf(const std::vector<double>& weights) {
    std::vector<size_t> heard;
    for (size_t c = 0; c < weights.size(); ++c) {
        if (weights[c] > 0) { heard.push_back(c); }
    }
    return heard;
}

}  // namespace

LoudnessMeter::LoudnessMeter(double sampleRate, const std::optional<SourceFormat>& source, int channels)
    : sampleRate_(sampleRate),
      ambisonic_(source && source->asAmbisonic() != nullptr && channels > 0),
      weights_(ambisonic_ ? std::vector<double>{1.0} : weights(source, channels)),
      channelPowers_(sampleRate, heardOf(weights_)) {
    truePeaks_.resize(weights_.size());
    repaired_.resize(weights_.size());
    planes_.resize(weights_.size());
}

LoudnessMeter::~LoudnessMeter() = default;

void LoudnessMeter::push(const float* const* planes, int frames) {
    if (frames < 1) { return; }
    const Kernels& kernels = fastestKernels();
    for (size_t c = 0; c < planes_.size(); ++c) {
        planes_[c] = Signal::usable({planes[c], size_t(frames)}, repaired_[c]).data();
        samplePeak_ = std::max(samplePeak_, kernels.largest(planes_[c], frames));
    }
    truePeak_ = std::max(truePeak_, samplePeak_);
    for (size_t c = 0; c < planes_.size(); ++c) {
        truePeak_ = truePeaks_[c].push({planes_[c], size_t(frames)}, truePeak_);
    }
    channelPowers_.push(planes_.data(), frames, [this](size_t block, size_t channel, double meanSquare) {
        if (powers_.size() <= block) { powers_.resize(block + 1, 0.0); }
        // Below 4 kHz the shelf has no stable form, so its output may overflow; skip such blocks.
        const double power = weights_[channel] * meanSquare;
        if (std::isfinite(power)) { powers_[block] += power; }
    });
}

LoudnessResult LoudnessMeter::finish() {
    LoudnessResult out;
    if (ambisonic_) { out.note = "Ambisonics: measured on W (omni)"; }
    const int64_t frames = channelPowers_.frames();
    const int64_t blockSize = channelPowers_.blockFrames();
    if (frames == 0) { return out; }
    powers_.resize(size_t(frames / blockSize), 0.0);
    const auto count = int64_t(powers_.size());
    // A gate has 4 blocks, but must also lie within the file by its exact length of 400 ms.
    const int64_t fitting = std::max<int64_t>((frames - int64_t(0.4 * sampleRate_)) / blockSize + 1, 0);
    const std::vector<double> gates = windowPowers(powers_, 4, count > 2 ? size_t(std::min(count - 3, fitting)) : 0);
    out.momentaryMax = largestLoudness(gates);
    out.shortTermMax = shortTermMax(powers_);
    out.integrated = integrated(gates);
    for (TruePeak& peak : truePeaks_) { truePeak_ = peak.finish(truePeak_); }
    if (samplePeak_ > 0) { out.samplePeak = 20 * std::log10(double(samplePeak_)); }
    if (truePeak_ > 0) { out.truePeak = 20 * std::log10(double(truePeak_)); }
    return out;
}

LoudnessResult measure(const std::vector<std::vector<float>>& channels, double sampleRate,
                       const std::optional<SourceFormat>& source) {
    LoudnessMeter meter(sampleRate, source, int(channels.size()));
    const size_t frames = channels.empty() ? 0 : channels[0].size();
    std::vector<const float*> planes(channels.size());
    for (size_t at = 0; at < frames; at += LoudnessMeter::pieceFrames) {
        std::ranges::transform(channels, planes.begin(), [at](const auto& channel) { return channel.data() + at; });
        meter.push(planes.data(), int(std::min<size_t>(LoudnessMeter::pieceFrames, frames - at)));
    }
    return meter.finish();
}

std::pair<Biquad, Biquad> kWeighting(double sampleRate) {
    // Analogue prototypes that produce the published 48 kHz coefficients (BS.1770-4, tables 1 and 2).
    Biquad shelf;
    {
        const double k = std::tan(std::numbers::pi * 1681.974450955533 / sampleRate);
        const double q = 0.7071752369554196;
        const double vh = 1.5848647011308556;
        const double vb = 1.2587209302325617;
        const double d = 1 + k / q + k * k;
        shelf = {(vh + vb * k / q + k * k) / d, 2 * (k * k - vh) / d, (vh - vb * k / q + k * k) / d,
                 2 * (k * k - 1) / d, (1 - k / q + k * k) / d};
    }
    const double k = std::tan(std::numbers::pi * 38.13547087602444 / sampleRate);
    const double q = 0.5003270373238773;
    const double d = 1 + k / q + k * k;
    return {shelf, {1, -2, 1, 2 * (k * k - 1) / d, (1 - k / q + k * k) / d}};
}

std::vector<double> weights(const std::optional<SourceFormat>& source, int channels) {
    std::vector<double> out(size_t(std::max(channels, 0)), 1.0);
    const SpeakerList* list = source ? source->asSpeakers() : nullptr;
    if (list == nullptr || list->size() != out.size()) { return out; }
    for (size_t c = 0; c < out.size(); ++c) {
        const Direction d = direction((*list)[c], *list);
        const double side = std::abs(d.az);
        if ((*list)[c] == SpeakerID::LFE) {
            out[c] = 0;
        } else if (d.el < 30 && side >= 60 && side <= 120) {
            out[c] = 1.41;
        }
    }
    return out;
}

}  // namespace brindlehum::Loudness
