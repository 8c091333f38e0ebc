// Reads the peaks of a document's blocks.
#include "ui/editor/sound_picture.h"

#include <algorithm>
#include <cmath>

namespace brindlehum {

WaveformData soundPicture(const Sound& sound, const VisibleRange& visible, int columns) {
    WaveformData out;
    out.channels = std::min(sound.channels(), 16);
    out.bucketFrames = std::max<int64_t>(int64_t(visible.length / std::max(columns, 1)), 1);
    out.firstFrame = std::clamp<int64_t>(int64_t(visible.first), 0, sound.frames());
    const int64_t end = std::clamp<int64_t>(int64_t(std::ceil(visible.end())) + 1, out.firstFrame, sound.frames());
    out.bucketCount = int((end - out.firstFrame + out.bucketFrames - 1) / out.bucketFrames);
    out.loadedBuckets = out.bucketCount;
    for (int c = 0; c < out.channels; ++c) {
        auto& mins = out.mins.emplace_back();
        auto& maxs = out.maxs.emplace_back();
        for (int64_t at = out.firstFrame; at < end; at += out.bucketFrames) {
            const PeakRange range = sound.track(c).peaks(at, std::min(at + out.bucketFrames, end));
            mins.push_back(range.low);
            maxs.push_back(range.high);
        }
    }
    return out;
}

}  // namespace brindlehum
