// RenderContext: the real-time half of playback, with all state and buffers of the device callback.
//
// The control side publishes a ring and a configuration through slots, each completed before its pointer is stored, and
// keeps replaced ones alive (see keepFor). Any change is crossfaded over the one block that meets it; only a
// configuration that begins to upmix the running sound first hears some of it, and takes over a few blocks later.
#pragma once

#include <array>
#include <cstdint>

#include "core/mn_cells.h"
#include "core/mn_mix.h"
#include "core/mn_ring.h"
#include "dsp/aligned_array.h"
#include "mix/render/config_mixer.h"
#include "mix/render/heard_position.h"
#include "platform/audio_system.h"

namespace brindlehum {

class BinauralStage;

class RenderContext : public RenderTarget {
public:
    static constexpr int maxFrames = ConfigMixer::maxFrames;
    static constexpr int maxSourceChannels = ConfigMixer::maxChannels;
    static constexpr int maxVirtualSpeakers = 32;
    static constexpr int maxDeviceChannels = 256;

    // Where the source's channels come from: a ring that a reader fills, or the inputs of the device's own block.
    enum class Feed : uint8_t { ring, device };

    // For blocks of up to `blockFrames` frames, 1 to maxFrames.
    explicit RenderContext(Feed feed = Feed::ring, int blockFrames = maxFrames);
    ~RenderContext() override;
    RenderContext(const RenderContext&) = delete;
    RenderContext& operator=(const RenderContext&) = delete;

    // Device's render thread: never allocates, locks, logs or throws. Frames beyond `blockFrames` stay silent.
    int32_t render(uint32_t frames, const DeviceBuffers& buffers) noexcept override;
    // What the device's channel (0 to maxDeviceChannels - 1) got at most in the last block that had frames; not finite
    // when a sample wasn't. Render thread.
    float magnitude(int channel) const noexcept { return magnitudes_[size_t(channel)]; }
    // While the next configuration's upmix hears the running sound.
    bool holdsReplaced() const noexcept override { return prepared_ != nullptr; }

    // --- Cells shared by both threads.
    void setRing(mn_ring* ring) noexcept { mn_slot_store(ringSlot_, ring); }  // control
    void setConfig(const mn_mix_config* config) noexcept {                    // control
        mn_slot_store(cfgSlot_, const_cast<mn_mix_config*>(config));          // render only reads it, as const
    }
    double position() const noexcept { return mn_f64_load(position_); }  // source position of the frame that is heard
    void setPosition(double frame) noexcept { mn_f64_store(position_, frame); }  // control
    bool finished() const noexcept { return mn_i64_load(finished_) != 0; }       // the last frame has been heard
    void clearFinished() noexcept { mn_i64_store(finished_, 0); }                // control
    void setGain(double linear) noexcept { mn_f64_store(gain_, linear); }        // control
    double gain() const noexcept { return mn_f64_load(gain_); }
    // The largest magnitude that the device's channel (from 0) was given since the last take, after the gain: 1 is full
    // scale; not a number when a sample was none. Control, one thread.
    float takePeak(int channel) const noexcept { return mn_peaks_take(peaks_, channel); }

    // The stage that renders configurations with `to_binaural`. Publish it before the first of them; with null they are
    // silent and all others still play. Keep a replaced stage as long as a replaced configuration. Control side.
    void setBinauralStage(BinauralStage* stage) noexcept { mn_slot_store(stageSlot_, stage); }

    // Drops the last block's ring and configuration and all sound left in the stage. Control side, only while no render
    // runs.
    void forgetPrevious() noexcept;

private:
    struct Ears {
        int32_t left = 0;
        int32_t right = 0;
    };

    const mn_mix_config* takenUp(mn_ring* ring, const mn_mix_config* config) noexcept;
    void prepare(const mn_mix_config* config, int32_t n) noexcept;
    void takeInputs(const DeviceBuffers& buffers) noexcept;
    void steadyBlock(mn_ring* ring, const mn_mix_config* config, int32_t n) noexcept;
    void changeBlock(mn_ring* ring, const mn_mix_config* config, int32_t n) noexcept;
    ConfigMixer::Input read(mn_ring* ring, float* const* planes, int32_t n, bool isHeard) noexcept;
    void storePosition(const mn_mix_config* config) noexcept;
    ConfigMixer::Destination destination() const noexcept;
    void spatialise(const mn_mix_config* config, int32_t n) noexcept;
    void applyGain(int32_t n) noexcept;
    void measure(int32_t n) noexcept;
    void addToDevice(int32_t channel, const float* signal, int32_t n) noexcept;

    mn_slot* ringSlot_;
    mn_slot* cfgSlot_;
    mn_slot* stageSlot_;
    mn_f64* position_;  // written by render
    mn_i64* finished_;  // render sets 1, control sets 0
    mn_f64* gain_;      // written by control
    mn_peaks* peaks_;   // raised by render, taken by control

    const Feed feed_;

    // All members below belong to the render thread.
    std::array<float, maxDeviceChannels> magnitudes_{};  // by channel of the device
    int blockFrames_;
    ConfigMixer mixer_;
    ConfigMixer::Input block_;  // of this block, while it has one
    HeardPosition heard_;
    double lastRead_ = 0;                 // source position of the last frame read
    const mn_upmix* prepared_ = nullptr;  // the upmix that is to take over, and
    int32_t preparedFrames_ = 0;          // how much of the running sound it has heard
    float lastGain_ = 1;                  // at the end of the last block
    mn_ring* prevRing_ = nullptr;
    const mn_mix_config* prevCfg_ = nullptr;
    BinauralStage* prevStage_ = nullptr;
    Ears ears_;             // of the last configuration with to_binaural
    int32_t tailLeft_ = 0;  // frames that the stage still rings on after its configuration was replaced

    AlignedArray<float> storage_;  // all planes below
    std::array<float*, maxSourceChannels> inA_{}, inB_{};
    std::array<const float*, maxSourceChannels> inputs_{};  // of a device feed
    float* silence_ = nullptr;
    int32_t inputChannels_ = 0;
    std::array<float*, maxVirtualSpeakers> bus_{};  // virtual speaker lanes
    float* binL_ = nullptr;
    float* binR_ = nullptr;
    std::array<float*, maxDeviceChannels> dev_{};  // the device's planes of this block
    int32_t deviceChannels_ = 0;                   // how many of them are in use
};

}  // namespace brindlehum
