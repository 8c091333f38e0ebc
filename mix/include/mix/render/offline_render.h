// OfflineRender: runs the device's own RenderContext as fast as the processor allows.
#pragma once

#include <memory>
#include <vector>

#include "audio/stream/stream_reader.h"
#include "mix/render/binaural_stage.h"
#include "mix/render/render_config.h"
#include "mix/render/render_context.h"
#include "upmix/upmixer.h"

namespace brindlehum {

// One pass over a stream, on one thread (any): the ring is filled before each block, so it never runs dry. Frame n of
// the output belongs to frame n of the stream, also behind an upmix, whose hops begin with the stream.
class OfflineRender {
public:
    // `reader` delivers frames at `sampleRate` (Hz) and hasn't been started or filled; blocks have 1 to
    // RenderContext::maxFrames frames; `gain` is linear. Throws Error when a binaural configuration finds no HRTF set,
    // or an upmix no memory.
    OfflineRender(const MixConfig& config, std::shared_ptr<StreamReader> reader, double sampleRate, int deviceChannels,
                  int blockFrames, double gain);

    // The first block begins this many frames later, and is heard as what follows on them. Before the first block.
    void skip(int frames) { skipFrames_ += frames; }
    // Renders the next block, up to `limit` frames of it, into planes() and returns its frame count: fewer than a block
    // where the stream ends, then the frames in which the upmix and the binaural stage still sound, then 0.
    int next() { return next(blockFrames_); }
    int next(int limit);
    // The largest magnitude on a channel since the last take; not a number when a sample was none.
    float takePeak(int channel) const { return context_.takePeak(channel); }
    // Frames of the stream rendered so far.
    int64_t streamedFrames() const { return streamedFrames_; }
    // One plane per device channel, valid until the next call of next().
    const float* const* planes() const { return planes_.data(); }

private:
    void prime();
    void fillRing();
    void dropSkipped();
    int render(int limit);

    std::unique_ptr<Upmixer> upmixer_;  // for a configuration with an upmix
    RenderConfig config_;
    std::shared_ptr<StreamReader> reader_;
    int blockFrames_;
    std::unique_ptr<BinauralStage> stage_;  // for a binaural configuration
    RenderContext context_;
    std::vector<float> samples_;
    std::vector<float*> planes_;
    int skipFrames_ = 0;  // still to be rendered before the first one that counts
    int tailFrames_ = 0;  // still to be rendered behind the stream
    int64_t streamedFrames_ = 0;
    bool streaming_ = true;
};

}  // namespace brindlehum
