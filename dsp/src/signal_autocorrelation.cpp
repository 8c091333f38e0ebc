// Autocorrelation: 16 lags at a time against one broadcast sample, in versions for different processors.
#include <algorithm>
#include <cstring>

#include "dsp/signal.h"

namespace brindlehum::Signal {
namespace {

constexpr int64_t group = 16;
using Lanes = double __attribute__((vector_size(4 * sizeof(double))));

// r[0 ..< 16] = sum of x[i] x[i + lag + 0 ..< 16] for i below `count`.
__attribute__((always_inline)) inline void sumLags(const double* x, int64_t count, int64_t lag, double* r) {
    Lanes sums[4] = {};
    for (int64_t i = 0; i < count; ++i) {
        for (int v = 0; v < 4; ++v) {
            Lanes later;
            std::memcpy(&later, x + i + lag + 4 * v, sizeof later);
            sums[v] += x[i] * later;
        }
    }
    std::memcpy(r, sums, sizeof sums);
}

using SumLags = void (*)(const double*, int64_t, int64_t, double*);
void sumLagsPlain(const double* x, int64_t count, int64_t lag, double* r) {
    sumLags(x, count, lag, r);
}

#if defined(__x86_64__)
__attribute__((target("avx2,fma"))) void sumLagsAvx2(const double* x, int64_t count, int64_t lag, double* r) {
    sumLags(x, count, lag, r);
}
#endif

SumLags fastestSumLags() {
#if defined(__x86_64__)
    if (__builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma")) { return sumLagsAvx2; }
#endif
    return sumLagsPlain;
}

}  // namespace

std::vector<float> autocorrelation(std::span<const float> x, int64_t maxLag) {
    static const SumLags sum = fastestSumLags();
    const auto count = int64_t(x.size());
    const int64_t lags = std::max<int64_t>(std::min(count, maxLag), 1);
    // Pad with zeros, so that every group of lags runs at full width.
    std::vector<double> padded(x.begin(), x.end());
    padded.resize(x.size() + group, 0.0);
    std::vector<float> result(size_t(lags), 0.0F);
    for (int64_t lag = 0; lag < lags; lag += group) {
        double r[group];
        sum(padded.data(), std::max<int64_t>(count - lag, 0), lag, r);
        for (int64_t k = lag; k < std::min(lag + group, lags); ++k) { result[size_t(k)] = float(r[k - lag]); }
    }
    return result;
}

}  // namespace brindlehum::Signal
