// Bar profile: the level of each bar, and where the music starts and ends.
#include <algorithm>
#include <optional>

#include "analysis/structure/structure.h"

namespace brindlehum::Structure {
namespace {

// The 90th percentile, which follows choruses rather than peaks.
float activeLevel(std::vector<float> rms) {
    std::ranges::sort(rms);
    return rms[std::min(rms.size() - 1, size_t(0.9 * double(rms.size())))];
}

// The end of a quiet lead-in within the first 8 bars: the bar where the level rises.
std::optional<int> leadInEnd(const std::vector<float>& rms, double active) {
    const int last = std::min(7, int(rms.size()) - 2);
    for (int j = 0; j <= last; ++j) {
        const double now = rms[size_t(j)];
        if (now >= 0.65 * active) { return std::nullopt; }
        if (double(rms[size_t(j) + 1]) >= std::max(1.5 * now, 0.144 * active)) { return j + 1; }
    }
    return std::nullopt;
}

int musicStart(const std::vector<float>& rms, double active) {
    if (const auto bar = leadInEnd(rms, active)) { return *bar; }
    const auto loud = std::ranges::find_if(rms, [&](float level) { return double(level) >= 0.18 * active; });
    return loud == rms.end() ? 0 : int(loud - rms.begin());
}

// Drops quiet bars at the end. A bar that falls more sharply from the one before is dropped at a higher level.
int musicEnd(const std::vector<float>& rms, double active, int start) {
    int bar = int(rms.size()) - 1;
    for (; bar > start; --bar) {
        const double now = rms[size_t(bar)];
        const double before = rms[size_t(bar) - 1];
        const double limit = now <= 0.5 * before ? 0.6 : now <= 0.55 * before ? 0.3 : 0.08;
        if (now >= limit * active) { break; }
    }
    return bar + 1;
}

}  // namespace

BarProfile profile(const SignalView& mono, double sr, std::span<const double> bounds) {
    BarProfile out;
    if (bounds.size() < 2) { return out; }
    for (size_t i = 0; i + 1 < bounds.size(); ++i) {
        out.rms.push_back(mono.rms(int64_t(sr * bounds[i]), int64_t(sr * bounds[i + 1])));
    }
    constexpr double before = 0.1;  // seconds: about a short note
    for (const double line : bounds) {
        out.lineLevels.push_back(mono.rms(int64_t(sr * std::max(line - before, 0.0)), int64_t(sr * line)));
    }
    out.activeLevel = activeLevel(out.rms);
    out.musicStartBar = musicStart(out.rms, out.activeLevel);
    out.musicEndBar = musicEnd(out.rms, out.activeLevel, out.musicStartBar);
    return out;
}

}  // namespace brindlehum::Structure
