// ConfigMixer: adds a block of source channels to the outputs, crossfaded where the configuration changes.
#pragma once

#include <array>
#include <cstdint>

#include "core/mn_mix.h"
#include "core/mn_upmix.h"
#include "dsp/aligned_array.h"

namespace brindlehum {

// Construct on the control side; all else is real-time safe, on one thread at a time. A configuration's upmix runs once
// a block, however many configurations share it, so that its sound never breaks off. Once its source has ended, it runs
// on silence until its last sound has passed.
class ConfigMixer {
public:
    static constexpr int maxFrames = 4096;
    static constexpr int maxChannels = 64;  // of a source
    // Samples from one plane of blocks of up to `blockFrames` to the next. A whole number of cache lines that isn't a
    // power of two: the same frames of 16 planes would otherwise fall into the same few sets of the first-level cache
    // and push each other out.
    static constexpr size_t planeStride(int blockFrames) { return size_t(blockFrames + 15) / 16 * 16 + 272; }

    // The channels of a source, one plane each; no planes when there is nothing to mix, or nothing more.
    struct Input {
        const float* const* planes = nullptr;
        int32_t channels = 0;
    };
    // A configuration and the source that it mixes. Silent when either is null or the source's width isn't the
    // configuration's: for an instant one of the two may be replaced before the other.
    struct Side {
        const mn_mix_config* config = nullptr;
        Input input;
    };
    // Row r is added to plane r; rows for null planes and rows beyond the last plane are dropped.
    struct Outputs {
        float* const* planes = nullptr;
        int32_t count = 0;
    };
    // Rows of configurations with to_binaural go to the speakers, all others to the device.
    struct Destination {
        Outputs device;
        Outputs speakers;
    };

    // For blocks of up to `blockFrames` frames, 1 to maxFrames.
    explicit ConfigMixer(int blockFrames = maxFrames);

    // Mixes a block in which nothing changes.
    void mix(const Side& side, int32_t frames, const Destination& to) noexcept;
    // Mixes a block that fades linearly from `before` to `after`; its last frame is all `after`. At least one frame.
    void fade(const Side& before, const Side& after, int32_t frames, const Destination& to) noexcept;

    // Lets the upmix of `side` hear a block that another configuration mixes, so that it can take over without a gap.
    void prepare(const Side& side, int32_t frames) noexcept;
    // Whether the upmix of `config` still sounds after its source has ended.
    bool ringsOn(const mn_mix_config* config) const noexcept;
    // No upmix sounds any more.
    void forget() noexcept { ringing_ = {}; }

private:
    using UpmixPlanes = std::array<float*, mn_upmix_max_out>;
    struct Ringing {
        const mn_upmix* upmix = nullptr;
        int32_t left = 0;  // frames
    };

    void add(const Side& side, int32_t frames, const float* ramp, const Destination& to,
             const UpmixPlanes& planes) noexcept;
    void fadeShared(const Side& before, const Side& after, int32_t frames, const Destination& to) noexcept;
    static bool begins(const Side& before, const Side& after) noexcept;
    bool runUpmix(const Side& side, int32_t frames, float* const* planes) noexcept;
    Input faded(const Side& before, const Side& after, int32_t frames) noexcept;
    const float* rampUp() const noexcept { return storage_.get(); }
    const float* rampDown() const noexcept { return storage_.get() + stride_; }

    size_t stride_;                // from plane to plane
    AlignedArray<float> storage_;  // all planes below, behind the two ramps
    std::array<float*, maxChannels> shared_{};
    UpmixPlanes upA_{}, upB_{};
    Ringing ringing_;
};

}  // namespace brindlehum
