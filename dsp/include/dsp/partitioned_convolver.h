// Many-in, many-out convolution by uniform partitions, without latency at any block size.
//
// Overlap-save (Gardner 1995; Wefers 2015, uniform partitions) with a frequency-domain delay line per input. A call
// with fewer frames than a partition transforms the unfinished partition again, so every block size gives the same
// output without latency; blocks of whole partitions cost least.
#pragma once

#include <complex>
#include <memory>
#include <vector>

#include "dsp/aligned_array.h"

namespace brindlehum {

// The spectra of one input's filter to each output. Immutable after construction; shared between sets.
class ConvolverFilter {
public:
    // `impulses`: one impulse response per output. Control side.
    ConvolverFilter(const std::vector<std::vector<float>>& impulses, int partition);
    int partition() const { return partition_; }
    int partitions() const { return partitions_; }
    int outputs() const { return outputs_; }
    // The partition + 1 bins of one partition for one output, zero-padded to a multiple of 8 and cache-line aligned.
    const std::complex<float>* spectrum(int output, int part) const;

private:
    int partition_, partitions_, outputs_;
    AlignedArray<std::complex<float>> spectra_;
};

// Construct on the control side; reset and process are real-time safe, on one thread at a time.
class PartitionedConvolver {
public:
    // Filters of up to `maxTaps` taps (longer ones are cut to whole partitions), in partitions of `partition` frames, a
    // power of two of at least 16. Throws std::invalid_argument.
    PartitionedConvolver(int inputs, int outputs, int partition, int maxTaps);
    ~PartitionedConvolver();

    // Forgets all input.
    void reset() noexcept;

    // Convolves `frames` frames (any count) of `inputs` with `filters` (one per input, null for silence) and stores the
    // sums in `outputs`. Where `previous` (null: no change) names another filter for an input, the output fades
    // linearly over this call from the old filter to the new one, and ends on the new one.
    void process(const float* const* inputs, const ConvolverFilter* const* filters,
                 const ConvolverFilter* const* previous, float* const* outputs, int frames) noexcept;

private:
    struct State;
    std::unique_ptr<State> state_;
};

}  // namespace brindlehum
