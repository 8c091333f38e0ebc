// Level study: finds a quiet head and a fading tail from the level envelope alone.
#include <algorithm>
#include <cmath>

#include "analysis/structure/structure.h"
#include "dsp/signal.h"

namespace brindlehum::Structure {
namespace {

constexpr double frameSeconds = 0.05;
constexpr int64_t framesAtOnce = 200;

double median(std::vector<double> values) {
    if (values.empty()) { return 0; }
    const auto middle = values.begin() + ptrdiff_t(values.size() / 2);
    std::ranges::nth_element(values, middle);
    return *middle;
}

// RMS in frames of 50 ms, averaged over 5.
std::vector<double> smoothLevel(const SignalView& x, int64_t frame) {
    const int64_t n = x.size() / frame;
    std::vector<double> level;
    std::vector<float> buffer;
    for (int64_t i = 0; i < n; i += framesAtOnce) {
        const int64_t count = std::min(framesAtOnce, n - i);
        const std::span<const float> part = x.range(i * frame, (i + count) * frame, buffer);
        for (int64_t j = 0; j < count; ++j) { level.push_back(Signal::rms(part, j * frame, (j + 1) * frame)); }
    }
    std::vector<double> out;
    for (int64_t i = 0; i < n; ++i) {
        const int64_t from = std::max<int64_t>(i - 2, 0);
        const int64_t to = std::min(i + 2, n - 1);
        double sum = 0;
        for (int64_t j = from; j <= to; ++j) { sum += level[size_t(j)]; }
        out.push_back(sum / double(to - from + 1));
    }
    return out;
}

// Counts the values that `test` accepts among up to `count` frames starting at `from`.
template <class Test>
int64_t countFrom(const std::vector<double>& level, int64_t from, int64_t count, Test test) {
    const auto end = std::min(from + count, int64_t(level.size()));
    return from < end ? std::count_if(level.begin() + from, level.begin() + end, test) : 0;
}

std::optional<double> findBodyEntry(const std::vector<double>& level, double middle) {
    const auto n = int64_t(level.size());
    const double head = median({level.begin(), level.begin() + std::min<int64_t>(n, 40)});
    if (head > 0.75 * middle || n < 71) { return std::nullopt; }
    const double threshold = std::max(2 * head, 0.8 * middle);
    const auto loud = [threshold](double x) { return x >= threshold; };
    for (int64_t i = 40; i < std::min<int64_t>(n - 30, 1200); ++i) {
        if (loud(level[size_t(i)]) && countFrom(level, i, 30, loud) >= 21) { return frameSeconds * double(i); }
    }
    return std::nullopt;
}

std::optional<double> findTailStart(const std::vector<double>& level, double middle) {
    const auto n = int64_t(level.size());
    const double length = frameSeconds * double(n);
    const auto first = int64_t(std::llround((length - std::min(length, 20.0)) / frameSeconds));
    const double quiet = 0.35 * middle;
    const auto isQuiet = [quiet](double x) { return x < quiet; };
    for (int64_t i = n - 21; i >= first; --i) {
        if (countFrom(level, i, 20, isQuiet) < 16) { continue; }
        while (i > first && level[size_t(i) - 1] < 1.5 * quiet) { --i; }
        return frameSeconds * double(i);
    }
    return std::nullopt;
}

}  // namespace

Cooked cook(const SignalView& mono, double sr) {
    const std::vector<double> level = smoothLevel(mono, std::max<int64_t>(std::llround(frameSeconds * sr), 1));
    if (level.size() < 11) { return {}; }
    const double middle = median(level);
    if (!(middle > 0)) { return {}; }
    return {findBodyEntry(level, middle), findTailStart(level, middle)};
}

float windowZcr(const SignalView& x, int64_t from, int64_t to) {
    std::vector<float> buffer;
    const std::span<const float> part = x.range(from, to, buffer);
    if (part.size() < 2) { return 0; }
    int64_t crossings = 0;
    for (size_t i = 1; i < part.size(); ++i) { crossings += int64_t((part[i - 1] < 0) != (part[i] < 0)); }
    return float(double(crossings) / double(part.size()));
}

}  // namespace brindlehum::Structure
