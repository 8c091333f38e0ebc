#include "bars/beat_path.h"

#include <algorithm>
#include <cmath>

#include "analysis/tempo/onset_time.h"
#include "bars/envelope.h"

namespace brindlehum::bars {
namespace {

constexpr double tightness = 150;  // the cost of an interval that is e times too long or short

double deviation(std::span<const float> env) {
    double sum = 0;
    double squares = 0;
    for (const float x : env) {
        sum += x;
        squares += double(x) * x;
    }
    const double mean = sum / double(env.size());
    return std::sqrt(std::max(squares / double(env.size()) - mean * mean, 0.0));
}

}  // namespace

std::vector<double> beatPath(std::span<const float> env, double bpm) {
    const double period = OnsetTime::period(bpm);
    const auto n = int64_t(env.size());
    if (!(period >= 4) || period * 2 > double(n)) { return {}; }
    const auto shortest = int64_t(std::round(0.75 * period));
    const auto longest = int64_t(std::round(1.33 * period));
    std::vector<double> costs;  // of the intervals from the shortest to the longest
    for (int64_t lag = shortest; lag <= longest; ++lag) {
        const double octaves = std::log(double(lag) / period);
        costs.push_back(tightness * octaves * octaves);
    }
    const double scale = 1 / (deviation(env) + 1e-9);
    std::vector<double> scores(env.size());
    std::vector<int64_t> before(env.size(), -1);  // the beat that leads to each
    for (int64_t i = 0; i < n; ++i) {
        double best = 0;
        for (int64_t lag = shortest; lag <= std::min(longest, i); ++lag) {
            const double score = scores[size_t(i - lag)] - costs[size_t(lag - shortest)];
            if (score > best) {
                best = score;
                before[size_t(i)] = i - lag;
            }
        }
        scores[size_t(i)] = best + scale * double(env[size_t(i)]);
    }
    const auto last = std::max_element(scores.end() - std::min(longest, n), scores.end());
    std::vector<double> beats;
    for (int64_t i = last - scores.begin(); i >= 0; i = before[size_t(i)]) {
        beats.push_back(peakTime(env, size_t(i)));
    }
    std::ranges::reverse(beats);
    return beats;
}

}  // namespace brindlehum::bars
