// ExportRender: lets the stream begin where the file's first frame needs it to.
#include "export_render.h"

#include <algorithm>
#include <cmath>

#include "audio/stream/memory_source.h"
#include "whole_source.h"

namespace brindlehum {
namespace {

constexpr int blockFrames = RenderContext::maxFrames;
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

// A loop goes round and round, also one that is shorter than the warm-up.
std::shared_ptr<StreamReader> streamOf(const Exporter::Request& request, const FrameRange& range, int warmUp,
                                       const std::function<bool()>& stop, bool& brokenOff) {
    const int64_t into = (range.length() - warmUp % range.length()) % range.length();
    return std::make_shared<StreamReader>(sourceOf(request, stop, brokenOff), request.info.sampleRate,
                                          range.lower + into, range.upper, request.loop, range.lower, range.upper);
}

}  // namespace

ExportRender::ExportRender(const Exporter::Request& request, const FrameRange& range, const ExportPlan& plan,
                           const std::function<bool()>& stop)
    : offline_(plan.config, streamOf(request, range, warmUpFrames(request, plan), stop, brokenOff_),
               request.info.sampleRate, plan.channels, blockFrames, 1),
      silence_(size_t(blockFrames)),
      planes_(size_t(plan.channels)) {
    offline_.skip(warmUpFrames(request, plan));
}

int ExportRender::next(int64_t limit) {
    const int most = int(std::min<int64_t>(limit, blockFrames));
    const int frames = offline_.next(most);
    for (size_t c = 0; c < planes_.size(); ++c) { planes_[c] = frames > 0 ? offline_.planes()[c] : silence_.data(); }
    return frames > 0 ? frames : most;
}

}  // namespace brindlehum
