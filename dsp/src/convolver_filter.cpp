// ConvolverFilter: impulse responses cut into partitions and transformed.
#include <algorithm>
#include <stdexcept>

#include "dsp/partitioned_convolver.h"
#include "dsp/real_fft.h"
#include "spectrum_shape.h"

namespace brindlehum {

ConvolverFilter::ConvolverFilter(const std::vector<std::vector<float>>& impulses, int partition)
    : partition_(partition), partitions_(0), outputs_(int(impulses.size())) {
    checkPartition(partition);
    size_t taps = 1;
    for (const auto& impulse : impulses) { taps = std::max(taps, impulse.size()); }
    const auto length = size_t(partition);
    partitions_ = int((taps + length - 1) / length);
    const auto stride = size_t(paddedBins(partition));
    spectra_ = makeAligned<std::complex<float>>(stride * impulses.size() * size_t(partitions_));
    RealFFT fft(2 * partition);
    std::vector<float> block(2 * length);
    auto* spectrum = spectra_.get();
    for (const auto& impulse : impulses) {
        for (size_t start = 0; start < length * size_t(partitions_); start += length) {
            std::ranges::fill(block, 0.0F);
            const size_t from = std::min(start, impulse.size());
            std::copy_n(impulse.begin() + long(from), std::min(length, impulse.size() - from), block.begin());
            fft.forward(block.data(), spectrum);
            spectrum += stride;
        }
    }
}

const std::complex<float>* ConvolverFilter::spectrum(int output, int part) const {
    return spectra_.get() + int64_t(output * partitions_ + part) * paddedBins(partition_);
}

}  // namespace brindlehum
