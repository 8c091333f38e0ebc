// ConfigMixer: adds a block of source channels to its outputs as configurations say, crossfaded where they change.
#pragma once

#include <cstdint>

#include "core/mn_mix.h"
#include "dsp/aligned_array.h"

namespace brindlehum {

// Construction on the control side; mix and fade are real-time safe, on one thread at a time.
class ConfigMixer {
public:
    static constexpr int maxFrames = 4096;
    // Samples from one plane of a block to the next. A whole number of cache lines that isn't a power of two: the same
    // frames of 16 planes would otherwise fall into the same few sets of the first-level cache and push each other out.
    static constexpr size_t planeStride = maxFrames + 272;

    // The channels of a source, one plane each; none when there is nothing to mix.
    struct Input {
        const float* const* planes = nullptr;
        int32_t channels = 0;
    };
    // A configuration and the source that it mixes. Null is silence, and so is a source of another width than the
    // configuration's: for an instant one of the two may be replaced before the other.
    struct Side {
        const mn_mix_config* config = nullptr;
        Input input;
    };
    // Row r is added to plane r; null planes and rows beyond the last plane are dropped.
    struct Outputs {
        float* const* planes = nullptr;
        int32_t count = 0;
    };
    // Rows of configurations with to_binaural go to the speakers, all others to the device.
    struct Destination {
        Outputs device;
        Outputs speakers;
    };

    ConfigMixer();

    // A block in which nothing changes. Up to maxFrames frames.
    void mix(const Side& side, int32_t frames, const Destination& to) noexcept;
    // A block that fades from one side to the other in straight lines; its last frame is all `after`. 1 to maxFrames
    // frames.
    void fade(const Side& before, const Side& after, int32_t frames, const Destination& to) noexcept;

private:
    void add(const Side& side, int32_t frames, const float* ramp, const Destination& to) noexcept;

    AlignedArray<float> ramps_;  // up, then down
};

}  // namespace brindlehum
