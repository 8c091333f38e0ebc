// Exporter: from the request to the file in its place.
#include "mix/export/exporter.h"

#include <algorithm>
#include <cmath>
#include <ctime>

#include "audio/write/wav_file_writer.h"
#include "base/error.h"
#include "base/number_text.h"
#include "base/path.h"
#include "base/text.h"
#include "export_level.h"
#include "export_render.h"
#include "mix/export/export_name.h"
#include "mix/export/export_plan.h"
#include "pull_file.h"

namespace brindlehum::Exporter {
namespace {

// Without what has no effect on this source: it must not find its way into names.
Request effective(Request request) {
    const bool monitored = request.mode.kind == DragExport::Kind::original ? request.source == SourceFormat::stereo()
                                                                           : request.mode.kind == DragExport::Kind::bed;
    if (request.info.channels != 2 || !monitored) { request.listen = ListenMode::normal; }
    return request;
}

Result untouched(const Request& request) {
    std::error_code error;
    if (!std::filesystem::is_regular_file(request.info.url, error)) {
        throw Error("Can't read " + printableName(request.info.url) + ": " +
                    (error ? error.message() : "it isn't a regular file"));
    }
    return {request.info.url, request.source.displayName(), request.info.channels, request.info.frames, {}, 0};
}

FrameRange rangeOf(const Request& request) {
    const FrameRange all{0, request.info.frames};
    if (!request.range) { return all; }
    const FrameRange range{std::max(request.range->lower, all.lower), std::min(request.range->upper, all.upper)};
    if (range.length() < 1) { throw Error("There is nothing to export between these times"); }
    return range;
}

// A long name is cut, not what the channels are.
std::string describe(const Request& request, const FrameRange& range, const std::string& label) {
    const auto seconds = [&](int64_t frame) { return fixed(double(frame) / request.info.sampleRate, 3); };
    const std::string start = request.edited ? "Edited in Brindlehum from " : "Pulled from ";
    const std::string end = " [" + seconds(range.lower) + "-" + seconds(range.upper) + " s] " + label;
    const size_t room =
        WavFileWriter::descriptionBytes - std::min(start.size() + end.size(), WavFileWriter::descriptionBytes);
    return start + std::string(cutUtf8(printableName(request.info.url), room)) + end;
}

// Before anything is rendered or written.
void checkSize(const ExportPlan& plan) {
    if (uint64_t(plan.frames) > WavFileWriter::maxDataBytes / plan.frameBytes()) {
        throw Error(ErrorKind::wavSizeLimit, "Selection too long for a WAV file (4 GB limit)");
    }
}

bool isStopped(const Watch& watch) {
    return watch.stop.stop_requested();
}

// False when stopped.
bool render(const Request& request, const FrameRange& range, const ExportPlan& plan, WavFileWriter& writer,
            ExportLevel& level, const Watch& watch) {
    ExportRender source(request, range, plan, [&watch] { return isStopped(watch); });
    for (int64_t done = 0; done < plan.frames;) {
        const int frames = source.next(plan.frames - done);
        if (isStopped(watch)) { return false; }
        if (source.brokeOff()) { throw Error(printableName(request.info.url) + " broke off while it was read"); }
        for (int c = 0; c < plan.channels; ++c) { level.add(source.planes()[size_t(c)], frames, source.peak(c)); }
        writer.append(source.planes(), frames);
        done += frames;
        if (watch.progress) { watch.progress(double(done) / double(plan.frames)); }
    }
    return true;
}

std::optional<Result> write(const Request& request, const Watch& watch) {
    const FrameRange range = rangeOf(request);
    const ExportPlan plan = ExportPlan::of(request, range);
    checkSize(plan);
    PullFile pull(request.folder / ExportName::day(std::time(nullptr)), ExportName::fileName(request));
    pull.file().reserve(uint64_t(plan.frames) * plan.frameBytes());
    WavNotes notes = request.edited ? request.edited->notes()
                     : watch.carry  ? watch.carry(request.info.url, range)
                                    : WavNotes();
    notes.description = describe(request, range, plan.label);
    WavFileWriter writer(pull.file().sink(),
                         {request.info.sampleRate, plan.channels, plan.mask, plan.samples, std::move(notes)});
    ExportLevel level;
    if (!render(request, range, plan, writer, level, watch)) { return std::nullopt; }
    writer.finish();
    if (watch.mayPlace && !watch.mayPlace()) { return std::nullopt; }
    const int64_t clipped = request.asFloat ? 0 : level.clipped;
    return Result{pull.place(), plan.label, plan.channels, plan.frames, level.peak, clipped};
}

}  // namespace

std::optional<Result> make(const Request& asked, const Watch& watch) {
    const Request request = effective(asked);
    const bool isWhole = request.mode.kind == DragExport::Kind::original && !request.range;
    if (isWhole && request.listen == ListenMode::normal && !request.edited) { return untouched(request); }
    try {
        return write(request, watch);
    } catch (const std::exception&) {
        if (isStopped(watch)) { return std::nullopt; }  // a stop makes reads fail
        throw;
    }
}

std::string remark(const Result& result) {
    if (result.clipped == 0) { return {}; }
    if (!(result.peak.value_or(0) > 1)) { return "samples that are no numbers were clipped"; }
    return "peaks " + fixed(20 * std::log10(*result.peak), 1) + " dB above full scale were clipped";
}

}  // namespace brindlehum::Exporter
