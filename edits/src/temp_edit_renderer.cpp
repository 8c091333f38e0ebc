// TempEditRenderer: joins spans on their bar lines, then applies the plan's fades and cut.
#include "edits/temp_edit_renderer.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <span>

#include "dsp/edit_ops.h"

namespace brindlehum::TempEditRenderer {
namespace {

using Channels = std::vector<std::vector<float>>;
constexpr double pauseFadeSec = 0.08;  // of the sound before a pause
constexpr double quarterTurn = std::numbers::pi / 2;

struct Cut {
    int64_t length = 0;  // frames that are kept
    int64_t fade = 0;    // how many of them, at the end, are faded
};
// A fade of up to a second, at most a quarter of the kept length.
Cut cutOf(int64_t length, double cutAtSec, double sampleRate) {
    const int64_t kept = std::min(length, int64_t(sampleRate * cutAtSec));
    return {kept, std::min(kept / 4, int64_t(sampleRate))};
}

int64_t sumOf(const std::vector<EditPlan::Span>& spans) {
    int64_t frames = 0;
    for (const auto& span : spans) { frames += span.pause + span.end - span.start; }
    return frames;
}

// Crossfades the end of `out` to the samples before frame `start` of the source, so that only those remain where the
// span begins.
void crossfade(std::vector<float>& out, const Track& source, int64_t start, int64_t longest) {
    const int64_t frames = std::min({start, int64_t(out.size()), longest});
    float* tail = out.data() + int64_t(out.size()) - frames;
    std::vector<float> before(size_t(frames), 0.0F);
    source.read(start - frames, before);
    for (int64_t i = 0; i < frames; ++i) {
        const double x = (double(i) + 0.5) / double(frames) * quarterTurn;
        tail[i] = float(double(tail[i]) * std::cos(x) + double(before[size_t(i)]) * std::sin(x));
    }
}

void fadeToSilence(std::vector<float>& x, int64_t frames) {
    frames = std::min(int64_t(x.size()), frames);
    float* tail = x.data() + int64_t(x.size()) - frames;
    for (int64_t i = 0; i < frames; ++i) { tail[i] *= float(std::cos(double(i) / double(frames) * quarterTurn)); }
}

struct Joint {
    int64_t crossfade = 0;  // frames
    int64_t pauseFade = 0;
};

std::vector<float> joined(const std::vector<EditPlan::Span>& spans, const Track& source, const Joint& joint) {
    std::vector<float> out;
    out.reserve(size_t(sumOf(spans)));
    for (size_t i = 0; i < spans.size(); ++i) {
        const auto& [start, end, pause, beat] = spans[i];
        if (pause > 0) {
            fadeToSilence(out, joint.pauseFade);
            out.resize(out.size() + size_t(pause));
        }
        if (i > 0 && (pause > 0 || start != spans[i - 1].end)) { crossfade(out, source, start, joint.crossfade); }
        const size_t at = out.size();
        out.resize(at + size_t(end - start));
        source.read(start, std::span(out).subspan(at));
    }
    return out;
}

void fadeIn(std::vector<float>& x, int64_t frames) {
    frames = std::min(int64_t(x.size()), frames);
    for (int64_t i = 0; i < frames; ++i) { x[size_t(i)] *= float(std::sin(double(i) / double(frames) * quarterTurn)); }
}

void fadeOut(std::vector<float>& x, int64_t frames) {
    frames = std::min(int64_t(x.size()), frames);
    float* tail = x.data() + int64_t(x.size()) - frames;
    for (int64_t i = 0; i < frames; ++i) { tail[i] *= float(double(frames - i) / double(frames)); }
}

void cut(std::vector<float>& x, const Cut& at) {
    x.resize(size_t(at.length));
    fadeToSilence(x, at.fade);
}

}  // namespace

Channels render(const EditPlan& plan, const Sound& source, double sampleRate, const TempEditOptions& options) {
    if (plan.kind == EditPlan::Kind::loop && !plan.spans.empty()) {
        const EditPlan::Span& span = plan.spans[0];
        auto loop = EditOps::seamlessLoop(source, sampleRate, span.start, span.end, plan.carryLoopTail);
        if (loop) { return std::move(loop->channels); }
    }
    const Joint joint{std::max<int64_t>(int64_t(sampleRate * options.crossfadeMs / 1000), 1),
                      int64_t(sampleRate * pauseFadeSec)};
    Channels out;
    for (const Track& track : source.tracks()) {
        auto& x = out.emplace_back(joined(plan.spans, track, joint));
        if (plan.fadeInFrames > 0) { fadeIn(x, plan.fadeInFrames); }
        if (plan.fadeOutFrames > 0) { fadeOut(x, plan.fadeOutFrames); }
        if (plan.cutAtSec) { cut(x, cutOf(int64_t(x.size()), *plan.cutAtSec, sampleRate)); }
        x.resize(x.size() + size_t(plan.padFrames));
    }
    return out;
}

int64_t length(const EditPlan& plan, double sampleRate) {
    const int64_t frames = sumOf(plan.spans);
    if (plan.kind == EditPlan::Kind::loop || !plan.cutAtSec) { return frames + plan.padFrames; }
    return cutOf(frames, *plan.cutAtSec, sampleRate).length;
}

}  // namespace brindlehum::TempEditRenderer
