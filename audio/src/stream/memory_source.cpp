// MemorySource: plays channels from memory and mixes a metronome into the first two.
#include "audio/stream/memory_source.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <stdexcept>

namespace brindlehum {

namespace {

constexpr double clickSeconds = 0.045;
// The layout tag for channels in order without spatial meaning; the channel count is added to it.
constexpr uint32_t discreteInOrder = 0x930000;

// A sine that decays by e^(-decay t), t in seconds.
std::vector<float> clickSound(double sampleRate, double amplitude, double hz, double decay) {
    std::vector<float> sound(size_t(std::max(std::floor(sampleRate * clickSeconds), 0.0)));
    for (size_t i = 0; i < sound.size(); ++i) {
        const double t = double(i) / sampleRate;
        sound[i] = float(amplitude * std::sin(2 * std::numbers::pi * hz * t) * std::exp(-decay * t));
    }
    return sound;
}

}  // namespace

MemorySource::MemorySource(std::vector<std::vector<float>> channels, double sampleRate, std::vector<Click> clicks)
    : channels_(std::move(channels)),
      sampleRate_(sampleRate),
      clicks_(std::move(clicks)),
      tick_(clickSound(sampleRate, 0.5, 1000, 90)),
      tock_(clickSound(sampleRate, 0.8, 1600, 70)) {
    for (const std::vector<float>& channel : channels_) {
        if (channel.size() != channels_[0].size()) { throw std::invalid_argument("channels of unequal length"); }
    }
    std::ranges::stable_sort(clicks_, {}, &Click::frame);
}

ProcessingFormat MemorySource::processingFormat() const {
    ProcessingFormat format{sampleRate_, std::max(int(channels_.size()), 1), {}};
    if (format.channels > 2) { format.layout = ChannelLayout{discreteInOrder | uint32_t(format.channels), 0, {}}; }
    return format;
}

int64_t MemorySource::length() const {
    return channels_.empty() ? 0 : int64_t(channels_[0].size());
}

int MemorySource::read(float* const* planes, int planeCount, int64_t position, int frames) {
    if (position < 0 || planeCount < 1) { return 0; }
    const int count = int(std::min<int64_t>(length() - position, frames));
    if (count < 1) { return 0; }
    for (int plane = 0; plane < planeCount; ++plane) {
        const bool given = size_t(plane) < channels_.size();
        if (given) {
            std::copy_n(channels_[size_t(plane)].begin() + position, count, planes[plane]);
        } else {
            std::fill_n(planes[plane], count, 0.0F);
        }
    }
    addClicks(planes, std::min(planeCount, 2), position, count);
    return count;
}

void MemorySource::addClicks(float* const* planes, int planeCount, int64_t position, int frames) const {
    const auto length = int64_t(tick_.size());
    auto click = std::partition_point(clicks_.begin(), clicks_.end(),
                                      [&](const Click& each) { return each.frame < position - length; });
    for (; click != clicks_.end() && click->frame < position + frames; ++click) {
        const std::vector<float>& sound = click->accent ? tock_ : tick_;
        const int64_t from = std::max(click->frame, position);
        const int64_t to = std::min(click->frame + length, position + frames);
        for (int plane = 0; plane < planeCount; ++plane) {
            for (int64_t frame = from; frame < to; ++frame) {
                planes[plane][frame - position] += sound[size_t(frame - click->frame)];
            }
        }
    }
}

}  // namespace brindlehum
