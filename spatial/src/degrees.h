// Counting of Ambisonic components in ACN order.
#pragma once

#include <cmath>
#include <cstddef>

namespace brindlehum::Ambisonics {

inline size_t componentCount(int order) {
    return static_cast<size_t>((order + 1) * (order + 1));
}

// Degree l of component k.
inline int degreeOf(size_t k) {
    return static_cast<int>(std::sqrt(static_cast<double>(k)) + 1e-9);
}

}  // namespace brindlehum::Ambisonics
