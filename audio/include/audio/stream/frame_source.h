// FrameSource: the interface of everything that delivers planar float frames at a given position.
#pragma once

#include <cstdint>
#include <optional>

#include "audio/speakers/channel_layout.h"

namespace brindlehum {

// The shape of the frames: deinterleaved 32-bit float.
struct ProcessingFormat {
    double sampleRate = 0;  // Hz
    int channels = 0;
    std::optional<ChannelLayout> layout;
};

class FrameSource {
public:
    virtual ~FrameSource() = default;
    virtual ProcessingFormat processingFormat() const = 0;
    virtual int64_t length() const = 0;
    // Fills `planeCount` planes from `position`; planes beyond the source's channels are cleared. Returns the frames
    // delivered: 0 at or past the end and on any error. One thread at a time.
    virtual int read(float* const* planes, int planeCount, int64_t position, int frames) = 0;
};

}  // namespace brindlehum
