// Decoded FFmpeg frames of any sample format as planar float.
#pragma once

extern "C" {
#include <libavutil/frame.h>
}

namespace brindlehum {

// Writes `count` samples a channel, from sample `from` of the frame, to each plane from index `at` on. Integers are
// scaled to -1 to 1. Channels that the frame lacks are silent. False for a sample format that isn't known.
bool toPlanes(const AVFrame& frame, int from, int count, float* const* planes, int channels, int at);

}  // namespace brindlehum
