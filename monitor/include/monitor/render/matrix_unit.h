// MatrixUnit: the monitor's real-time path, from the inputs of a duplex stream to its outputs.
//
// The path is the player's own (RenderContext on the device's inputs). Around it stand what a monitor needs besides: it
// begins in silence and rises once its inputs are linked, falls before it is stopped, and lets nothing out that isn't a
// number.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>

#include "core/mn_cells.h"
#include "mix/render/render_context.h"
#include "monitor/render/bus_tap.h"
#include "monitor/render/speaker_align.h"
#include "platform/audio_system.h"

namespace brindlehum {

class MatrixUnit : public RenderTarget {
public:
    static constexpr double riseSeconds = 0.1;
    static constexpr double fallSeconds = 0.02;
    // The links of one source come up one after another: for so long none may be new before it rises.
    static constexpr double settleSeconds = 0.02;

    MatrixUnit();
    ~MatrixUnit() override;
    MatrixUnit(const MatrixUnit&) = delete;
    MatrixUnit& operator=(const MatrixUnit&) = delete;

    RenderContext& context() { return context_; }
    // What is heard, for a reader on another thread.
    BusTap& tap() { return tap_; }
    // Behind the matrix.
    SpeakerAlign& align() { return align_; }

    // The device's render thread: never allocates, locks, logs or throws.
    int32_t render(uint32_t frames, const DeviceBuffers& buffers) noexcept override;
    bool holdsReplaced() const noexcept override { return context_.holdsReplaced(); }

    // Control side, only while no render runs: the next block begins in silence. `sampleRate` in Hz.
    void restart(double sampleRate) noexcept;
    // Rises to the full level, or falls to silence. Control side.
    void setAudible(bool audible) noexcept { audible_.store(audible, std::memory_order_relaxed); }
    // Whether the last block ended in silence after setAudible(false). Control side.
    bool isSilent() const noexcept { return silent_.load(std::memory_order_acquire); }

    // The largest magnitude since the last take, 1 is full scale; not a number when a sample was none. Control, one
    // thread. Channels from 0.
    float takeInputPeak(int channel) const noexcept { return mn_peaks_take(inputPeaks_, channel); }
    float takeOutputPeak(int channel) const noexcept { return context_.takePeak(channel); }
    // Blocks of an output channel that were muted since they held what isn't a number.
    uint64_t faults() const noexcept { return faults_.load(std::memory_order_relaxed); }

private:
    void measureInputs(const DeviceBuffers& buffers, int32_t frames) noexcept;
    bool isSettled(const DeviceBuffers& buffers, int32_t frames) noexcept;
    void guard(int channel, float* plane, int32_t frames) noexcept;

    RenderContext context_;
    BusTap tap_;
    SpeakerAlign align_;
    mn_peaks* inputPeaks_;
    std::atomic<bool> audible_ = true;
    std::atomic<bool> silent_ = true;
    std::atomic<uint64_t> faults_ = 0;
    double sampleRate_ = 48000;
    // Render thread:
    double level_ = 0;     // at the end of the last block, 0 to 1
    int32_t linked_ = 0;   // inputs of the last block that had a buffer
    int32_t settled_ = 0;  // frames since that has changed
};

}  // namespace brindlehum
