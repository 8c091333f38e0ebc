// OfflineRender: runs the device's own RenderContext as fast as the processor allows.
#pragma once

#include <memory>
#include <vector>

#include "audio/stream/stream_reader.h"
#include "mix/render/binaural_stage.h"
#include "mix/render/render_config.h"
#include "mix/render/render_context.h"

namespace brindlehum {

// One pass over a stream, on one thread (any): the ring is filled before each block, so it never runs dry.
class OfflineRender {
public:
    // `reader` delivers frames at `sampleRate` (Hz) and hasn't been started or filled; blocks have 1 to
    // RenderContext::maxFrames frames; `gain` is linear. Throws Error when a binaural configuration finds no HRTF set.
    OfflineRender(const MixConfig& config, std::shared_ptr<StreamReader> reader, double sampleRate, int deviceChannels,
                  int blockFrames, double gain);

    // Renders the next block into planes() and returns its frame count: fewer than a block where the stream ends, then
    // the frames in which the binaural stage still sounds, then 0.
    int next();
    // Frames of the stream rendered so far.
    int64_t streamedFrames() const { return streamedFrames_; }
    // One plane per device channel, valid until the next call of next().
    const float* const* planes() const { return planes_.data(); }

private:
    void prime();
    void fillRing();

    RenderConfig config_;
    std::shared_ptr<StreamReader> reader_;
    int blockFrames_;
    std::unique_ptr<BinauralStage> stage_;  // for a binaural configuration
    RenderContext context_;
    std::vector<float> samples_;
    std::vector<float*> planes_;
    int tailFrames_ = 0;  // still to be rendered
    int64_t streamedFrames_ = 0;
    bool streaming_ = true;
};

}  // namespace brindlehum
