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

// In two pieces where the ring ends.
void SpeakerAlign::keep(Lane& lane, const float* plane, uint32_t frames) const noexcept {
    const uint32_t at = lane.at & mask_;
    const uint32_t first = std::min(frames, mask_ + 1 - at);
    float* const ring = lane.heard.data();
    if (plane != nullptr) {
        std::copy_n(plane, first, ring + at);
        std::copy_n(plane + first, frames - first, ring);
    } else {
        std::fill_n(ring + at, first, 0.0F);
        std::fill_n(ring, frames - first, 0.0F);
    }
    lane.at += frames;
}

// What isn't changing: in two pieces, too.
void SpeakerAlign::play(const Lane& lane, uint32_t start, float* plane, uint32_t frames) const noexcept {
    if (lane.to.frames > 0) {
        const uint32_t at = (start - lane.to.frames) & mask_;
        const uint32_t first = std::min(frames, mask_ + 1 - at);
        std::copy_n(lane.heard.data() + at, first, plane);
        std::copy_n(lane.heard.data(), frames - first, plane + first);
    }
    if (lane.to.inverted) {
        for (uint32_t i = 0; i < frames; ++i) { plane[i] = -plane[i]; }
    }
}

void SpeakerAlign::process(int32_t channel, float* plane, int32_t frames) noexcept {
    if (channel >= channels_) { return; }
    Lane& lane = lanes_[size_t(channel)];
    const uint32_t start = lane.at;
    keep(lane, plane, uint32_t(frames));
    const Tap wanted = lane.wanted.load(std::memory_order_relaxed);
    if (lane.faded >= fadeFrames_ && wanted != lane.to) {
        lane.from = lane.to;
        lane.to = wanted;
        lane.faded = 0;
    }
    if (plane == nullptr) { return; }
    if (lane.faded >= fadeFrames_) { return play(lane, start, plane, uint32_t(frames)); }
    for (int32_t i = 0; i < frames; ++i) {
        const uint32_t now = start + uint32_t(i);
        lane.faded = std::min(lane.faded + 1, fadeFrames_);
        const float share = float(lane.faded) / float(fadeFrames_);
        const float old = tapped(lane, lane.from, now);
        plane[i] = old + share * (tapped(lane, lane.to, now) - old);
    }
}

}  // namespace brindlehum
