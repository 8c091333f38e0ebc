// Rates how well a jump from one place to another matches, and tests whether the last bar is a final hit.
#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "analysis/structure/structure.h"

namespace brindlehum::Structure {

struct Seam {
    double value = 0;              // 0 to 1
    const char* reason = nullptr;  // a remark for the user, or null
};

// Compares `window` seconds after `endTime` with the same length after `startTime`.
Seam seamBetween(const SignalView& x, double sr, double endTime, double startTime, double window, double active);

// The last bar of the music, if it starts louder than the bar before and dies away before its own end.
std::optional<int> finalHitBar(const SignalView& x, double sr, std::span<const double> bounds,
                               const BarProfile& profile, int beatsPerBar);

// The bonus for a length of `bars`: `eight`, `four` or `two` for the largest of 8, 4 and 2 that divides it, else 0.
inline double phraseBonus(int bars, double eight, double four, double two) {
    if (bars % 8 == 0) { return eight; }
    if (bars % 4 == 0) { return four; }
    return bars % 2 == 0 ? two : 0;
}

}  // namespace brindlehum::Structure
