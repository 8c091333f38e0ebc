// DownbeatDetector: compares the onset track with itself one beat later.
#include "analysis/grid/downbeat_detector.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

#include "dsp/signal.h"
#include "grid/rms_track.h"

namespace brindlehum::DownbeatDetector {
namespace {

constexpr int combPhases = 64;

// Frames of 5 ms, and the lengths of a beat and a bar in frames.
struct Frames {
    int64_t count = 0;
    double seconds = 0;  // seconds per frame
    int64_t beat = 1;
    int64_t bar = 0;
};

// Rises of the level; the first rise is counted from silence.
std::vector<float> onsetTrack(std::span<const float> levels) {
    std::vector<float> track(levels.begin(), levels.end());
    float before = 0;
    for (float& value : track) {
        const float level = value;
        value = std::max(0.0F, level - before);
        before = level;
    }
    return track;
}

// For each frame, correlates the onsets of one bar on either side with the onsets one beat later.
std::vector<float> pulseSimilarity(std::span<const float> onsets, const Frames& frames) {
    const int64_t n = frames.count;
    std::vector<double> cross(size_t(n) + 1, 0.0);
    std::vector<double> now = cross;
    std::vector<double> later = cross;
    for (int64_t i = 0; i < n; ++i) {
        const double a = onsets[size_t(i)];
        const double b = i + frames.beat < n ? onsets[size_t(i + frames.beat)] : 0;
        cross[size_t(i) + 1] = cross[size_t(i)] + a * b;
        now[size_t(i) + 1] = now[size_t(i)] + a * a;
        later[size_t(i) + 1] = later[size_t(i)] + b * b;
    }
    const int64_t reach = std::max(frames.beat, frames.bar);
    std::vector<float> similarity(size_t(n), 0.0F);
    for (int64_t i = 0; i < n; ++i) {
        const int64_t lo = std::max<int64_t>(i - reach, 0);
        const int64_t hi = std::max(lo, std::min(i + reach, n - frames.beat));
        const auto over = [&](const std::vector<double>& sums) { return sums[size_t(hi)] - sums[size_t(lo)]; };
        const double b = over(now);
        const double c = over(later);
        if (b > 1e-12 && c > 1e-12) { similarity[size_t(i)] = float(std::max(over(cross) / std::sqrt(b * c), 0.0)); }
    }
    return similarity;
}

// How far the best of 64 combs at the beat's period exceeds their mean.
double pulseClarity(std::span<const float> weighted, double beatSeconds, const Frames& frames) {
    const int64_t n = frames.count;
    // One entry more than frames, because a tooth just before the end may round up to it.
    std::vector<float> dilated(size_t(n) + 1);
    for (int64_t i = 0; i <= n; ++i) {
        dilated[size_t(i)] = weighted[size_t(std::min(i, n - 1))];
        for (const int64_t j : {i - 1, i + 1}) {
            dilated[size_t(i)] = std::max(dilated[size_t(i)], weighted[size_t(std::clamp<int64_t>(j, 0, n - 1))]);
        }
    }
    const double end = frames.seconds * double(n);
    double best = 0;
    double total = 0;
    for (int k = 0; k < combPhases; ++k) {
        double sum = 0;
        for (int64_t m = 0;; ++m) {
            const double t = beatSeconds * k / combPhases + double(m) * beatSeconds;
            if (!(t < end)) { break; }
            sum += dilated[size_t(std::llround(t / frames.seconds))];
        }
        best = std::max(best, sum);
        total += sum;
    }
    if (!(best > 1e-9)) { return 0; }
    return std::clamp(best / std::max(total / combPhases, 1e-9) - 1, 0.0, 1.0);
}

// The time of the first frame near a strong onset from which the pulse stays similar for a bar.
double grooveStart(std::span<const float> onsets, std::span<const float> similarity, float peak, const Frames& frames) {
    const int64_t n = frames.count;
    std::vector<int64_t> strong(size_t(n) + 1, 0);  // strong onsets before each frame
    for (int64_t i = 0; i < n; ++i) {
        strong[size_t(i) + 1] = strong[size_t(i)] + int64_t(double(onsets[size_t(i)]) >= 0.15 * double(peak));
    }
    double found = 0;
    int64_t run = 0;
    for (int64_t i = n - 1; i >= 0; --i) {
        run = similarity[size_t(i)] >= 0.5F ? run + 1 : 0;
        if (run < std::max<int64_t>(frames.bar, 1)) { continue; }
        const int64_t lo = std::max<int64_t>(i - frames.beat, 0);
        const int64_t hi = std::min(i + frames.beat, n - 1);
        if (strong[size_t(hi) + 1] > strong[size_t(lo)]) { found = frames.seconds * double(i); }
    }
    return found;
}

// round(x) as a count, limited to the longest possible file.
int64_t wholeFrames(double x) {
    return int64_t(std::llround(std::clamp(x, 0.0, 1e12)));
}

}  // namespace

Result detect(std::span<const float> mono, double sampleRate, double bpm, int beatsPerBar) {
    if (!(sampleRate > 0)) { return {}; }
    std::vector<float> store;
    const int hop = std::max(int(sampleRate * 0.005), 1);
    return detectLevels(rmsTrack(Signal::usable(mono, store), hop), double(hop) / sampleRate, bpm, beatsPerBar);
}

Result detectLevels(std::span<const float> levels, double hopSeconds, double bpm, int beatsPerBar) {
    if (!(bpm > 0) || levels.size() < 8) { return {}; }
    Frames frames;
    frames.count = int64_t(levels.size());
    frames.seconds = hopSeconds;
    const std::vector<float> onsets = onsetTrack(levels);
    const float peak = *std::ranges::max_element(onsets);
    if (!(peak > 1e-9F)) { return {}; }

    // This track can't resolve a beat shorter than a frame, and its combs would never end.
    const double beatSeconds = 60 / bpm;
    if (beatSeconds < frames.seconds / 64) { return {}; }
    frames.beat = std::max<int64_t>(wholeFrames(beatSeconds / frames.seconds), 1);
    frames.bar = wholeFrames(beatSeconds * beatsPerBar / frames.seconds);
    const std::vector<float> similarity = pulseSimilarity(onsets, frames);
    std::vector<float> weighted(onsets.size());
    std::ranges::transform(onsets, similarity, weighted.begin(), std::multiplies<>{});
    return {pulseClarity(weighted, beatSeconds, frames), grooveStart(onsets, similarity, peak, frames)};
}

}  // namespace brindlehum::DownbeatDetector
