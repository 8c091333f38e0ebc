// The seamless loop.
#include <algorithm>
#include <cmath>
#include <numbers>

#include "edit_ops_detail.h"

namespace brindlehum::EditOps {
namespace {

constexpr double guardSeconds = 0.008;
constexpr int64_t shortestGuard = 10;
constexpr double longestCarry = 3;  // seconds
constexpr float ceiling = 0.999F;

// What there is to join at the wrap: the last `frames` of the range, which fade out, and the same number before its
// start, which fade in, so that the source runs on unbroken from there into the next round.
struct Join {
    const Channels& source;
    int64_t start = 0;
    int64_t end = 0;
    int64_t frames = 0;

    float old(size_t channel, int64_t i) const { return source[channel][size_t(end - frames + i)]; }
    float next(size_t channel, int64_t i) const { return source[channel][size_t(start - frames + i)]; }
};

// How alike the two are over all channels, 0 to 1; opposite ones count as unlike.
double likeness(const Join& join) {
    double product = 0, oldSquares = 0, nextSquares = 0;
    for (size_t c = 0; c < join.source.size(); ++c) {
        for (int64_t i = 0; i < join.frames; ++i) {
            product += double(join.old(c, i)) * join.next(c, i);
            oldSquares += double(join.old(c, i)) * join.old(c, i);
            nextSquares += double(join.next(c, i)) * join.next(c, i);
        }
    }
    const double most = std::sqrt(oldSquares * nextSquares);
    return most > 0 ? std::clamp(product / most, 0.0, 1.0) : 0;
}

// Fades that keep the power of two sounds of this likeness: equal power for strangers, equal gain for twins.
void crossfade(Channels& loop, const Join& join, double alike) {
    const size_t first = loop[0].size() - size_t(join.frames);
    for (int64_t i = 0; i < join.frames; ++i) {
        const double phi = (double(i) + 0.5) / double(join.frames) * std::numbers::pi / 2;
        const double level = 1 / std::sqrt(1 + alike * std::sin(2 * phi));
        const double out = level * std::cos(phi);
        const double in = level * std::sin(phi);
        for (size_t c = 0; c < loop.size(); ++c) {
            loop[c][first + size_t(i)] = float(out * join.old(c, i) + in * join.next(c, i));
        }
    }
}

// The end of the range rings on over the loop's head, so it stays, and what comes before the start joins it.
void fadeInBeforeStart(Channels& loop, const Join& join) {
    const size_t first = loop[0].size() - size_t(join.frames);
    for (int64_t i = 0; i < join.frames; ++i) {
        const double in = std::sin((double(i) + 0.5) / double(join.frames) * std::numbers::pi / 2);
        for (size_t c = 0; c < loop.size(); ++c) { loop[c][first + size_t(i)] += float(in * join.next(c, i)); }
    }
}

float peakOf(const Channels& channels) {
    float most = 0;
    for (const auto& x : channels) { most = std::max(most, detail::peak(x)); }
    return most;
}

void joinWrap(SeamlessLoop& loop, const Join& join) {
    if (loop.carry > 0) { return fadeInBeforeStart(loop.channels, join); }
    const float limit = std::max(ceiling, peakOf(loop.channels));
    crossfade(loop.channels, join, likeness(join));
    // Equal power may add two peaks up; equal gain never exceeds the louder of the two.
    if (peakOf(loop.channels) > limit) { crossfade(loop.channels, join, 1); }
}

// For a loop without anything before it. Overlaps its rounds at equal power around the wrap: one fades out as cos while
// the next fades in as sin. Both are the same loop, so each sample is multiplied by cos + sin, which rises from 1 to
// the square root of 2 at the wrap and falls back to 1.
void guardWrap(std::vector<float>& loop, int64_t guard) {
    const int64_t half = guard / 2;
    const auto length = int64_t(loop.size());
    for (int64_t i = 0; i < 2 * half; ++i) {
        const double phi = double(i) / double(2 * half) * std::numbers::pi / 2;
        float& x = loop[size_t(i < half ? length - half + i : i - half)];
        x = float(double(x) * std::cos(phi) + double(x) * std::sin(phi));
    }
}

// Adds what follows the range to its head. A ring-out that is longer than that ends in a short fade.
void carryOver(Channels& loop, const Channels& source, int64_t end, int64_t carry, int64_t fade) {
    const bool isWhole = end + carry == int64_t(source[0].size());
    for (size_t c = 0; c < loop.size(); ++c) {
        for (int64_t i = 0; i < carry; ++i) {
            const double left = isWhole ? 1 : std::min(1.0, double(carry - i) / double(fade));
            loop[c][size_t(i)] += float(left * source[c][size_t(end + i)]);
        }
    }
}

}  // namespace

float detail::peak(std::span<const float> x) {
    float most = 0;
    for (const float sample : x) { most = std::max(most, std::abs(sample)); }
    return most;
}

void detail::scale(std::span<float> x, float gain) {
    for (float& sample : x) { sample *= gain; }
}

std::optional<SeamlessLoop> seamlessLoop(const Channels& channels, double sr, int64_t start, int64_t end,
                                         bool carryTail) {
    const int64_t length = end - start;
    const int64_t guard = std::min(length / 2, detail::framesIn(sr, guardSeconds));
    if (channels.empty() || guard < shortestGuard) { return std::nullopt; }
    const int64_t after = int64_t(channels[0].size()) - end;
    const int64_t carry =
        carryTail ? std::max<int64_t>(std::min({length, after, detail::framesIn(sr, longestCarry)}), 0) : 0;

    SeamlessLoop loop{slice(channels, start, end), guard, carry};
    carryOver(loop.channels, channels, end, carry, guard);
    const bool hasBefore = start >= shortestGuard;
    if (hasBefore) {
        loop.guard = std::min(guard, start);
        joinWrap(loop, {channels, start, end, loop.guard});
    } else {
        for (auto& x : loop.channels) { guardWrap(x, guard); }
    }
    const float peak = peakOf(loop.channels);
    if (peak > ceiling && (carry > 0 || !hasBefore)) {
        for (auto& x : loop.channels) { detail::scale(x, ceiling / peak); }
    }
    return loop;
}

std::optional<SeamlessLoop> seamlessLoop(const Sound& sound, double sr, int64_t start, int64_t end, bool carryTail) {
    // A frame more than is read, which tells the end of the sound from that of the copy.
    const int64_t around = detail::framesIn(sr, longestCarry) + 1;
    const int64_t first = std::max<int64_t>(start - around, 0);
    const int64_t last = std::min(end + around, sound.frames());
    return seamlessLoop(sound.gather(first, last), sr, start - first, end - first, carryTail);
}

}  // namespace brindlehum::EditOps
