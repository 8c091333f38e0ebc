// Beat tracking: steps from beat to beat at the local tempo and pulls each to the nearest peak of the envelope.
#include <algorithm>
#include <cmath>

#include "analysis/tempo/onset_time.h"
#include "analysis/tempo/tempo_analyzer.h"

namespace brindlehum::TempoAnalyzer {
namespace {

double localTempo(std::span<const MapScore> map, double bpm, double t) {
    if (map.size() < 2) { return bpm; }
    if (t < map.front().t) { return map.front().bpm; }
    if (t >= map.back().t) { return map.back().bpm; }
    const auto after = std::ranges::upper_bound(map, t, {}, &MapScore::t);
    const MapScore& b = *after;
    const MapScore& a = *(after - 1);
    return a.bpm + (b.bpm - a.bpm) * (t - a.t) / (b.t - a.t);
}

// The starting frame whose 16 beats collect the most of the envelope.
int64_t startingFrame(std::span<const float> env, double period) {
    const auto n = int64_t(env.size());
    int64_t best = 0;
    double bestMean = -1;
    // A comb that starts past the envelope's end collects nothing, so no later start can win.
    for (int64_t p = 0; p < std::clamp<int64_t>(int64_t(period), 1, n); ++p) {
        double sum = 0;
        int count = 0;
        for (int k = 0; k < 16; ++k) {
            const double at = double(p) + k * period;
            if (at >= double(n)) { break; }
            sum += env[size_t(at)];
            ++count;
        }
        const double mean = sum / count;
        if (mean > bestMean) {
            bestMean = mean;
            best = p;
        }
    }
    return best;
}

}  // namespace

Tracked trackBeats(std::span<const float> env, std::span<const MapScore> map, double bpm) {
    const auto last = int64_t(env.size()) - 1;
    if (last < 2) { return {}; }
    // A period under a frame has no beats, and steps that small might never advance.
    const auto usable = [](double period) { return period >= 1 && period <= 1e9; };
    const double firstPeriod = OnsetTime::period(localTempo(map, bpm, 0));
    if (!usable(firstPeriod)) { return {}; }
    const int64_t start = startingFrame(env, firstPeriod);
    Tracked out;
    int snaps = 0;
    for (double pos = double(start); pos < double(last);) {
        const double period = OnsetTime::period(localTempo(map, bpm, pos / OnsetTime::frameRate));
        if (!usable(period)) { break; }
        const auto reach = double(int64_t(period * 0.12));
        const auto from = int64_t(std::max(pos - reach, 0.0));
        const auto to = int64_t(std::min(pos + reach, double(last)));
        const auto peak = std::max_element(env.begin() + from, env.begin() + to + 1);
        if (*peak > 0.08F) {
            ++snaps;
            pos = double(peak - env.begin());
        }
        out.beats.push_back(pos / OnsetTime::frameRate);
        pos += period;
    }
    out.snapped = double(snaps) / double(std::max<size_t>(out.beats.size(), 1));
    return out;
}

}  // namespace brindlehum::TempoAnalyzer
