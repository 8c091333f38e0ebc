// The memory layout of spectra, shared by filters and convolver.
#pragma once

#include <stdexcept>

#include "spectral_sum.h"

namespace brindlehum {

// The bins of a padded spectrum: partition + 1, rounded up to whole tiles.
inline int paddedBins(int partition) {
    return (partition / tileBins + 1) * tileBins;
}

inline void checkPartition(int partition) {
    if (partition < 16 || (partition & (partition - 1)) != 0) {
        throw std::invalid_argument("a partition is a power of two from 16 up");
    }
}

}  // namespace brindlehum
