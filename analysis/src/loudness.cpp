// Loudness: measures energies of 100 ms blocks and sums all gates and windows from them.
#include "analysis/loudness.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numbers>

#include "dsp/signal.h"
#include "loudness_kernels.h"

namespace brindlehum::Loudness {
namespace {

using Channels = std::vector<std::span<const float>>;

double loudnessOf(double power) {
    return power > 0 ? -0.691 + 10 * std::log10(power) : LoudnessResult::floor;
}

// Zeroes decayed filter memory, before it becomes denormal numbers, which are slow; below -600 dB it counts as silence.
void settle(KState& state) {
    for (KState::Stage* stage : {&state.shelf, &state.highPass}) {
        for (auto* values : {stage->x1, stage->x2, stage->y1, stage->y2}) {
            for (int c = 0; c < 4; ++c) {
                if (!(std::abs(values[c]) > 1e-30) || !std::isfinite(values[c])) { values[c] = 0; }
            }
        }
    }
}

// Adds to `powers` the mean squares of the K-weighted blocks of up to 4 channels, each scaled by its channel's weight.
void addBlockPowers(const Channels& group, const double* groupWeights, double sampleRate, int64_t blockSize,
                    std::vector<double>& powers) {
    const auto [shelf, highPass] = kWeighting(sampleRate);
    const Kernels& kernels = fastestKernels();
    const auto run = group.size() == 1 ? kernels.one : group.size() == 2 ? kernels.two : kernels.four;
    const float* planes[4] = {};
    for (size_t c = 0; c < group.size(); ++c) { planes[c] = group[c].data(); }
    KState state;
    for (size_t b = 0; b < powers.size(); ++b) {
        double energies[4] = {};
        run(planes, int64_t(b) * blockSize, blockSize, shelf, highPass, state, energies);
        settle(state);
        for (size_t c = 0; c < group.size(); ++c) {
            // Below 4 kHz the shelf has no stable form, so its output may overflow; skip such blocks.
            const double power = groupWeights[c] * energies[c] / double(blockSize);
            if (std::isfinite(power)) { powers[b] += power; }
        }
    }
}

// The weighted power of every whole block, summed over the channels.
std::vector<double> blockPowers(const Channels& channels, const std::vector<double>& weight, double sampleRate,
                                int64_t blockSize) {
    std::vector<double> powers(channels[0].size() / size_t(blockSize), 0.0);
    Channels heard;
    std::vector<double> heardWeights;
    for (size_t c = 0; c < channels.size(); ++c) {
        if (!(weight[c] > 0)) { continue; }
        heard.push_back(channels[c]);
        heardWeights.push_back(weight[c]);
    }
    for (size_t at = 0; at < heard.size();) {
        const size_t left = heard.size() - at;
        const size_t take = left >= 4 ? 4 : left >= 2 ? 2 : 1;
        const Channels group(heard.begin() + ptrdiff_t(at), heard.begin() + ptrdiff_t(at + take));
        addBlockPowers(group, heardWeights.data() + at, sampleRate, blockSize, powers);
        at += take;
    }
    return powers;
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

void measurePeaks(const Channels& channels, LoudnessResult& out) {
    const Kernels& kernels = fastestKernels();
    float sample = 0;
    for (const auto& x : channels) { sample = std::max(sample, kernels.largest(x.data(), int64_t(x.size()))); }
    float between = sample;
    for (const auto& x : channels) { between = truePeakAbove(x, between, kernels); }
    if (sample > 0) { out.samplePeak = 20 * std::log10(double(sample)); }
    if (between > 0) { out.truePeak = 20 * std::log10(double(between)); }
}

}  // namespace

LoudnessResult measure(const std::vector<std::vector<float>>& channels, double sampleRate,
                       const std::optional<SourceFormat>& source) {
    LoudnessResult out;
    const bool ambisonic = source && source->asAmbisonic() != nullptr && !channels.empty();
    if (ambisonic) { out.note = "Ambisonics: measured on W (omni)"; }
    if (channels.empty() || channels[0].empty()) { return out; }
    const size_t measured = ambisonic ? 1 : channels.size();
    std::vector<std::vector<float>> stores(measured);
    Channels views;
    for (size_t c = 0; c < measured; ++c) { views.push_back(Signal::usable(channels[c], stores[c])); }
    const std::vector<double> weight = ambisonic ? std::vector<double>{1.0} : weights(source, int(measured));

    const auto frames = int64_t(channels[0].size());
    const int64_t blockSize = std::max<int64_t>(int64_t(0.1 * sampleRate), 1);
    const std::vector<double> blocks = blockPowers(views, weight, sampleRate, blockSize);
    const auto count = int64_t(blocks.size());
    // A gate has 4 blocks, but must also lie within the file by its exact length of 400 ms.
    const int64_t fitting = std::max<int64_t>((frames - int64_t(0.4 * sampleRate)) / blockSize + 1, 0);
    const std::vector<double> gates = windowPowers(blocks, 4, count > 2 ? size_t(std::min(count - 3, fitting)) : 0);
    out.momentaryMax = largestLoudness(gates);
    out.shortTermMax = shortTermMax(blocks);
    out.integrated = integrated(gates);
    measurePeaks(views, out);
    return out;
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
