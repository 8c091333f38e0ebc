// ConfigMixer: runs each side through its upmix and the matrix kernel, with a ramp of its own during a change.
#include "mix/render/config_mixer.h"

#include <algorithm>

namespace brindlehum {
namespace {

void addThrough(const mn_mix_config& config, const float* const* planes, int32_t frames, const float* ramp,
                const ConfigMixer::Destination& to) {
    const ConfigMixer::Outputs& outputs = config.to_binaural != 0 ? to.speakers : to.device;
    mn_mix_accumulate(&config, planes, frames, outputs.planes, outputs.count, ramp);
}

// Null beyond the source's channels: silence.
const float* planeOf(const ConfigMixer::Input& input, int32_t channel) {
    return input.planes != nullptr && channel < input.channels ? input.planes[channel] : nullptr;
}

}  // namespace

ConfigMixer::ConfigMixer(int blockFrames)
    : stride_(planeStride(blockFrames)),
      storage_(makeAligned<float>(stride_ * (2 + maxChannels + 2 * size_t(mn_upmix_max_out)))) {
    float* next = storage_.get() + 2 * stride_;
    const auto assign = [this, &next](float*& plane) {
        plane = next;
        next += stride_;
    };
    std::ranges::for_each(shared_, assign);
    for (UpmixPlanes* planes : {&upA_, &upB_}) { std::ranges::for_each(*planes, assign); }
}

void ConfigMixer::mix(const Side& side, int32_t frames, const Destination& to) noexcept {
    add(side, frames, nullptr, to, upA_);
}

void ConfigMixer::fade(const Side& before, const Side& after, int32_t frames, const Destination& to) noexcept {
    float* up = storage_.get();
    float* down = up + stride_;
    for (int32_t i = 0; i < frames; ++i) {
        up[i] = float(i + 1) / float(frames);
        down[i] = 1 - up[i];
    }
    const mn_upmix* old = before.config != nullptr ? before.config->upmix : nullptr;
    if (old != nullptr && after.config != nullptr && after.config->upmix == old) {
        fadeShared(before, after, frames, to);
        return;
    }
    add(before, frames, down, to, upA_);
    add(begins(before, after) ? Side{after.config, faded({}, after, frames)} : after, frames, up, to, upB_);
}

// Whether an upmix hears its source for the first time. Its outputs come too late for the ramp of this block, so the
// source itself must fade in.
bool ConfigMixer::begins(const Side& before, const Side& after) noexcept {
    const bool sameSource = before.config != nullptr && before.input.planes == after.input.planes;
    return after.config != nullptr && after.config->upmix != nullptr && !sameSource;
}

void ConfigMixer::fadeShared(const Side& before, const Side& after, int32_t frames, const Destination& to) noexcept {
    if (!runUpmix({after.config, faded(before, after, frames)}, frames, upA_.data())) { return; }
    if (before.config == after.config) {
        addThrough(*after.config, upA_.data(), frames, nullptr, to);
        return;
    }
    addThrough(*before.config, upA_.data(), frames, rampDown(), to);
    addThrough(*after.config, upA_.data(), frames, rampUp(), to);
}

// The source that fades from one to the other.
ConfigMixer::Input ConfigMixer::faded(const Side& before, const Side& after, int32_t frames) noexcept {
    if (before.input.planes == after.input.planes) { return after.input; }
    const mn_mix_config& config = *after.config;
    const int32_t channels = std::min(config.upmix_offset + mn_upmix_in_channels(config.upmix), int32_t(maxChannels));
    for (int32_t c = 0; c < channels; ++c) {
        float* const plane = shared_[size_t(c)];
        const float* const old = planeOf(before.input, c);
        const float* const now = planeOf(after.input, c);
        for (int32_t i = 0; i < frames; ++i) {
            plane[i] = (old != nullptr ? old[i] * rampDown()[i] : 0) + (now != nullptr ? now[i] * rampUp()[i] : 0);
        }
    }
    return {shared_.data(), channels};
}

void ConfigMixer::add(const Side& side, int32_t frames, const float* ramp, const Destination& to,
                      const UpmixPlanes& planes) noexcept {
    const mn_mix_config* config = side.config;
    if (config == nullptr) { return; }
    if (config->upmix != nullptr) {
        if (runUpmix(side, frames, planes.data())) { addThrough(*config, planes.data(), frames, ramp, to); }
    } else if (side.input.planes != nullptr && side.input.channels == config->in_channels) {
        addThrough(*config, side.input.planes, frames, ramp, to);
    }
}

// False when there is nothing to hear.
bool ConfigMixer::runUpmix(const Side& side, int32_t frames, float* const* planes) noexcept {
    mn_upmix* const upmix = side.config->upmix;
    if (side.input.planes != nullptr) {
        ringing_ = {upmix, mn_upmix_tail(upmix)};
    } else {
        if (!ringsOn(side.config)) { return false; }
        ringing_.left -= frames;
    }
    std::array<const float*, mn_upmix_max_in> inputs{};
    for (int32_t c = 0; c < mn_upmix_in_channels(upmix); ++c) {
        inputs[size_t(c)] = planeOf(side.input, side.config->upmix_offset + c);
    }
    mn_upmix_process(upmix, inputs.data(), frames, planes);
    return true;
}

void ConfigMixer::prepare(const Side& side, int32_t frames) noexcept {
    const Ringing old = ringing_;
    (void)runUpmix(side, frames, upB_.data());
    ringing_ = old;
}

bool ConfigMixer::ringsOn(const mn_mix_config* config) const noexcept {
    return config != nullptr && config->upmix != nullptr && config->upmix == ringing_.upmix && ringing_.left > 0;
}

}  // namespace brindlehum
