// Renders the chain, and fades from one to the next.
#include "monitor/inserts/insert_chain.h"

#include <algorithm>
#include <utility>

namespace brindlehum {

InsertStages::InsertStages(const std::vector<std::shared_ptr<InsertUnit>>& units, int channels, double sampleRate) {
    std::vector<InsertShape> shapes;
    for (const auto& unit : units) {
        stages.push_back(std::make_unique<InsertStage>(unit, channels, sampleRate));
        shapes.push_back({unit->width, stages.back()->latency()});
    }
    latency = totalLatency(shapes);
}

InsertChain::InsertChain(int channels) : channels_(channels), samples_(size_t(channels) * 2 * PluginHost::maxFrames) {
    setSampleRate(48000);
    for (size_t c = 0; c < size_t(channels); ++c) {
        from_.push_back(samples_.data() + c * PluginHost::maxFrames);
        to_.push_back(samples_.data() + (c + size_t(channels)) * PluginHost::maxFrames);
    }
}

void InsertChain::publish(std::shared_ptr<InsertStages> stages) {
    kept_.push_back(std::move(stages));
    wanted_.store(kept_.back().get(), std::memory_order_release);
}

void InsertChain::collect() {
    if (kept_.empty() || heard_.load(std::memory_order_acquire) != kept_.back().get()) { return; }
    kept_.erase(kept_.begin(), kept_.end() - 1);
}

int32_t InsertChain::render(uint32_t frames, const DeviceBuffers& buffers) noexcept {
    inside_.store(true, std::memory_order_release);
    blocks_.fetch_add(1, std::memory_order_relaxed);
    const auto n = int32_t(std::min({frames, buffers.frames, PluginHost::maxFrames}));
    swapInSilence();
    takeIn(buffers, n);
    if (InsertStages* const heard = heard_.load(std::memory_order_relaxed)) {
        for (size_t i = 0; i < heard->stages.size(); ++i) {
            stage_.store(int(i), std::memory_order_relaxed);
            heard->stages[i]->process(from_.data(), to_.data(), n);
            std::swap(from_, to_);
        }
    }
    giveOut(buffers, n);
    inside_.store(false, std::memory_order_release);
    return 0;
}

void InsertChain::swapInSilence() noexcept {
    InsertStages* const wanted = wanted_.load(std::memory_order_acquire);
    if (wanted == heard_.load(std::memory_order_relaxed) || level_ > 0) { return; }
    holds_ = wanted != nullptr ? wanted->latency : 0;
    heard_.store(wanted, std::memory_order_release);
}

void InsertChain::takeIn(const DeviceBuffers& buffers, int32_t frames) noexcept {
    for (int c = 0; c < channels_; ++c) {
        const float* const plane = c < buffers.inputChannels ? buffers.inputs[c] : nullptr;
        plane != nullptr ? std::copy_n(plane, frames, from_[size_t(c)]) : std::fill_n(from_[size_t(c)], frames, 0.0F);
    }
}

void InsertChain::giveOut(const DeviceBuffers& buffers, int32_t frames) noexcept {
    const bool stays = wanted_.load(std::memory_order_relaxed) == heard_.load(std::memory_order_relaxed);
    const bool rises = stays && holds_ <= 0;
    const double step = rises ? step_ : -step_;
    for (int c = 0; c < std::min(channels_, buffers.channels); ++c) {
        float* const plane = buffers.planes[c];
        if (plane == nullptr) { continue; }
        if (rises && level_ == 1) {
            std::copy_n(from_[size_t(c)], frames, plane);
            continue;
        }
        for (int32_t i = 0; i < frames; ++i) {
            plane[i] = from_[size_t(c)][i] * float(std::clamp(level_ + step * (i + 1), 0.0, 1.0));
        }
    }
    level_ = std::clamp(level_ + step * frames, 0.0, 1.0);
    holds_ = stays ? std::max<int64_t>(holds_ - frames, 0) : holds_;
}

}  // namespace brindlehum
