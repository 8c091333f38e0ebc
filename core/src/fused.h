// fusedMultiplyAdd: a x b + c rounded once, on processors with and without an instruction for it.
#pragma once

#include <bit>
#include <cmath>
#include <cstdint>

namespace brindlehum::core {

// In doubles the product of two floats is exact. Rounding the sum to odd and then to float avoids double rounding
// (Boldo and Melquiond, "Emulation of a FMA and correctly rounded sums", 2008). A libm call instead would cost some 50
// times as much as an instruction.
inline float emulatedMultiplyAdd(float a, float b, float c) {
    const double product = double(a) * double(b);
    const double sum = product + double(c);
    const double back = sum - product;
    const double error = (product - (sum - back)) + (double(c) - back);
    auto bits = std::bit_cast<int64_t>(sum);
    // NaN errors (of infinite or NaN sums) compare false both ways and change nothing.
    if ((error > 0 || error < 0) && (bits & 1) == 0) { bits += (error > 0) == (sum > 0) ? 1 : -1; }
    return float(std::bit_cast<double>(bits));
}

inline float fusedMultiplyAdd(float a, float b, float c) {
#ifdef FP_FAST_FMAF
    return std::fma(a, b, c);
#else
    return emulatedMultiplyAdd(a, b, c);
#endif
}

}  // namespace brindlehum::core
