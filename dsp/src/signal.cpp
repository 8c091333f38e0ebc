// Signal: mixing, levels, windows, rates and the repair of unusable samples.
#include "dsp/signal.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <stdexcept>

#include "dsp/resampler.h"

namespace brindlehum::Signal {

std::vector<float> mono(const std::vector<std::vector<float>>& channels) {
    if (channels.empty()) { return {}; }
    size_t frames = channels[0].size();
    for (const auto& channel : channels) { frames = std::min(frames, channel.size()); }
    std::vector<const float*> planes;
    for (const auto& channel : channels) { planes.push_back(channel.data()); }
    std::vector<float> out(frames);
    mono(planes.data(), int(planes.size()), frames, out.data());
    return out;
}

void mono(const float* const* planes, int channels, size_t frames, float* out) {
    const float scale = 1.0F / float(channels);
    constexpr size_t block = 4096;  // stays in the first cache while all channels are added
    for (size_t at = 0; at < frames; at += block) {
        const size_t count = std::min(block, frames - at);
        float* sum = out + at;
        std::copy_n(planes[0] + at, count, sum);
        if (channels == 1) { continue; }
        for (int c = 1; c < channels; ++c) {
            const float* in = planes[c] + at;
            for (size_t i = 0; i < count; ++i) { sum[i] += in[i]; }
        }
        for (size_t i = 0; i < count; ++i) { sum[i] *= scale; }
    }
}

double energy(std::span<const float> x) {
    constexpr size_t lanes = 8;  // independent sums, so that the additions overlap
    double sums[lanes] = {};
    const size_t whole = x.size() / lanes * lanes;
    for (size_t i = 0; i < whole; i += lanes) {
        for (size_t j = 0; j < lanes; ++j) { sums[j] += double(x[i + j]) * double(x[i + j]); }
    }
    double sum = 0;
    for (const double part : sums) { sum += part; }
    for (size_t i = whole; i < x.size(); ++i) { sum += double(x[i]) * double(x[i]); }
    return sum;
}

float rms(std::span<const float> x, int64_t from, int64_t to) {
    from = std::max<int64_t>(from, 0);
    to = std::min(to, int64_t(x.size()));
    if (from >= to) { return 0; }
    return float(std::sqrt(energy(x.subspan(size_t(from), size_t(to - from))) / double(to - from)));
}

std::vector<float> hanning(int n) {
    if (n < 2) { return {1.0F}; }
    auto window = std::vector<float>(size_t(n));
    for (int i = 0; i < n; ++i) {
        window[size_t(i)] = float(0.5 - 0.5 * std::cos(2 * std::numbers::pi * double(i) / double(n - 1)));
    }
    return window;
}

std::vector<float> resample(std::vector<float> x, double from, double to) {
    if (std::abs(from - to) <= 0.5 || x.empty()) { return x; }
    try {
        return Resampler::convert(x, from, to);
    } catch (const std::runtime_error&) { return x; }
}

bool isUsable(std::span<const float> x) {
    constexpr size_t block = 4096;
    for (size_t at = 0; at < x.size(); at += block) {
        const size_t end = std::min(at + block, x.size());
        int bad = 0;
        for (size_t i = at; i < end; ++i) { bad |= int(!(std::abs(x[i]) <= usableLimit)); }
        if (bad != 0) { return false; }
    }
    return true;
}

std::span<const float> usable(std::span<const float> x, std::vector<float>& store) {
    if (isUsable(x)) { return x; }
    store.assign(x.begin(), x.end());
    for (float& sample : store) {
        if (!(std::abs(sample) <= usableLimit)) { sample = 0; }
    }
    return store;
}

}  // namespace brindlehum::Signal
