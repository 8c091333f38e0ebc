// MemorySource: a frame source over a sound in memory, with a metronome.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "audio/stream/frame_source.h"
#include "dsp/sound.h"

namespace brindlehum {

// A metronome click at a frame of the source.
struct Click {
    int64_t frame = 0;
    bool accent = false;
};

// Plays a sound from memory. With clicks, a metronome stands in a channel of its own behind the sound's, so that no
// solo or mute of the sound's channels silences it.
class MemorySource : public FrameSource {
public:
    MemorySource(Sound sound, double sampleRate, std::optional<std::vector<Click>> clicks = {});
    // Copies one array per channel; throws std::invalid_argument for unequal lengths.
    MemorySource(const std::vector<std::vector<float>>& channels, double sampleRate)
        : MemorySource(Sound(channels), sampleRate) {}
    ProcessingFormat processingFormat() const override;
    int64_t length() const override { return sound_.frames(); }
    int read(float* const* planes, int planeCount, int64_t position, int frames) override;

private:
    void addClicks(std::span<float> plane, int64_t position) const;

    Sound sound_;
    double sampleRate_;
    bool hasClicks_;
    std::vector<Click> clicks_;  // sorted by frame
    std::vector<float> tick_;
    std::vector<float> tock_;
};

}  // namespace brindlehum
