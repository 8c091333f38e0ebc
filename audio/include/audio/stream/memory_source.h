// MemorySource: a frame source over arrays in memory, with a metronome.
#pragma once

#include <cstdint>
#include <vector>

#include "audio/stream/frame_source.h"

namespace brindlehum {

// A metronome click at a frame of the source.
struct Click {
    int64_t frame = 0;
    bool accent = false;
};

// Plays arrays from memory, with metronome clicks mixed into the first two channels on request.
class MemorySource : public FrameSource {
public:
    // Takes one array per channel, all equally long; throws std::invalid_argument for unequal ones.
    MemorySource(std::vector<std::vector<float>> channels, double sampleRate, std::vector<Click> clicks = {});
    ProcessingFormat processingFormat() const override;
    int64_t length() const override;
    int read(float* const* planes, int planeCount, int64_t position, int frames) override;

private:
    void addClicks(float* const* planes, int planeCount, int64_t position, int frames) const;

    std::vector<std::vector<float>> channels_;
    double sampleRate_;
    std::vector<Click> clicks_;  // sorted by frame
    std::vector<float> tick_;
    std::vector<float> tock_;
};

}  // namespace brindlehum
