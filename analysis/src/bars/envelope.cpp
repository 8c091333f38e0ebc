#include "bars/envelope.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "analysis/tempo/onset_time.h"

namespace brindlehum::bars {
namespace {

constexpr float sounds = 0.12F;  // an onset this strong belongs to the music

double mean(std::span<const float> env) {
    return std::accumulate(env.begin(), env.end(), 0.0) / double(std::max<size_t>(env.size(), 1));
}

double autocovariance(std::span<const float> env, double middle, size_t lag) {
    double sum = 0;
    for (size_t i = lag; i < env.size(); ++i) { sum += (env[i] - middle) * (env[i - lag] - middle); }
    return sum;
}

bool isPeak(std::span<const float> env, size_t i) {
    return i > 0 && i + 1 < env.size() && env[i] > env[i - 1] && env[i] >= env[i + 1];
}

}  // namespace

double accent(std::span<const float> env, double t) {
    constexpr int64_t reach = 2;
    const auto n = int64_t(env.size());
    const auto centre = std::llround(t * OnsetTime::frameRate);
    if (centre < 0 || centre >= n) { return 0; }
    const auto from = env.begin() + std::max<int64_t>(centre - reach, 0);
    const auto to = env.begin() + std::min<int64_t>(centre + reach + 1, n);
    return *std::max_element(from, to);
}

double valueAt(std::span<const float> env, double t) {
    const double at = t * OnsetTime::frameRate;
    if (!(at >= 0) || at + 1 >= double(env.size())) { return 0; }
    const auto i = size_t(at);
    return env[i] + (at - double(i)) * (env[i + 1] - env[i]);
}

double meanAccent(std::span<const float> env, std::span<const double> times) {
    double sum = 0;
    for (const double t : times) { sum += accent(env, t); }
    return times.empty() ? 0 : sum / double(times.size());
}

double peakTime(std::span<const float> env, size_t i) {
    if (!isPeak(env, i)) { return double(i) / OnsetTime::frameRate; }
    const double a = env[i - 1];
    const double b = env[i];
    const double c = env[i + 1];
    const double offset = 0.5 * (a - c) / (a - 2 * b + c);  // b > a, so the denominator is below 0
    return (double(i) + std::clamp(offset, -0.5, 0.5)) / OnsetTime::frameRate;
}

std::vector<Peak> peaks(std::span<const float> env) {
    std::vector<Peak> out;
    for (size_t i = 1; i + 1 < env.size(); ++i) {
        if (env[i] > 0.06F && isPeak(env, i)) { out.push_back({peakTime(env, i), env[i]}); }
    }
    return out;
}

double firstAttack(std::span<const float> env) {
    size_t i = size_t(std::ranges::find_if(env, [](float x) { return x > sounds; }) - env.begin());
    if (i == env.size()) { i = 0; }
    while (i + 1 < env.size() && env[i + 1] >= env[i]) { ++i; }
    return double(i) / OnsetTime::frameRate + attackDelay;
}

double lastAttack(std::span<const float> env) {
    size_t i = env.empty() ? 0 : env.size() - 1;
    while (i > 0 && !(env[i] > sounds)) { --i; }
    if (i == 0 && !env.empty()) { i = env.size() - 1; }
    while (i > 0 && env[i - 1] >= env[i]) { --i; }
    return double(i) / OnsetTime::frameRate + attackDelay;
}

double likeness(std::span<const float> env, double seconds) {
    const auto lag = size_t(std::max(seconds * OnsetTime::frameRate, 0.0));
    if (lag + 2 >= env.size()) { return 0; }
    const double middle = mean(env);
    const double none = autocovariance(env, middle, 0);
    if (!(none > 0)) { return 0; }
    return std::max(autocovariance(env, middle, lag), autocovariance(env, middle, lag + 1)) / none;
}

}  // namespace brindlehum::bars
