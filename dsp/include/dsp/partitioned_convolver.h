// Many-in, many-out convolution by uniform partitions, without latency for any block size.
//
// Overlap-save (Gardner 1995; Wefers 2015, uniform partitions) with a frequency-domain delay line per input. A
// call with fewer frames than a partition transforms the partition in hand again, so any block size gives the
// very same output, without latency; blocks of whole partitions cost least.
#pragma once

#include <complex>
#include <memory>
#include <vector>

#include "dsp/aligned_array.h"

namespace brindlehum {

// The spectra of one input's filter to each output. Immutable once made; shared between sets.
class ConvolverFilter {
public:
    // `impulses`: one impulse response an output. Control side.
    ConvolverFilter(const std::vector<std::vector<float>>& impulses, int partition);
    int partition() const { return partition_; }
    int partitions() const { return partitions_; }
    int outputs() const { return outputs_; }
    // The partition + 1 bins of one partition of one output, zero-padded to a multiple of 8 on a cache line.
    const std::complex<float>* spectrum(int output, int part) const;

private:
    int partition_, partitions_, outputs_;
    AlignedArray<std::complex<float>> spectra_;
};

// Construction on the control side; reset and process are real-time safe, on one thread at a time.
class PartitionedConvolver {
public:
    // Filters of up to `maxTaps` taps (longer ones are cut to whole partitions), in partitions of `partition` frames, a
    // power of two of at least 16. Throws std::invalid_argument.
    PartitionedConvolver(int inputs, int outputs, int partition, int maxTaps);
    ~PartitionedConvolver();

    // Forgets all input.
    void reset() noexcept;

    // Convolves `frames` frames (any count) of `inputs` with `filters` (one an input, null for silence) and
    // stores the sums in `outputs`. Where `previous` (may be null: no change) names another filter for an input,
    // the output fades from the old filter to the new one linearly over this call, ending on the new one.
    void process(const float* const* inputs, const ConvolverFilter* const* filters,
                 const ConvolverFilter* const* previous, float* const* outputs, int frames) noexcept;

private:
    struct State;
    std::unique_ptr<State> state_;
};

}  // namespace brindlehum
