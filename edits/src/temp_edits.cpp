// TempEdits: processes one file, from its name to its folder of edits.
#include "edits/temp_edits.h"

#include <new>

#include "audio/probe/audio_file_info.h"
#include "audio/stream/sample_source.h"
#include "base/error.h"
#include "dsp/sound.h"
#include "edits/temp_edit_planner.h"
#include "one_file.h"

namespace brindlehum::TempEdits {
namespace {

Planned failed(Status status, std::string reason) {
    Planned out;
    out.status = status;
    out.reason = std::move(reason);
    return out;
}

Planned cancelled() {
    return failed(Status::cancelled, "Cancelled");
}

Planned planOrThrow(const std::filesystem::path& path, const TempEditOptions& options, const GivenBars& given,
                    const std::stop_token& stop) {
    if (stop.stop_requested()) { return cancelled(); }
    const AudioFileInfo info = AudioFileInfo::load(path);
    Planned out;
    FileSamples samples(path);
    out.sampleRate = samples.sampleRate();
    out.frames = samples.frames();
    const std::string name = path.filename();
    auto analysed = analyzeMusic({samples, info.detected, name, given.bpm, given.beatsPerBar, given.downbeat},
                                 [&stop](AnalysisStage) { return !stop.stop_requested(); });
    switch (analysed.status) {
        case AnalysisOutcome::Status::tooShort:
            return failed(Status::tooShort, "A second or less is too short");
        case AnalysisOutcome::Status::noPulse:
            return failed(Status::noPulse, "No steady pulse found");
        case AnalysisOutcome::Status::cancelled:
            return cancelled();
        case AnalysisOutcome::Status::done:
            break;
    }
    out.analysis = std::move(analysed.analysis);
    out.plans =
        TempEditPlanner::plans(out.analysis->grid, out.analysis->structure, out.sampleRate, out.frames, options);
    return out;
}

// Runs one part of the work. An exception sets the status `failure` with its text as the reason.
template <class Work, class Fail>
auto guarded(Work work, Fail fail) {
    try {
        return work();
    } catch (const std::bad_alloc&) { return fail("Not enough memory"); } catch (const std::exception& error) {
        return fail(error.what());
    }
}

// Throws Error unless the file still holds as many frames as when it was analysed.
Sound readAll(const std::filesystem::path& path, int64_t frames) {
    FileSamples samples(path);
    if (samples.frames() != frames) { throw Error("The file changed while it was read"); }
    SoundBuilder builder(samples.channels());
    std::vector<const float*> planes(size_t(samples.channels()));
    for (int64_t at = 0; at < frames;) {
        const int count = samples.read(at, int(SoundBlock::longest), planes.data());
        builder.append(planes.data(), count);
        at += count;
    }
    return builder.finish();
}

}  // namespace

Planned plan(const std::filesystem::path& path, const TempEditOptions& options, const GivenBars& given,
             const std::stop_token& stop) {
    return guarded([&] { return planOrThrow(path, options, given, stop); },
                   [](const char* reason) { return failed(Status::unread, reason); });
}

Outcome makeOne(const Job& job, const TempEditOptions& options, const TempEditExporter::Progress& progress,
                const PlansKnown& plansKnown, const std::stop_token& stop) {
    Planned planned = plan(job.url, options, job.given, stop);
    Outcome out;
    out.status = planned.status;
    out.reason = std::move(planned.reason);
    out.result.folder = job.folder;
    if (out.status != Status::done) { return out; }
    out.sampleRate = planned.sampleRate;
    out.barLinesUncertain = planned.analysis->grid.barLinesUncertain();
    // Only now, when there is something to cut, are all samples read.
    const Sound sound = guarded([&] { return readAll(job.url, planned.frames); },
                                [&out](const char* reason) {
                                    out.status = Status::unread;
                                    out.reason = reason;
                                    return Sound();
                                });
    if (out.status != Status::done) { return out; }
    out.plans = std::move(planned.plans);
    plansKnown(out.plans.size());
    const auto writeAll = [&] {
        const std::string base = job.url.stem();
        const std::filesystem::path source = std::filesystem::absolute(job.url);
        const std::filesystem::path folder = TempEditExporter::folderFor(source, job.folder);
        const auto header =
            TempEditExporter::notesHeader(base, source, *planned.analysis, planned.analysis->structure.pins);
        const TempEditExporter::Job all{source, folder, base, header, out.plans, sound, out.sampleRate, options};
        if (!TempEditExporter::write(all, out.result, progress, stop)) {
            out.status = Status::cancelled;
            out.reason = "Cancelled";
        }
    };
    guarded(writeAll, [&out](const char* reason) {
        out.status = Status::unwritten;
        out.reason = reason;
    });
    return out;
}

Outcome make(const Job& job, const TempEditOptions& options, const Progress& progress, const std::stop_token& stop) {
    return std::move(makeAll({&job, 1}, options, progress, stop, {.workers = 1})[0]);
}

}  // namespace brindlehum::TempEdits
