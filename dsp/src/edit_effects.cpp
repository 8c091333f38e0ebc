// The one-click effects: their table and formulas.
#include "dsp/edit_effects.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include "edit_ops_detail.h"

namespace brindlehum::EditOps {
namespace {

using Samples = std::span<float>;
using Range = std::span<const Samples>;

constexpr float minusPoint3Db = 0.96605086F;
constexpr float plus6Db = 1.9952623F;
constexpr float plus4Db = 1.5848932F;
constexpr float minus12Db = 0.25118864F;

// The coefficient of a one-pole filter with its corner at `hz`.
float pole(double hz, double sr) {
    return float(std::exp(-2 * std::numbers::pi * hz / sr));
}

// One-pole low-pass that starts at rest on the first sample.
void lowPass(Samples x, float a) {
    float y = x[0];
    for (float& each : x) { each = y = y * a + (1 - a) * each; }
}

// One-pole high-pass; the first sample stays.
void highPass(Samples x, float a) {
    float before = x[0];
    for (size_t i = 1; i < x.size(); ++i) {
        const float now = x[i];
        x[i] = (x[i - 1] + now - before) * a;
        before = now;
    }
}

void saturate(Samples x, float drive) {
    for (float& each : x) { each = std::tanh(each * drive); }
}

void normalize(Range channels, double) {
    float peak = 0;
    for (const Samples x : channels) {
        for (const float each : x) {
            if (std::isfinite(each)) { peak = std::max(peak, std::abs(each)); }
        }
    }
    if (peak <= 0) { return; }
    for (const Samples x : channels) { detail::scale(x, minusPoint3Db / peak); }
}

template <typename Gain>
void fade(Range channels, Gain gain) {
    for (const Samples x : channels) {
        for (size_t i = 0; i < x.size(); ++i) {
            x[i] *= float(gain(double(i) / double(x.size()) * std::numbers::pi / 2));
        }
    }
}

void fadeIn(Range channels, double) {
    fade(channels, [](double phase) { return std::sin(phase); });
}

void fadeOut(Range channels, double) {
    fade(channels, [](double phase) { return std::cos(phase); });
}

void reverse(Range channels, double) {
    for (const Samples x : channels) { std::ranges::reverse(x); }
}

// The mean is summed in 64 bits: in 32 a long range would keep a part of its offset.
void dcFix(Range channels, double) {
    for (const Samples x : channels) {
        double sum = 0;
        for (const float each : x) { sum += double(each); }
        const auto mean = float(sum / double(x.size()));
        for (float& each : x) { each -= mean; }
    }
}

void telephone(Range channels, double sr) {
    for (const Samples x : channels) {
        highPass(x, pole(300, sr));
        lowPass(x, pole(3400, sr));
        saturate(x, plus6Db);
    }
}

void bitcrush(Range channels, double) {
    for (const Samples x : channels) {
        for (size_t i = 0; i < x.size(); ++i) { x[i] = i % 4 == 0 ? std::round(x[i] * 256) / 256 : x[i - 1]; }
    }
}

void tapeSaturation(Range channels, double sr) {
    for (const Samples x : channels) {
        saturate(x, plus4Db);
        lowPass(x, pole(10400, sr));
    }
}

void stereoWiden(Range channels, double) {
    const Samples left = channels[0], right = channels[1];
    for (size_t i = 0; i < left.size(); ++i) {
        const float mid = (left[i] + right[i]) / 2;
        const float side = (left[i] - right[i]) / 2 * 1.5F;
        left[i] = mid + side;
        right[i] = mid - side;
    }
}

void stutter(Range channels, double sr) {
    const auto chunk = size_t(std::max<int64_t>(detail::framesIn(sr, 0.125), 0));
    if (chunk < 2) { return; }
    for (const Samples x : channels) {
        for (size_t at = 0; at < x.size(); at += chunk) {
            const Samples block = x.subspan(at, std::min(chunk, x.size() - at));
            const size_t half = block.size() / 2;
            std::copy_n(block.begin(), half, block.begin() + int64_t(half));
        }
    }
}

void ghostEcho(Range channels, double sr) {
    constexpr std::array delaysMs = {67.0, 89.0};
    const auto delay = size_t(detail::framesIn(sr, 0.5));
    for (const Samples x : channels) {
        if (delay >= x.size()) { continue; }
        std::vector<float> wet(x.size());
        for (size_t i = delay; i < x.size(); ++i) { wet[i] = x[i - delay] * minus12Db; }
        lowPass(wet, pole(3350, sr));
        detail::feedbackDelay(wet, delaysMs, sr, 0.4F, 0.3F);
        for (size_t i = 0; i < x.size(); ++i) { x[i] += wet[i]; }
    }
}

constexpr std::array table = {
    Effect{"normalize", "Normalize", "Raise the whole thing so the loudest peak hits full level.", normalize},
    Effect{"fade-in", "Fade In", "Smooth rise from silence across the selection.", fadeIn},
    Effect{"fade-out", "Fade Out", "Smooth fall to silence across the selection.", fadeOut},
    Effect{"reverse", "Reverse", "Play the selection backwards.", reverse},
    Effect{"dc-fix", "DC Fix", "Re-center audio that drifted off the zero line.", dcFix},
    Effect{"telephone", "Telephone", "1987. A payphone outside a laundromat. You're on hold.", telephone},
    Effect{"bitcrush", "Bitcrush", "8-bit crunch. The retro consoles agree.", bitcrush},
    Effect{"tape-saturation", "Tape Saturation", "Warm. Like a tube amp left on since 1974.", tapeSaturation},
    Effect{"stereo-widen", "Stereo Widen", "Same furniture, more breathing room. Stereo files only.", stereoWiden,
           true},
    Effect{"stutter", "Stutter", "A very musical nervous tic. Lean into it.", stutter},
    Effect{"ghost-echo", "Ghost Echo", "One distant repeat. Something in the canyon answered.", ghostEcho},
};

}  // namespace

std::span<const Effect> effects() {
    return table;
}

const Effect* effect(std::string_view id) {
    const auto found = std::ranges::find(table, id, &Effect::id);
    return found == table.end() ? nullptr : &*found;
}

std::vector<int> Effect::touched(int channels, const Lanes& lanes) const {
    if (stereo) { return channels < 2 ? std::vector<int>{} : std::vector<int>{0, 1}; }
    std::vector<int> out;
    for (int c = 0; c < channels; ++c) {
        if (!lanes || std::ranges::find(*lanes, c) != lanes->end()) { out.push_back(c); }
    }
    return out;
}

void Effect::apply(Channels& channels, double sr, int64_t start, int64_t end, const Lanes& lanes) const {
    std::vector<Samples> range;
    for (const int c : touched(int(channels.size()), lanes)) {
        range.push_back(Samples(channels[size_t(c)]).subspan(size_t(start), size_t(end - start)));
    }
    if (!range.empty() && start < end) { process(range, sr); }
}

Sound Effect::apply(const Sound& sound, double sr, int64_t start, int64_t end, const Lanes& lanes) const {
    const std::vector<int> which = touched(sound.channels(), lanes);
    Channels copies;
    for (const int c : which) {
        copies.emplace_back(size_t(end - start));
        sound.track(c).read(start, copies.back());
    }
    const std::vector<Samples> range(copies.begin(), copies.end());
    if (range.empty() || start == end) { return sound; }
    process(range, sr);
    std::vector<Track> tracks(sound.tracks().begin(), sound.tracks().end());
    for (size_t i = 0; i < which.size(); ++i) {
        Track& track = tracks[size_t(which[i])];
        track = Track::joined(std::array{track.slice(0, start), Track(copies[i]), track.slice(end, track.length())});
    }
    return Sound(std::move(tracks));
}

}  // namespace brindlehum::EditOps
