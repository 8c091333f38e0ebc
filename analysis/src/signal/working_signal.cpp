// WorkingSignal: keeps short signals in memory and writes long ones to a scratch file.
#include "analysis/signal/working_signal.h"

#include <algorithm>
#include <cmath>

#include "dsp/signal.h"

namespace brindlehum {
namespace {

constexpr size_t writeBlock = size_t(1) << 18;  // samples, 1 MB
constexpr int64_t energyBlock = 1 << 18;

}  // namespace

void WorkingSignal::reserve(int64_t samples) {
    // The system commits memory only where samples are written, so a header's claim alone fills none.
    samples_.reserve(size_t(std::clamp<int64_t>(samples, 0, limit_)));
}

void WorkingSignal::append(std::span<const float> block) {
    samples_.insert(samples_.end(), block.begin(), block.end());
    if (size() <= limit_ || samples_.size() < writeBlock) { return; }
    moveToDisk();
}

void WorkingSignal::finish() {
    if (file_ && !samples_.empty()) { moveToDisk(); }
}

void WorkingSignal::moveToDisk() {
    if (!file_) { file_ = std::make_shared<ScratchFile>(); }
    file_->append(samples_.data(), samples_.size() * sizeof(float));
    onDisk_ += int64_t(samples_.size());
    if (samples_.capacity() > 2 * writeBlock) {
        samples_ = {};
        samples_.reserve(2 * writeBlock);
    }
    samples_.clear();
}

std::span<const float> WorkingSignal::range(int64_t from, int64_t to, std::vector<float>& buffer) const {
    const auto count = size_t(to - from);
    if (!file_) { return std::span(samples_).subspan(size_t(from), count); }
    buffer.resize(count);
    file_->read(from * int64_t(sizeof(float)), buffer.data(), count * sizeof(float));
    return buffer;
}

std::span<const float> SignalView::range(int64_t from, int64_t to, std::vector<float>& buffer) const {
    from = std::clamp<int64_t>(from, 0, size_);
    to = std::clamp(to, from, size_);
    if (signal_ != nullptr) { return signal_->range(from, to, buffer); }
    return Signal::usable(samples_.subspan(size_t(from), size_t(to - from)), buffer);
}

float SignalView::rms(int64_t from, int64_t to) const {
    from = std::max<int64_t>(from, 0);
    to = std::min(to, size_);
    if (from >= to) { return 0; }
    std::vector<float> buffer;
    double energy = 0;
    for (int64_t at = from; at < to; at += energyBlock) {
        energy += Signal::energy(range(at, std::min(at + energyBlock, to), buffer));
    }
    return float(std::sqrt(energy / double(to - from)));
}

}  // namespace brindlehum
