// OfflineRender: fills the ring and renders in lockstep.
#include "mix/render/offline_render.h"

#include <algorithm>

#include "base/error.h"
#include "mix/render/hrtf_set.h"

namespace brindlehum {
namespace {

constexpr int fillFrames = 4096;  // the most that one fill of a reader writes

std::unique_ptr<Upmixer> upmixerFor(const MixConfig& config, double sampleRate) {
    if (!config.upmix) { return nullptr; }
    auto upmixer = Upmixer::make(int(config.upmix->source.size()), int(config.upmix->target.size()), sampleRate);
    if (!upmixer) { throw Error("Not enough memory for the upmix"); }
    upmixer->apply(*config.upmix);
    return upmixer;
}

}  // namespace

OfflineRender::OfflineRender(const MixConfig& config, std::shared_ptr<StreamReader> reader, double sampleRate,
                             int deviceChannels, int blockFrames, double gain)
    : upmixer_(upmixerFor(config, sampleRate)),
      config_(config, upmixer_ ? upmixer_->raw() : nullptr),
      reader_(std::move(reader)),
      blockFrames_(blockFrames),
      context_(blockFrames) {
    samples_.resize(size_t(deviceChannels) * size_t(blockFrames));
    for (int c = 0; c < deviceChannels; ++c) { planes_.push_back(samples_.data() + ptrdiff_t(c) * blockFrames); }

    std::shared_ptr<const BinauralStage::FilterSet> initialFilters;  // in use until the first block has passed
    if (config.toBinaural) {
        stage_ = std::make_unique<BinauralStage>(HRTFSet::shared(sampleRate));
        initialFilters = stage_->setDirections(config.virtualDirections);
        tailFrames_ = stage_->tailFrames();
        context_.setBinauralStage(stage_.get());
    }
    context_.setGain(gain);
    context_.setConfig(&config_.record);
    context_.setRing(reader_->ring());
    prime();
    if (upmixer_) {
        mn_upmix_reset(upmixer_->raw());
        skipFrames_ = mn_upmix_latency(upmixer_->raw());
        tailFrames_ += mn_upmix_tail(upmixer_->raw());
    }
}

// The block that meets a new ring, configuration, gain or filter fades it in. Rendering the still empty ring absorbs
// that fade, so that the first frame of the file sounds at full level.
void OfflineRender::prime() {
    context_.render(1, {planes_.data(), int32_t(planes_.size()), 1});
}

void OfflineRender::fillRing() {
    while (streaming_ && mn_ring_available(reader_->ring()) < blockFrames_ &&
           mn_ring_write_space(reader_->ring()) >= fillFrames) {
        streaming_ = reader_->fillOnce();
    }
}

int OfflineRender::next(int limit) {
    if (skipFrames_ > 0) { dropSkipped(); }
    return render(std::min(limit, blockFrames_));
}

void OfflineRender::dropSkipped() {
    while (skipFrames_ > 0) {
        const int frames = render(std::min(skipFrames_, blockFrames_));
        skipFrames_ = frames > 0 ? skipFrames_ - frames : 0;
    }
    for (int c = 0; c < int(planes_.size()); ++c) { (void)context_.takePeak(c); }
}

// Frames of the stream while there are any, then those of the tail.
int OfflineRender::render(int limit) {
    fillRing();
    int frames = std::min(limit, mn_ring_available(reader_->ring()));
    streamedFrames_ += frames;
    if (frames == 0) {
        frames = std::min(limit, tailFrames_);
        tailFrames_ -= frames;
    }
    if (frames > 0) { context_.render(uint32_t(frames), {planes_.data(), int32_t(planes_.size()), uint32_t(frames)}); }
    return frames;
}

}  // namespace brindlehum
