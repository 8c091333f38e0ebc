// ExportPlan: one matrix for each form, with its rows in the order that a WAV file wants.
#include "mix/export/export_plan.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "audio/speakers/channel_layout.h"
#include "base/error.h"
#include "core/mn_upmix.h"
#include "spatial/layout_matrix.h"
#include "upmix/upmix_planner.h"

namespace brindlehum {
namespace {

constexpr double binauralTailSeconds = 0.25;
constexpr uint32_t stereoMask = 3;

Matrix identity(size_t size) {
    Matrix m(size, std::vector<double>(size, 0.0));
    for (size_t i = 0; i < size; ++i) { m[i][i] = 1; }
    return m;
}

// Rows for the speakers of `list` in the order `wanted`, which holds the same speakers.
Matrix reordered(const Matrix& m, const SpeakerList& list, const SpeakerList& wanted) {
    Matrix out;
    for (const SpeakerID speaker : wanted) {
        out.push_back(m[size_t(std::ranges::find(list, speaker) - list.begin())]);
    }
    return out;
}

MixConfig configOf(const Matrix& m, int inChannels) {
    MixConfig config;
    config.inChannels = inChannels;
    config.rows = int(m.size());
    for (const auto& row : m) { config.matrix.insert(config.matrix.end(), row.begin(), row.end()); }
    return config;
}

ExportPlan planOf(const Matrix& m, int inChannels, uint32_t mask, std::string label) {
    return {.config = configOf(m, inChannels), .channels = int(m.size()), .mask = mask, .label = std::move(label)};
}

// The rows of a layout's speakers, put into the order of WAVE if the layout has one there.
ExportPlan inLayout(const Matrix& m, int inChannels, LayoutID layout, const std::string& name) {
    const SpeakerList& list = speakers(layout);
    if (const auto mask = WaveMask::mask(list)) {
        return planOf(reordered(m, list, mask->order), inChannels, mask->mask, name + " (WAVE order)");
    }
    std::string labels;
    for (const SpeakerID speaker : list) { labels.append(" ").append(label(speaker, list)); }
    return planOf(m, inChannels, 0, name + " (SMPTE order:" + labels + ")");
}

ExportPlan originalPlan(const Exporter::Request& request) {
    const int channels = request.info.channels;
    const std::string label = request.source.displayName();
    if (request.source == SourceFormat::stereo() && channels == 2 && request.listen != ListenMode::normal) {
        Matrix m;
        for (const auto& row : matrix(request.listen)) { m.emplace_back(row.begin(), row.end()); }
        return planOf(m, channels, stereoMask, "Stereo (" + std::string(displayName(request.listen)) + ")");
    }
    const Matrix same = identity(size_t(channels));
    const SpeakerList* list = request.source.asSpeakers();
    const auto mask = list && int(list->size()) == channels ? WaveMask::mask(*list) : std::nullopt;
    ExportPlan plan = mask ? planOf(reordered(same, *list, mask->order), channels, mask->mask, label)
                           : planOf(same, channels, 0, label);
    plan.samples = WavSamples::pcm24Lossless;  // a cut: every sample as it was read
    return plan;
}

ExportPlan bedPlan(const Exporter::Request& request) {
    const LayoutID layout = request.mode.layout;
    const Matrix m = MixBuilder::layoutMatrix(request.source, request.info.channels, speakers(layout), request.listen,
                                              request.rotation, request.monoToCenter);
    return inLayout(m, request.info.channels, layout, std::string(displayName(layout)));
}

ExportPlan upmixPlan(const Exporter::Request& request) {
    const LayoutID layout = request.mode.layout;
    const SpeakerList& target = speakers(layout);
    const SpeakerList* list = request.source.asSpeakers();
    const bool whole = list && int(list->size()) == request.info.channels && request.info.channels <= mn_upmix_max_in;
    if (!whole || !UpmixPlanner::applies(*list, target)) {
        throw Error(ErrorKind::noUpmix, "Upmix needs a stereo or speaker-layout source smaller than the target");
    }
    ExportPlan plan = inLayout(identity(target.size()), int(target.size()), layout,
                               std::string(displayName(layout)) + " upmix, " + request.upmixName);
    plan.config.upmix = UpmixRequest{*list, target, request.upmix};
    plan.remembers = true;
    return plan;
}

ExportPlan binauralPlan(const Exporter::Request& request) {
    auto [directions, m] = MixBuilder::binauralMatrix(request.source, request.info.channels, request.rotation);
    if (directions.empty()) {
        throw Error(ErrorKind::noBinaural, "Binaural needs a multichannel or Ambisonics source");
    }
    ExportPlan plan = planOf(m, request.info.channels, stereoMask, "Binaural (HRTF)");
    plan.channels = 2;
    plan.config.toBinaural = true;
    plan.config.virtualDirections = std::move(directions);
    plan.remembers = true;
    return plan;
}

ExportPlan formOf(const Exporter::Request& request) {
    switch (request.mode.kind) {
        case DragExport::Kind::bed:
            return bedPlan(request);
        case DragExport::Kind::upmix:
            return upmixPlan(request);
        case DragExport::Kind::binaural:
            return binauralPlan(request);
        case DragExport::Kind::original:
            break;
    }
    return originalPlan(request);
}

}  // namespace

ExportPlan ExportPlan::of(const Exporter::Request& request, const FrameRange& range) {
    ExportPlan plan = formOf(request);
    plan.frames = range.length();
    if (request.asFloat) { plan.samples = WavSamples::float32; }
    // A room rings on behind the last frame; in a loop it rings into the first.
    if (plan.config.toBinaural && !request.loop) {
        plan.frames += int64_t(std::floor(request.info.sampleRate * binauralTailSeconds));
    }
    return plan;
}

}  // namespace brindlehum
