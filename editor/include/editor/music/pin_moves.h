// What a drag of a pin does, and where frames lie among bars and beats: pure functions.
#pragma once

#include <array>
#include <optional>
#include <span>

#include "analysis/structure/pins.h"
#include "mix/config/frame_range.h"

namespace brindlehum {

// The pins that a user can drag.
enum class PinKind { introEnd, loopEnd, endingStart };
inline constexpr std::array allPins = {PinKind::introEnd, PinKind::loopEnd, PinKind::endingStart};
const char* name(PinKind kind);  // as in analyses: "introEnd"

// Bar lines of a piece: times in seconds, ascending, and the document that they lie in.
struct BarTimes {
    std::span<const double> boundaries;
    double sampleRate = 0;  // Hz
    int64_t total = 0;      // frames
};

// The frame of a bar line, cut to the document; 0 for an index outside the list.
int64_t frameOfBoundary(const BarTimes& bars, int index);
// The pin's place as an index of a bar line.
int boundaryOf(const Pins& pins, PinKind kind);
// Moves a pin to the bar line nearest to the frame, the earlier of two. The intro ends before the ending starts, the
// loop ends behind its start and the ending starts behind the intro; a loop that starts where the intro ends stays
// glued to it. The piece counts as a loop file no longer. Unchanged without bar lines.
Pins moved(Pins pins, PinKind kind, int64_t frame, const BarTimes& bars);

// The beat nearest to the frame if it lies within 8 pixels, else the frame. Beats in seconds, ascending.
int64_t snapped(int64_t frame, std::span<const double> beats, double sampleRate, double pixelsPerFrame);
// From the last bar line at or before the frame to the next; none before the first and from the last one on.
std::optional<FrameRange> barAt(int64_t frame, const BarTimes& bars);

}  // namespace brindlehum
