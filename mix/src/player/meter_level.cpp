// MeterLevel: rises at once, falls slowly, holds its peak.
#include "mix/player/meter_level.h"

#include <algorithm>
#include <cmath>

namespace brindlehum {

MeterLevel metered(const MeterLevel& before, float peak, double seconds) {
    const bool isNumber = std::isfinite(peak);
    const double now = isNumber ? 20 * std::log10(std::max(double(peak), 1e-9)) : before.level;
    const double fallen = seconds * MeterLevel::decay;
    MeterLevel next = before;
    next.level = std::max({now, before.level - fallen, MeterLevel::floor});
    next.held += seconds;
    if (next.level >= before.hold) {
        next.hold = next.level;
        next.held = 0;
    } else if (next.held > MeterLevel::holdSeconds) {
        next.hold = std::max(next.level, before.hold - fallen);
    }
    next.isOver = before.isOver || !isNumber || peak > 1;
    return next;
}

}  // namespace brindlehum
