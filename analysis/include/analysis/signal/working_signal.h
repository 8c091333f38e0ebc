// WorkingSignal: the working signal of a piece (mono, Signal::analysisRate), in memory or, if it is long, on disk.
// SignalView: ranges of a signal, wherever it lies.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "base/scratch_file.h"

namespace brindlehum {

// Append all blocks, then finish; from then on the signal doesn't change and may be read on any number of threads.
class WorkingSignal {
public:
    // Samples that stay in memory: 25 minutes, 134 MB.
    static constexpr int64_t inMemory = int64_t(1) << 25;

    explicit WorkingSignal(int64_t limit = inMemory) : limit_(limit) {}
    // Makes room for the samples that are expected.
    void reserve(int64_t samples);
    // Usable samples. Throws Error when there is no room on disk.
    void append(std::span<const float> block);
    void finish();

    int64_t size() const { return onDisk_ + int64_t(samples_.size()); }
    // x[from ..< to] of a finished signal, where 0 <= from <= to <= size(). Lies in `buffer` if it isn't in memory;
    // the view lasts as long as both do. Throws Error when it can't be read.
    std::span<const float> range(int64_t from, int64_t to, std::vector<float>& buffer) const;

private:
    void moveToDisk();

    int64_t limit_;
    std::vector<float> samples_;  // all of them, or those not yet on disk
    int64_t onDisk_ = 0;          // samples
    std::shared_ptr<ScratchFile> file_;
};

// Borrows the signal. Samples that aren't usable numbers count as silence.
class SignalView {
public:
    SignalView() = default;
    SignalView(std::span<const float> samples) : samples_(samples), size_(int64_t(samples.size())) {}
    SignalView(const std::vector<float>& samples) : SignalView(std::span(samples)) {}
    SignalView(const WorkingSignal& signal) : signal_(&signal), size_(signal.size()) {}

    int64_t size() const { return size_; }
    // x[from ..< to], clamped to the signal; in `buffer` where it needs a copy.
    std::span<const float> range(int64_t from, int64_t to, std::vector<float>& buffer) const;
    // Root mean square of x[from ..< to], clamped to the signal; 0 for an empty range.
    float rms(int64_t from, int64_t to) const;

private:
    std::span<const float> samples_;
    const WorkingSignal* signal_ = nullptr;
    int64_t size_ = 0;
};

}  // namespace brindlehum
