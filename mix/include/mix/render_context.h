// RenderContext: the real-time half of playback, all state and buffers of the device callback.
//
// Control publishes a ring and a configuration through slots, data first, and keeps what it replaced for three
// seconds. Any change is crossfaded over the one block that meets it.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "core/mn_cells.h"
#include "core/mn_mix.h"
#include "core/mn_ring.h"
#include "platform/audio_system.h"

namespace brindlehum {

class BinauralStage;

class RenderContext : public RenderTarget {
public:
    static constexpr int maxFrames = 4096;
    static constexpr int maxSourceChannels = 64;
    static constexpr int maxVirtualSpeakers = 32;
    static constexpr int maxDeviceChannels = 256;

    RenderContext();
    ~RenderContext() override;
    RenderContext(const RenderContext&) = delete;
    RenderContext& operator=(const RenderContext&) = delete;

    // The device's render thread: neither allocates, locks, logs nor throws. Frames beyond 4096 stay silent.
    int32_t render(uint32_t frames, const DeviceBuffers& buffers) noexcept override;

    // --- Cells that cross the threads.
    void setRing(mn_ring* ring) noexcept { mn_slot_store(ringSlot_, ring); }             // control
    void setConfig(mn_mix_config* config) noexcept { mn_slot_store(cfgSlot_, config); }  // control
    double position() const noexcept { return mn_f64_load(position_); }  // source position of the last frame read
    void setPosition(double frame) noexcept { mn_f64_store(position_, frame); }  // control
    bool finished() const noexcept { return mn_i64_load(finished_) != 0; }       // playback ran off the end
    void clearFinished() noexcept { mn_i64_store(finished_, 0); }                // control
    void setGain(double linear) noexcept { mn_f64_store(gain_, linear); }        // control
    double gain() const noexcept { return mn_f64_load(gain_); }

    // --- Control side, only while no render runs.
    void setBinauralStage(BinauralStage* stage) noexcept { binaural_ = stage; }
    void forgetPrevious() noexcept;

private:
    // [defined by its implementation]
    mn_slot* ringSlot_;
    mn_slot* cfgSlot_;
    mn_f64* position_;  // written by render
    mn_i64* finished_;  // render sets 1, control sets 0
    mn_f64* gain_;      // written by control
    BinauralStage* binaural_ = nullptr;
};

}  // namespace brindlehum
