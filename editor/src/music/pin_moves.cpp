// Pins among bar lines.
#include "editor/music/pin_moves.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace brindlehum {
namespace {

constexpr double snapPixels = 8;

int64_t frameAt(double seconds, double sampleRate) {
    return int64_t(std::llround(seconds * sampleRate));
}

// The index of the time nearest to t, the earlier of two; the list isn't empty.
int nearest(std::span<const double> times, double t) {
    const auto best = std::ranges::min_element(times, {}, [&](double each) { return std::abs(each - t); });
    return int(best - times.begin());
}

}  // namespace

const char* name(PinKind kind) {
    switch (kind) {
        case PinKind::introEnd:
            return "introEnd";
        case PinKind::loopEnd:
            return "loopEnd";
        default:
            return "endingStart";
    }
}

int64_t frameOfBoundary(const BarTimes& bars, int index) {
    if (index < 0 || index >= int(bars.boundaries.size())) { return 0; }
    return std::min(bars.total, frameAt(bars.boundaries[size_t(index)], bars.sampleRate));
}

int boundaryOf(const Pins& pins, PinKind kind) {
    switch (kind) {
        case PinKind::introEnd:
            return pins.introEnd;
        case PinKind::loopEnd:
            return pins.loopEnd;
        default:
            return pins.endingStart;
    }
}

Pins moved(Pins pins, PinKind kind, int64_t frame, const BarTimes& bars) {
    if (bars.boundaries.empty()) { return pins; }
    const int bar = nearest(bars.boundaries, double(frame) / bars.sampleRate);
    switch (kind) {
        case PinKind::introEnd: {
            const int end = std::max(std::min(pins.endingStart - 1, bar), 0);
            if (pins.loopStart == pins.introEnd) { pins.loopStart = end; }
            pins.introEnd = end;
            pins.loopEnd = std::max(pins.loopEnd, pins.loopStart + 1);
            break;
        }
        case PinKind::loopEnd:
            pins.loopEnd = std::max(pins.loopStart + 1, bar);
            break;
        case PinKind::endingStart:
            pins.endingStart = std::max(bar, pins.introEnd + 1);
            pins.musicEnd = std::max(pins.musicEnd, pins.endingStart);
            pins.finalHit = std::max(pins.finalHit, pins.endingStart);
    }
    pins.loopFile = false;
    return pins;
}

int64_t snapped(int64_t frame, std::span<const double> beats, double sampleRate, double pixelsPerFrame) {
    if (beats.empty()) { return frame; }
    const auto distance = [&](double beat) { return std::abs(frameAt(beat, sampleRate) - frame); };
    const double beat = *std::ranges::min_element(beats, {}, distance);
    return pixelsPerFrame * double(distance(beat)) <= snapPixels ? frameAt(beat, sampleRate) : frame;
}

std::optional<FrameRange> barAt(int64_t frame, const BarTimes& bars) {
    const int count = int(bars.boundaries.size());
    int bar = -1;
    while (bar + 1 < count && frameOfBoundary(bars, bar + 1) <= frame) { ++bar; }
    if (bar < 0 || bar + 1 >= count) { return std::nullopt; }
    return FrameRange{frameOfBoundary(bars, bar), frameOfBoundary(bars, bar + 1)};
}

}  // namespace brindlehum
