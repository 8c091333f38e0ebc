// InsertChain: what is behind the monitor's matrix, as one render target: effect after effect, and a change of them
// that fades.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <vector>

#include "monitor/inserts/insert_stage.h"
#include "platform/audio_system.h"

namespace brindlehum {

// A chain as planned. Immutable but for its stages' audio side.
struct InsertStages {
    // In order; each for the latency that its unit has now.
    InsertStages(const std::vector<std::shared_ptr<InsertUnit>>& units, int channels, double sampleRate);

    std::vector<std::unique_ptr<InsertStage>> stages;
    int latency = 0;  // frames
};

class InsertChain : public RenderTarget {
public:
    static constexpr double fadeSeconds = 0.02;

    // `channels` of either direction; begins without effects and in silence.
    explicit InsertChain(int channels);
    InsertChain(const InsertChain&) = delete;
    InsertChain& operator=(const InsertChain&) = delete;

    // The device's thread: nothing of ours in it allocates, locks, logs or throws.
    int32_t render(uint32_t frames, const DeviceBuffers& buffers) noexcept override;

    // --- Control side.
    // Hz; only while no render runs.
    void setSampleRate(double sampleRate) noexcept { step_ = 1 / (fadeSeconds * sampleRate); }
    // Falls silent, goes over to `stages`, waits as long as they delay, and rises.
    void publish(std::shared_ptr<InsertStages> stages);
    // Frees what isn't heard any more; to be called now and then.
    void collect();
    // Blocks that have begun. One that doesn't end while this stands still hangs.
    uint64_t blocks() const noexcept { return blocks_.load(std::memory_order_relaxed); }
    bool isInside() const noexcept { return inside_.load(std::memory_order_acquire); }
    // The effect that runs now or ran last, from 0; -1 before any.
    int running() const noexcept { return stage_.load(std::memory_order_relaxed); }

private:
    void takeIn(const DeviceBuffers& buffers, int32_t frames) noexcept;
    void swapInSilence() noexcept;
    void giveOut(const DeviceBuffers& buffers, int32_t frames) noexcept;

    const int channels_;
    double step_ = 0;  // of the level, in a frame
    std::atomic<InsertStages*> wanted_ = nullptr;
    std::atomic<InsertStages*> heard_ = nullptr;
    std::atomic<uint64_t> blocks_ = 0;
    std::atomic<bool> inside_ = false;
    std::atomic<int> stage_ = -1;
    std::vector<std::shared_ptr<InsertStages>> kept_;  // control; the newest last
    // Audio thread:
    std::vector<float> samples_;
    std::vector<float*> from_, to_;  // planes
    double level_ = 0;               // at the end of the last block
    int64_t holds_ = 0;              // frames for which it stays silent
};

}  // namespace brindlehum
