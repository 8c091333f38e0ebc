// Averages over neighbouring bins, by a window that widens with frequency.
#pragma once

#include <cstdint>

#include "upmix_kernels.h"

namespace brindlehum::core {

// Bins on each side of bin k in its window: 2 at the bottom, one more every 20 bins.
constexpr int32_t smoothingReach(int32_t k) {
    return k / 20 + 2;
}

// Running sums, one longer than the bins, of the three powers.
struct RunningSums {
    double* left;
    double* right;
    double* cross;
};

// `out` gets the mean over the bins within reach that exist.
void smoothPowers(PairPowers averages, RunningSums sums, PairPowers out, int32_t bins);

// The root of what rho would show by chance in bin k, given the size of its window.
float chanceCorrelation(int32_t k);

}  // namespace brindlehum::core
