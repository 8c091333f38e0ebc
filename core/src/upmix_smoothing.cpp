// Averages over neighbouring bins from running sums in doubles.
#include "upmix_smoothing.h"

#include <algorithm>
#include <cmath>

namespace brindlehum::core {
namespace {

void runningSums(PairPowers in, RunningSums sums, int32_t bins) {
    double left = 0;
    double right = 0;
    double cross = 0;
    for (int32_t k = 0; k < bins; ++k) {
        sums.left[k] = left;
        sums.right[k] = right;
        sums.cross[k] = cross;
        left += double(in.left[k]);
        right += double(in.right[k]);
        cross += double(in.cross[k]);
    }
    sums.left[bins] = left;
    sums.right[bins] = right;
    sums.cross[bins] = cross;
}

// Bins from `first` to before `end`, which have the same reach, all of it within the spectrum.
void meansInside(const double* sums, float* out, int32_t first, int32_t end, int32_t reach) {
    const double scale = 1.0 / (2 * reach + 1);
    const double* above = sums + first + reach + 1;
    const double* below = sums + first - reach;
    for (int32_t i = 0; i < end - first; ++i) { out[first + i] = float((above[i] - below[i]) * scale); }
}

void meansAtTheEdge(const double* sums, float* out, int32_t first, int32_t end, int32_t reach, int32_t bins) {
    for (int32_t k = first; k < end; ++k) {
        const int32_t low = std::max(k - reach, 0);
        const int32_t high = std::min(k + reach + 1, bins);
        out[k] = float((sums[high] - sums[low]) / (high - low));
    }
}

void means(const double* sums, float* out, int32_t bins) {
    for (int32_t first = 0; first < bins; first += 20) {
        const int32_t end = std::min(first + 20, bins);
        const int32_t reach = smoothingReach(first);
        if (first >= reach && end + reach <= bins) {
            meansInside(sums, out, first, end, reach);
        } else {
            meansAtTheEdge(sums, out, first, end, reach, bins);
        }
    }
}

}  // namespace

void smoothPowers(PairPowers averages, RunningSums sums, PairPowers out, int32_t bins) {
    runningSums(averages, sums, bins);
    means(sums.left, out.left, bins);
    means(sums.right, out.right, bins);
    means(sums.cross, out.cross, bins);
}

float chanceCorrelation(int32_t k) {
    return 1.1F / std::sqrt(float(2 * smoothingReach(k) + 1));
}

}  // namespace brindlehum::core
