// The macros that fade and reverberate: faded ends, the reverb tail and the granular texture.
#include <algorithm>
#include <cmath>
#include <numbers>

#include "dsp/signal.h"
#include "edit_ops_detail.h"

namespace brindlehum::EditOps {
namespace {

using detail::framesIn;

constexpr double fadeInSeconds = 0.05;
constexpr double fadeOutSeconds = 1;

struct Grains {
    std::vector<float> window;
    int64_t hop = 1;
};

// Overlaps windowed pieces of `x` from random places up to `length` frames.
std::vector<float> stretched(std::span<const float> x, int64_t length, const Grains& grains, RandomEngine& random) {
    auto out = std::vector<float>(size_t(length));
    const auto grain = int64_t(grains.window.size());
    const auto frames = int64_t(x.size());
    std::uniform_int_distribution<int64_t> place(0, std::max<int64_t>(frames - grain, 1) - 1);
    for (int64_t at = 0; at + grain < length; at += grains.hop) {
        const int64_t from = place(random);
        const int64_t count = std::min(grain, frames - from);
        for (int64_t i = 0; i < count; ++i) { out[size_t(at + i)] += x[size_t(from + i)] * grains.window[size_t(i)]; }
    }
    return out;
}

void fadeLinearly(std::span<float> x, double sr) {
    const auto length = int64_t(x.size());
    const int64_t in = std::min(length, framesIn(sr, 2));
    for (int64_t i = 0; i < in; ++i) { x[size_t(i)] *= float(double(i) / double(in)); }
    const int64_t out = std::min(length, framesIn(sr, 4));
    for (int64_t i = 0; i < out; ++i) { x[size_t(length - 1 - i)] *= float(double(i) / double(out)); }
}

// Mixes `dry` times the signal with `wet` times its convolution, over the signal's length.
void mixIn(std::vector<float>& signal, float dry, std::span<const float> convolved, float wet) {
    for (size_t i = 0; i < signal.size(); ++i) {
        signal[i] = signal[i] * dry + (i < convolved.size() ? convolved[i] * wet : 0.0F);
    }
}

// The progress of one channel of many, as part of the whole.
Progress partOf(const Progress& progress, size_t channel, size_t channels) {
    if (!progress) { return {}; }
    return
        [&progress, channel, channels](double share) { return progress((double(channel) + share) / double(channels)); };
}

}  // namespace

Channels topAndTails(const Channels& channels, double sr) {
    Channels out = channels;
    if (channels.empty()) { return out; }
    const auto length = int64_t(channels[0].size());
    const int64_t in = std::min(length, framesIn(sr, fadeInSeconds));
    const int64_t tail = std::min(length, framesIn(sr, fadeOutSeconds));
    for (auto& x : out) {
        for (int64_t i = 0; i < in; ++i) {
            x[size_t(i)] *= float(std::sin(double(i) / double(in) * std::numbers::pi / 2));
        }
        for (int64_t i = 0; i < tail; ++i) {
            x[size_t(length - tail + i)] *= float(std::cos(double(i) / double(tail) * std::numbers::pi / 2));
        }
    }
    return out;
}

Sound topAndTails(const Sound& sound, double sr) {
    const int64_t total = sound.frames();
    const int64_t head = framesIn(sr, fadeInSeconds), tail = framesIn(sr, fadeOutSeconds);
    if (head + tail >= total) { return Sound(topAndTails(sound.gather(), sr)); }
    const Sound middle = slice(sound, head, total - tail);
    const Sound ends(topAndTails(splice(sound, head, total - tail).gather(), sr));
    return insert(ends, head, middle);
}

Channels verbTail(const Channels& channels, double sr, int64_t start, int64_t end, RandomEngine& random,
                  const Progress& progress) {
    constexpr double tailSeconds = 4;
    const std::vector<float> hall = hallIR(sr, 8, random);
    Channels out = slice(channels, start, end);
    for (size_t c = 0; c < out.size(); ++c) {
        auto& x = out[c];
        const std::vector<float> wet = convolve(x, hall, partOf(progress, c, out.size()));
        if (progress && !progress(double(c + 1) / double(out.size()))) { return {}; }
        x.resize(x.size() + size_t(framesIn(sr, tailSeconds)));
        mixIn(x, 0.7F, wet, 0.3F);
    }
    return out;
}

Channels verbTail(const Channels& channels, double sr, int64_t start, int64_t end, const Progress& progress) {
    RandomEngine random = systemSeeded();
    return verbTail(channels, sr, start, end, random, progress);
}

Channels texture(const Channels& channels, double sr, int64_t start, int64_t end, RandomEngine& random,
                 const Progress& progress) {
    constexpr float wantedPeak = 0.5011872F;  // -6 dB
    const int64_t length = std::min((end - start) * 8, framesIn(sr, 90));
    const std::vector<float> hall = hallIR(sr, 12, random);
    const Biquad dark = lowPass(6000, sr);
    const auto grain = int(framesIn(sr, 0.08));
    const Grains grains{grain > 0 ? Signal::hanning(grain) : std::vector<float>{}, std::max<int64_t>(grain / 8, 1)};
    Channels out;
    for (size_t c = 0; c < channels.size(); ++c) {
        const auto source = std::span(channels[c]).subspan(size_t(start), size_t(end - start));
        std::vector<float> wash = stretched(source, length, grains, random);
        const std::vector<float> wet = convolve(wash, hall, partOf(progress, c, channels.size()));
        if (progress && !progress(double(c + 1) / double(channels.size()))) { return {}; }
        mixIn(wash, 0.2F, wet, 0.8F);
        wash = dark.run(wash);
        fadeLinearly(wash, sr);
        const float peak = detail::peak(wash);
        if (peak > 0) { detail::scale(wash, wantedPeak / peak); }
        out.push_back(std::move(wash));
    }
    return out;
}

Channels texture(const Channels& channels, double sr, int64_t start, int64_t end, const Progress& progress) {
    RandomEngine random = systemSeeded();
    return texture(channels, sr, start, end, random, progress);
}

}  // namespace brindlehum::EditOps
