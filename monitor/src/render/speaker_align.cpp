// One ring of what was heard for each channel, read at one or two places.
#include "monitor/render/speaker_align.h"

#include <algorithm>
#include <bit>
#include <cmath>

namespace brindlehum {

void SpeakerAlign::open(int channels, double sampleRate, int blockFrames) {
    framesPerMs_ = sampleRate / 1000;
    fadeFrames_ = uint32_t(std::max(std::lround(fadeSeconds * sampleRate), 1L));
    const auto length = std::bit_ceil(uint32_t(std::ceil(maxMs * framesPerMs_)) + uint32_t(blockFrames) + 1);
    mask_ = length - 1;
    channels_ = channels;
    lanes_ = std::make_unique<Lane[]>(size_t(std::max(channels, 0)));
    for (int c = 0; c < channels; ++c) {
        lanes_[size_t(c)].heard.assign(length, 0.0F);
        lanes_[size_t(c)].faded = fadeFrames_;
    }
}

void SpeakerAlign::set(int channel, double delayMs, bool inverted) noexcept {
    if (channel < 0 || channel >= channels_) { return; }
    const double ms = std::clamp(delayMs, 0.0, maxMs);
    lanes_[size_t(channel)].wanted = Tap{uint32_t(std::lround(ms * framesPerMs_)), inverted};
}

float SpeakerAlign::tapped(const Lane& lane, const Tap& tap, uint32_t now) const noexcept {
    const float x = lane.heard[(now - tap.frames) & mask_];
    return tap.inverted ? -x : x;
}

void SpeakerAlign::process(int32_t channel, float* plane, int32_t frames) noexcept {
    if (channel >= channels_) { return; }
    Lane& lane = lanes_[size_t(channel)];
    const uint32_t start = lane.at;
    for (int32_t i = 0; i < frames; ++i) {
        lane.heard[(start + uint32_t(i)) & mask_] = plane != nullptr ? plane[i] : 0.0F;
    }
    lane.at = start + uint32_t(frames);
    const Tap wanted = lane.wanted.load(std::memory_order_relaxed);
    if (lane.faded >= fadeFrames_ && wanted != lane.to) {
        lane.from = lane.to;
        lane.to = wanted;
        lane.faded = 0;
    }
    if (plane == nullptr || (lane.faded >= fadeFrames_ && lane.to == Tap())) { return; }
    for (int32_t i = 0; i < frames; ++i) {
        const uint32_t now = start + uint32_t(i);
        plane[i] = tapped(lane, lane.to, now);
        if (lane.faded >= fadeFrames_) { continue; }
        const float share = float(++lane.faded) / float(fadeFrames_);
        const float old = tapped(lane, lane.from, now);
        plane[i] = old + share * (plane[i] - old);
    }
}

}  // namespace brindlehum
