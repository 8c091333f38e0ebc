// How spectra lie in memory, for filters and convolver alike.
#pragma once

#include <stdexcept>

#include "spectral_sum.h"

namespace brindlehum {

// partition + 1 bins, in whole tiles.
inline int paddedBins(int partition) {
    return (partition / tileBins + 1) * tileBins;
}

inline void checkPartition(int partition) {
    if (partition < 16 || (partition & (partition - 1)) != 0) {
        throw std::invalid_argument("a partition is a power of two from 16 up");
    }
}

}  // namespace brindlehum
