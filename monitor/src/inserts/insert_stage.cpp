// One effect in the chain: its instances, and its bypass at the same time.
#include "monitor/inserts/insert_stage.h"

#include <algorithm>
#include <bit>
#include <cmath>

#include "mix/render/largest_magnitude.h"

namespace brindlehum {
namespace {

float towards(float now, float goal, float most) {
    return now < goal ? std::min(now + most, goal) : std::max(now - most, goal);
}

}  // namespace

int InsertUnit::latency() const noexcept {
    int most = 0;
    for (const auto& each : instances) { most = std::max(most, each->latency()); }
    return most;
}

DelayLines::DelayLines(int channels, int frames)
    : frames_(uint32_t(std::max(frames, 0))),
      mask_(std::bit_ceil(frames_ + PluginHost::maxFrames) - 1),
      lines_(frames_ > 0 ? size_t(channels) : 0, std::vector<float>(mask_ + 1)) {}

void DelayLines::pass(int channel, const float* in, float* out, int32_t count) noexcept {
    if (frames_ == 0) {
        std::copy_n(in, count, out);
        return;
    }
    float* const line = lines_[size_t(channel)].data();
    // In two pieces where the line's end is passed.
    const auto n = uint32_t(count);
    const uint32_t written = std::min(n, mask_ + 1 - at_);
    std::copy_n(in, written, line + at_);
    std::copy_n(in + written, n - written, line);
    const uint32_t from = (at_ - frames_) & mask_;
    const uint32_t read = std::min(n, mask_ + 1 - from);
    std::copy_n(line + from, read, out);
    std::copy_n(line, n - read, out + read);
}

InsertStage::InsertStage(std::shared_ptr<InsertUnit> unit, int channels, double sampleRate)
    : unit_(std::move(unit)),
      channels_(channels),
      latency_(unit_->latency()),
      step_(float(1 / (crossSeconds * sampleRate))),
      shares_(shares(channels, unit_->width)),
      lines_(channels, latency_),
      delayed_(PluginHost::maxFrames),
      portsIn_(size_t(unit_->width)),
      portsOut_(size_t(unit_->width)),
      wet_(unit_->isBypassed ? 0.0F : 1.0F),
      dry_(1 - wet_) {}

void InsertStage::process(const float* const* in, float* const* out, int32_t frames) noexcept {
    frames_ = uint32_t(frames);
    runInstances(in, out);
    guard(out, frames);
    const bool bypassed = unit_->isBypassed.load(std::memory_order_relaxed);
    const bool muted = unit_->isMuted.load(std::memory_order_relaxed);
    const float wetGoal = bypassed || muted ? 0.0F : 1.0F;
    const float dryGoal = bypassed ? 1.0F : 0.0F;
    const bool rests = wet_ == wetGoal && dry_ == dryGoal;
    for (int c = 0; c < channels_; ++c) {
        lines_.pass(c, in[c], rests && bypassed ? out[c] : delayed_.data(), frames);
        if (rests) { continue; }  // what a muted effect gives is silence already
        float wet = wet_;
        float dry = dry_;
        for (int32_t i = 0; i < frames; ++i) {
            wet = towards(wet, wetGoal, step_);
            dry = towards(dry, dryGoal, step_);
            out[c][i] = wet * out[c][i] + dry * delayed_[size_t(i)];
        }
    }
    lines_.advance(frames);
    wet_ = towards(wet_, wetGoal, step_ * float(frames));
    dry_ = towards(dry_, dryGoal, step_ * float(frames));
}

void InsertStage::runInstances(const float* const* in, float* const* out) noexcept {
    for (size_t i = 0; i < shares_.size(); ++i) {
        for (int port = 0; port < unit_->width; ++port) {
            const bool carries = port < shares_[i].count;
            portsIn_[size_t(port)] = carries ? in[shares_[i].first + port] : nullptr;
            portsOut_[size_t(port)] = carries ? out[shares_[i].first + port] : nullptr;
        }
        unit_->instances[i]->process(portsIn_.data(), portsOut_.data(), frames_);
    }
}

// From the first block that holds what isn't a number, the effect is silent until the control side makes it anew:
// its filters would go on with it.
void InsertStage::guard(float* const* out, int32_t frames) noexcept {
    bool isMuted = unit_->isMuted.load(std::memory_order_relaxed);
    for (int c = 0; !isMuted && c < channels_; ++c) { isMuted = !std::isfinite(largestMagnitude(out[c], frames)); }
    if (!isMuted) { return; }
    unit_->isMuted.store(true, std::memory_order_relaxed);
    for (int c = 0; c < channels_; ++c) { std::fill_n(out[c], frames, 0.0F); }
}

}  // namespace brindlehum
