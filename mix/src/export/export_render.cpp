// ExportRender: lets the stream begin where the file's first frame needs it to.
#include "export_render.h"

#include <algorithm>
#include <cmath>

#include "audio/stream/memory_source.h"
#include "whole_source.h"

namespace brindlehum {
namespace {

// All planes of a block stay in the second cache.
constexpr int blockFrames = 1024;
// The sound of a loop that its first frame still hears: more than the longest HRTF, the upmix's window and its
// smoothing.
constexpr double warmUpSeconds = 0.4;

int warmUpFrames(const Exporter::Request& request, const ExportPlan& plan) {
    return request.loop && plan.remembers ? int(std::ceil(request.info.sampleRate * warmUpSeconds)) : 0;
}

std::unique_ptr<FrameSource> sourceOf(const Exporter::Request& request, const std::function<bool()>& stop,
                                      bool& brokenOff) {
    if (request.edited) { return std::make_unique<MemorySource>(request.edited->sound, request.info.sampleRate); }
    return std::make_unique<WholeSource>(request.info, stop, brokenOff);
}

// The frames over which a round is faded into the next. An upmix works in hops, and is a little different, for noise by
// -46 dB, when they begin elsewhere: those of a round that isn't whole hops long end elsewhere than those of the next
// one begin. A loop that is shorter than the upmix's window is heard as a tone, which is the same wherever a hop
// begins.
int fadeFrames(const Exporter::Request& request, const FrameRange& range, const ExportPlan& plan) {
    if (!request.loop || !plan.config.upmix) { return 0; }
    const int window = Upmixer::fftSizeAt(request.info.sampleRate);
    const int hop = window / 4;
    return range.length() >= window && range.length() % hop != 0 ? hop : 0;
}

// A loop goes round and round, also one that is shorter than `before`, the frames heard before its first one.
std::shared_ptr<StreamReader> streamOf(const Exporter::Request& request, const FrameRange& range, int before,
                                       const std::function<bool()>& stop, bool& brokenOff) {
    const int64_t into = (range.length() - before % range.length()) % range.length();
    return std::make_shared<StreamReader>(sourceOf(request, stop, brokenOff), request.info.sampleRate,
                                          range.lower + into, range.upper, request.loop, range.lower, range.upper,
                                          StreamReader::Use::lockstep);
}

}  // namespace

ExportRender::ExportRender(const Exporter::Request& request, const FrameRange& range, const ExportPlan& plan,
                           const std::function<bool()>& stop)
    : offline_(plan.config, streamOf(request, range, warmUpFrames(request, plan), stop, brokenOff_),
               request.info.sampleRate, plan.channels, blockFrames, 1),
      fadeFrames_(fadeFrames(request, range, plan)),
      left_(plan.frames),
      samples_(size_t(blockFrames)),
      planes_(size_t(plan.channels)) {
    const int warmUp = warmUpFrames(request, plan);
    offline_.skip(warmUp);
    if (fadeFrames_ == 0) { return; }
    // It begins a hop before the warm-up, so that its hops meet the end as those of the first round meet the start.
    nextRound_ =
        std::make_unique<OfflineRender>(plan.config, streamOf(request, range, warmUp + fadeFrames_, stop, brokenOff_),
                                        request.info.sampleRate, plan.channels, blockFrames, 1);
    nextRound_->skip(warmUp);
    samples_.resize(size_t(blockFrames) * planes_.size());
}

int ExportRender::next(int64_t limit) {
    int most = int(std::min<int64_t>(limit, blockFrames));
    if (nextRound_ && left_ > fadeFrames_) { most = int(std::min<int64_t>(most, left_ - fadeFrames_)); }
    const int frames = offline_.next(most);
    for (size_t c = 0; c < planes_.size(); ++c) { planes_[c] = frames > 0 ? offline_.planes()[c] : samples_.data(); }
    if (nextRound_ && left_ <= fadeFrames_) { fadeToNextRound(frames); }
    left_ -= frames > 0 ? frames : most;
    return frames > 0 ? frames : most;
}

// Linearly, as both are nearly the same sound.
void ExportRender::fadeToNextRound(int frames) {
    if (nextRound_->next(frames) < frames) { return; }  // the file broke off
    const float step = 1.0F / float(fadeFrames_);
    for (size_t c = 0; c < planes_.size(); ++c) {
        float* out = samples_.data() + c * size_t(blockFrames);
        const float* before = planes_[c];
        const float* after = nextRound_->planes()[c];
        for (int i = 0; i < frames; ++i) {
            const float weight = float(fadeFrames_ - left_ + i + 1) * step;
            out[i] = before[i] + weight * (after[i] - before[i]);
        }
        planes_[c] = out;
    }
}

// What a fade leaves is no louder than the louder of its sides.
float ExportRender::peak(int channel) const {
    const float own = offline_.takePeak(channel);
    if (!nextRound_) { return own; }
    const float other = nextRound_->takePeak(channel);
    return own < other || std::isnan(other) ? other : own;
}

}  // namespace brindlehum
