// Lattice fit: finds the best comb of onset peaks over tempo and phase, draws a straight line through the peaks near
// it, and asks each part of the piece whether it would rather have another phase.
#include "bars/lattice_fit.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>

#include "analysis/tempo/onset_time.h"

namespace brindlehum::bars {
namespace {

constexpr double frame = 1 / OnsetTime::frameRate;  // seconds

struct Line {
    double period, phase;
};

double modulo(double x, double period) {
    return x - std::floor(x / period) * period;
}

// The heights of all peaks by their phase at one period, in bins of about a frame, each summed with its neighbours.
class PhaseHistogram {
public:
    PhaseHistogram(std::span<const Peak> peaks, double centre, double period)
        : bins_(size_t(std::clamp(std::round(period / frame), 8.0, 4096.0))) {
        const double binsPerSecond = double(bins_.size()) / period;
        for (const Peak& peak : peaks) {
            const double at = modulo(peak.t - centre, period) * binsPerSecond;
            bins_[size_t(at) % bins_.size()] += peak.height;
        }
    }
    // The best bin's height and index.
    std::pair<double, size_t> best() const {
        const size_t n = bins_.size();
        std::pair<double, size_t> best{-1, 0};
        for (size_t i = 0; i < n; ++i) {
            const double sum = bins_[(i + n - 1) % n] + bins_[i] + bins_[(i + 1) % n];
            if (sum > best.first) { best = {sum, i}; }
        }
        return best;
    }
    size_t size() const { return bins_.size(); }

private:
    std::vector<double> bins_;
};

// Tempi are tried in steps that move the ends of the piece by two frames, 150 at most to either side.
Line bestComb(std::span<const Peak> peaks, double length, double beat) {
    constexpr double range = 0.006;
    const double centre = length / 2;
    const int steps = std::clamp(int(std::ceil(range * length / (4 * frame))), 8, 150);
    Line best{beat, 0};
    double bestScore = -1;
    for (int k = -steps; k <= steps; ++k) {
        const double period = beat * (1 + range * k / steps);
        const PhaseHistogram histogram(peaks, centre, period);
        const auto [sum, bin] = histogram.best();
        const double score = sum * period;  // a mean over the teeth
        if (score > bestScore) {
            bestScore = score;
            best = {period, modulo(centre + (double(bin) + 0.5) / double(histogram.size()) * period, period)};
        }
    }
    return best;
}

// A least-squares line through the peaks near `line`, weighted by their height and Tukey's biweight, whose reach
// shrinks from 12 % of a beat (at most 50 ms) to 15 ms. The line itself when it finds too little.
Line throughPeaks(std::span<const Peak> peaks, Line line) {
    double reach = std::min(0.12 * line.period, 0.05);
    for (int round = 0; round < 6; ++round, reach = std::max(0.6 * reach, 0.015)) {
        double w = 0, wk = 0, wr = 0, wkk = 0, wkr = 0;
        int count = 0;
        for (const Peak& peak : peaks) {
            const double k = std::round((peak.t - line.phase) / line.period);
            const double rest = peak.t - line.phase - k * line.period;
            const double u = rest / reach;
            if (!(std::abs(u) < 1)) { continue; }
            const double weight = peak.height * (1 - u * u) * (1 - u * u);
            w += weight;
            wk += weight * k;
            wr += weight * rest;
            wkk += weight * k * k;
            wkr += weight * k * rest;
            ++count;
        }
        const double spread = wkk - wk * wk / w;
        if (count < 8 || !(w > 0) || !(spread > 0)) { break; }
        const double slope = (wkr - wk * wr / w) / spread;
        line.phase += (wr - slope * wk) / w;
        line.period += slope;
    }
    return line;
}

// The largest of each entry and its neighbours, so that a tooth that is one frame off still counts.
std::vector<float> dilate(std::span<const float> env) {
    std::vector<float> out(env.begin(), env.end());
    for (size_t i = 0; i < env.size(); ++i) {
        if (i > 0) { out[i] = std::max(out[i], env[i - 1]); }
        if (i + 1 < env.size()) { out[i] = std::max(out[i], env[i + 1]); }
    }
    return out;
}

// Mean of the dilated envelope on the teeth in [from, to), frames.
double comb(std::span<const float> dilated, const Line& line, double from, double to) {
    const double step = line.period / frame;
    const double first = line.phase / frame + 0.5;  // so that rounding down gives the nearest frame
    double sum = 0;
    int count = 0;
    for (double k = std::ceil((from - first) / step); first + k * step < to; ++k) {
        sum += dilated[size_t(first + k * step)];
        ++count;
    }
    return count > 0 ? sum / count : 0;
}

// The share of the windows in which the line scores at least 0.8 of the best phase of the window. Quiet ones don't
// vote.
double agreement(std::span<const float> dilated, const Line& line) {
    constexpr int phases = 48;
    const auto n = double(dilated.size());
    const int windows = int(std::clamp(n * frame / 12, 4.0, 24.0));
    int voters = 0;
    int agree = 0;
    for (int i = 0; i < windows; ++i) {
        const double from = std::floor(n * i / windows);
        const double to = std::floor(n * (i + 1) / windows);
        double best = 0;
        for (int j = 0; j < phases; ++j) {
            best = std::max(best, comb(dilated, {line.period, line.period * j / phases}, from, to));
        }
        if (best < 0.05) { continue; }
        ++voters;
        agree += comb(dilated, line, from, to) >= 0.8 * best ? 1 : 0;
    }
    return voters > 0 ? double(agree) / voters : 0;
}

}  // namespace

LatticeFit fitLattice(std::span<const float> env, std::span<const Peak> peaks, double bpm) {
    const double beat = 60 / bpm;
    LatticeFit out{beat};
    const double length = double(env.size()) * frame;
    if (length < 8 || beat < 4 * frame || beat > length / 4) { return out; }
    const std::vector<float> dilated = dilate(env);
    const Line coarse = bestComb(peaks, length, beat);
    const auto n = double(env.size());
    Line line = throughPeaks(peaks, coarse);
    line.phase = modulo(line.phase, line.period);
    const double coarseScore = comb(dilated, coarse, 0, n);
    double score = comb(dilated, line, 0, n);
    // A line that left its comb by more than the comb's own slack has found other peaks.
    if (std::abs(line.period / coarse.period - 1) > std::max(0.001, 6 / n) || score < 0.95 * coarseScore) {
        line = coarse;
        score = coarseScore;
    }
    out.period = line.period;
    out.phase = line.phase;
    out.strong = score > 1.5 * std::accumulate(env.begin(), env.end(), 0.0) / n;
    out.agreement = agreement(dilated, line);
    return out;
}

}  // namespace brindlehum::bars
