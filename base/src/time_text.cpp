// Formats a time as minutes, seconds and thousandths.
#include "base/time_text.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace brindlehum {

std::string timeText(double seconds) {
    if (!std::isfinite(seconds) || seconds < 0) { return "0:00.000"; }
    // Round to milliseconds first, so that 59.9996 s is the next minute. Integers avoid the locale's decimal sign.
    const long long ms = std::llround(std::min(seconds, 1e12) * 1000);
    char text[64];
    std::snprintf(text, sizeof text, "%lld:%02lld.%03lld", ms / 60000, ms / 1000 % 60, ms % 1000);
    return text;
}

}  // namespace brindlehum
