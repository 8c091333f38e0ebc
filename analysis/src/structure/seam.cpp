// Seams: compare level and brightness on both sides of a jump.
#include "structure/seam.h"

#include <algorithm>
#include <cmath>

namespace brindlehum::Structure {
namespace {

double levelMatch(double a, double b) {
    return std::max(0.0, 1 - std::abs(20 * std::log10(std::max(a, 1e-5) / std::max(b, 1e-5))) / 20);
}

// Compares zero-crossing rates. A seam with a quiet side can't differ much in brightness.
double brightMatch(double a, double b, bool quiet) {
    const double larger = std::max(a, b);
    if (larger <= 1e-6) { return 1; }
    const double match = 1 - std::abs(a - b) / larger;
    return quiet ? std::max(match, 0.6) : match;
}

}  // namespace

Seam seamBetween(const SignalView& x, double sr, double endTime, double startTime, double window, double active) {
    const auto end = int64_t(sr * endTime);
    const auto start = int64_t(sr * startTime);
    const auto width = int64_t(window * sr);
    // Within 50 ms of the end nothing is left to compare: the file's own edges meet.
    if (end >= x.size() - int64_t(0.05 * sr)) { return {0.7, "edge-to-edge file"}; }
    const double endLevel = x.rms(end, end + width);
    const double startLevel = x.rms(start, start + width);
    const double limit = 0.15 * active;
    if (endLevel < limit && startLevel < limit) { return {0.95, "quiet at the seam"}; }
    const double bright = brightMatch(windowZcr(x, end, end + width), windowZcr(x, start, start + width),
                                      endLevel < limit || startLevel < limit);
    const double value = 0.5 * levelMatch(endLevel, startLevel) + 0.5 * bright;
    return {value, value >= 0.75 ? "clean splice" : value < 0.4 ? "audible seam risk" : nullptr};
}

std::optional<int> finalHitBar(const SignalView& x, double sr, std::span<const double> bounds,
                               const BarProfile& profile, int beatsPerBar) {
    const int bar = profile.musicEndBar - 1;
    if (profile.musicStartBar >= bar || bar + 1 >= int(bounds.size())) { return std::nullopt; }
    const double from = bounds[size_t(bar)];
    const double to = bounds[size_t(bar) + 1];
    const double beat = (to - from) / std::max(beatsPerBar, 1);
    const auto level = [&](double a, double b) { return double(x.rms(int64_t(sr * a), int64_t(sr * b))); };
    const double first = level(from, from + beat);
    const double last = level(to - beat, to);
    const double before = profile.rms[size_t(bar) - 1];
    if (first >= 0.25 * double(profile.activeLevel) && 2.2 * last < first && 1.15 * before <= first) { return bar; }
    return std::nullopt;
}

}  // namespace brindlehum::Structure
