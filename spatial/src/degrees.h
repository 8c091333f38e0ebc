// Counts of Ambisonic components in ACN order.
#pragma once

#include <cmath>
#include <cstddef>

namespace brindlehum::Ambisonics {

inline size_t componentCount(int order) {
    return size_t((order + 1) * (order + 1));
}

// The degree l of component k.
inline int degreeOf(size_t k) {
    return int(std::sqrt(double(k)) + 1e-9);
}

}  // namespace brindlehum::Ambisonics
