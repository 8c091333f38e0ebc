// ConfigMixer: runs each side through the matrix kernel, with a ramp of its own during a change.
#include "mix/render/config_mixer.h"

namespace brindlehum {

ConfigMixer::ConfigMixer() : ramps_(makeAligned<float>(2 * planeStride)) {}

void ConfigMixer::mix(const Side& side, int32_t frames, const Destination& to) noexcept {
    add(side, frames, nullptr, to);
}

void ConfigMixer::fade(const Side& before, const Side& after, int32_t frames, const Destination& to) noexcept {
    float* up = ramps_.get();
    float* down = up + planeStride;
    for (int32_t i = 0; i < frames; ++i) {
        up[i] = float(i + 1) / float(frames);
        down[i] = 1 - up[i];
    }
    add(before, frames, down, to);
    add(after, frames, up, to);
}

void ConfigMixer::add(const Side& side, int32_t frames, const float* ramp, const Destination& to) noexcept {
    const mn_mix_config* config = side.config;
    if (config == nullptr || side.input.channels != config->in_channels) { return; }
    const Outputs& outputs = config->to_binaural != 0 ? to.speakers : to.device;
    mn_mix_accumulate(config, side.input.planes, frames, outputs.planes, outputs.count, ramp);
}

}  // namespace brindlehum
