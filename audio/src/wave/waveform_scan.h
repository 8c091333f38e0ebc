// WaveformScan: reduces a source to min/max buckets, one block of whole buckets at a time.
#pragma once

#include <vector>

#include "audio/stream/frame_source.h"
#include "audio/wave/waveform.h"

namespace brindlehum {

class WaveformScan {
public:
    // Makes at most 16 lanes and about 6000 buckets (up to 11999 for short sources). The source must outlive the scan.
    // Throws Error for a source so long that a single bucket doesn't fit.
    explicit WaveformScan(FrameSource& source);
    // The same lanes, for a part of the source.
    WaveformScan(FrameSource& source, const WaveformSpan& span);

    // Reads and reduces the next block; returns false when all is done or the source delivers no more.
    bool step();
    // The buckets reduced so far. The snapshot after finish() counts as complete, however much was read.
    WaveformPtr snapshot() const { return std::make_shared<const WaveformData>(data_); }
    WaveformPtr finish();

private:
    void reduce(int lane, int64_t frames);

    FrameSource& source_;
    WaveformData data_;
    int64_t end_;  // frame after the last one to read
    int64_t blockFrames_;
    std::vector<float> samples_;
    std::vector<float*> planes_;
};

}  // namespace brindlehum
