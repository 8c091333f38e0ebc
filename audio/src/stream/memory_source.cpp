// MemorySource: plays a sound from memory, with a metronome in a channel of its own.
#include "audio/stream/memory_source.h"

#include <algorithm>
#include <cmath>
#include <numbers>

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

MemorySource::MemorySource(Sound sound, double sampleRate, std::optional<std::vector<Click>> clicks)
    : sound_(std::move(sound)),
      sampleRate_(sampleRate),
      hasClicks_(clicks.has_value()),
      clicks_(std::move(clicks).value_or(std::vector<Click>{})),
      tick_(clickSound(sampleRate, 0.5, 1000, 90)),
      tock_(clickSound(sampleRate, 0.8, 1600, 70)) {
    std::ranges::stable_sort(clicks_, {}, &Click::frame);
}

ProcessingFormat MemorySource::processingFormat() const {
    ProcessingFormat format{sampleRate_, std::max(sound_.channels() + (hasClicks_ ? 1 : 0), 1), {}};
    if (format.channels > 2) { format.layout = ChannelLayout{discreteInOrder | uint32_t(format.channels), 0, {}}; }
    return format;
}

int MemorySource::read(float* const* planes, int planeCount, int64_t position, int frames) {
    if (position < 0 || planeCount < 1) { return 0; }
    const int count = int(std::min<int64_t>(length() - position, frames));
    if (count < 1) { return 0; }
    for (int c = 0; c < planeCount; ++c) {
        const std::span plane(planes[c], size_t(count));
        if (c < sound_.channels()) {
            sound_.track(c).read(position, plane);
            continue;
        }
        std::ranges::fill(plane, 0.0F);
        if (hasClicks_ && c == sound_.channels()) { addClicks(plane, position); }
    }
    return count;
}

void MemorySource::addClicks(std::span<float> plane, int64_t position) const {
    const auto length = int64_t(tick_.size());
    const int64_t end = position + int64_t(plane.size());
    auto click = std::partition_point(clicks_.begin(), clicks_.end(),
                                      [&](const Click& each) { return each.frame < position - length; });
    for (; click != clicks_.end() && click->frame < end; ++click) {
        const std::vector<float>& sound = click->accent ? tock_ : tick_;
        for (int64_t at = std::max(click->frame, position); at < std::min(click->frame + length, end); ++at) {
            plane[size_t(at - position)] += sound[size_t(at - click->frame)];
        }
    }
}

}  // namespace brindlehum
