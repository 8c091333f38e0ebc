// Converts decoded FFmpeg frames of any sample format to planar float.
#pragma once

extern "C" {
#include <libavutil/frame.h>
}

namespace brindlehum {

// Writes `count` samples per channel, from sample `from` of the frame, to each plane starting at index `at`. Integers
// are scaled to -1 to 1. Channels that the frame lacks are silent. Returns false for an unknown sample format.
bool toPlanes(const AVFrame& frame, int from, int count, float* const* planes, int channels, int at);

}  // namespace brindlehum
