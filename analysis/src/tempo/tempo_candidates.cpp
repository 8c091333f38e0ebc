// Tempo candidates: peaks of the envelope's autocorrelation, each scored together with its multiples.
#include <algorithm>
#include <cmath>

#include "analysis/tempo/onset_time.h"
#include "analysis/tempo/tempo_analyzer.h"
#include "dsp/signal.h"

namespace brindlehum::TempoAnalyzer {
namespace {

using Candidate = TempoResult::Candidate;

// Mean of the autocorrelation at the lag and at its multiples below `n`. The fourth multiple counts more than the
// third, since music repeats in fours.
double harmonicScore(std::span<const float> acf, int64_t lag, int64_t n) {
    static constexpr double weights[] = {1.0, 0.6, 0.3, 0.4};
    double sum = 0;
    double used = 0;
    for (int64_t m = 1; m <= 4; ++m) {
        if (m * lag >= n || m * lag >= int64_t(acf.size())) { continue; }
        sum += weights[m - 1] * double(acf[size_t(m * lag)]);
        used += weights[m - 1];
    }
    return used > 0 ? sum / used : 0;
}

// The vertex of the parabola through the lag and its neighbours, at most half a lag away.
double refine(std::span<const float> acf, int64_t lag) {
    if (lag < 1 || lag >= int64_t(acf.size()) - 1) { return double(lag); }
    const double a = acf[size_t(lag - 1)];
    const double b = acf[size_t(lag)];
    const double c = acf[size_t(lag + 1)];
    const double curvature = a - 2 * b + c;
    if (curvature == 0) { return double(lag); }
    return double(lag) + std::clamp((a - c) / (2 * curvature), -0.5, 0.5);
}

// Autocorrelation of the envelope with its mean removed, scaled to 1 at lag 0.
std::vector<float> normalizedAutocorrelation(std::span<const float> env, int64_t maxLag) {
    double sum = 0;
    for (const float value : env) { sum += value; }
    const auto mean = float(sum / double(env.size()));
    std::vector<float> centred(env.begin(), env.end());
    for (float& value : centred) { value -= mean; }
    std::vector<float> acf = Signal::autocorrelation(centred, maxLag);
    const float scale = acf[0] + 1e-9F;
    for (float& value : acf) { value /= scale; }
    return acf;
}

// trunc(frames) of one beat at `bpm`, at most `limit`; also defined for a tempo of 0.
int64_t wholeLag(double bpm, int64_t limit) {
    const double frames = OnsetTime::period(bpm);
    return bpm > 0 && frames < double(limit) ? int64_t(frames) : limit;
}

}  // namespace

std::vector<Candidate> candidates(std::span<const float> env, double lo, double hi, std::optional<double> center) {
    const auto n = int64_t(env.size());
    if (n < 9) { return {}; }
    const int64_t shortest = std::max<int64_t>(wholeLag(hi, n), 2);
    const int64_t longest = wholeLag(lo, n);
    const int64_t end = std::min(n - 5, longest);
    if (shortest + 2 >= end) { return {}; }
    const std::vector<float> acf = normalizedAutocorrelation(env, std::min(4 * longest + 4, n));
    std::vector<double> scores;
    for (int64_t lag = shortest; lag < end; ++lag) { scores.push_back(harmonicScore(acf, lag, n)); }

    std::vector<Candidate> found;
    for (size_t i = 1; i + 1 < scores.size(); ++i) {
        if (scores[i - 1] > scores[i] || scores[i + 1] > scores[i]) { continue; }
        const double bpm = OnsetTime::tempo(refine(acf, shortest + int64_t(i)));
        // Keep the faster of two close peaks, which comes first because lags run upward.
        const auto close = [bpm](const Candidate& c) { return std::abs(bpm - c.bpm) / bpm <= 0.03; };
        if (std::ranges::any_of(found, close)) { continue; }
        const double octaves = std::log2(bpm / center.value_or(120)) / 1.2;
        found.push_back({bpm, scores[i], scores[i] * std::exp(-0.5 * octaves * octaves)});
    }
    std::ranges::stable_sort(found, std::ranges::greater{}, &Candidate::ranked);
    if (found.size() > 12) { found.resize(12); }
    return found;
}

std::vector<MapScore> tempoMap(std::span<const float> env, double bpm, double winSec, double hopSec) {
    const auto n = int64_t(env.size());
    const auto window = int64_t(winSec * OnsetTime::frameRate);
    const auto hop = std::max<int64_t>(int64_t(hopSec * OnsetTime::frameRate), 1);
    std::vector<MapScore> map;
    for (int64_t start = 0; start < std::max<int64_t>(n - window, 1); start += hop) {
        if (start >= n) { break; }
        const auto part = env.subspan(size_t(start), size_t(std::min(window, n - start)));
        double sum = 0;
        for (const float value : part) { sum += value; }
        const double mean = sum / double(part.size());
        double squares = 0;
        for (const float value : part) { squares += (value - mean) * (value - mean); }
        if (std::sqrt(squares / double(part.size())) < 0.0001) { continue; }
        const auto best = candidates(part, bpm / 1.3, bpm * 1.3, bpm);
        if (best.empty()) { continue; }
        map.push_back({winSec / 2 + double(start) / OnsetTime::frameRate, best[0].bpm, best[0].score});
    }
    return map;
}

}  // namespace brindlehum::TempoAnalyzer
