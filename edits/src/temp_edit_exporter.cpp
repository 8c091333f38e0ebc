// TempEditExporter: writes the files of one piece, one after the other.
#include "edits/temp_edit_exporter.h"

#include <algorithm>
#include <cmath>

#include "analysis/structure/text.h"
#include "audio/write/wav_file_writer.h"
#include "base/file_replacement.h"
#include "base/path.h"
#include "base/text.h"
#include "base/time_text.h"
#include "channel_mask.h"
#include "edits/temp_edit_renderer.h"
#include "edits_record.h"
#include "length_fit.h"

namespace brindlehum::TempEditExporter {
namespace {

constexpr int64_t blockFrames = 65536;
constexpr double seamless = 0.999;  // a quality of at least this needs no remark

// Returns false when a stop was requested before the end.
bool writeWave(FileReplacement& file, const Job& job, const EditPlan& plan,
               const std::vector<std::vector<float>>& audio, const std::stop_token& stop) {
    const std::string description = std::string(editMark) + std::string(job.base) + " " + plan.name + ". " + plan.map;
    WavFileWriter writer(file.sink(), job.sampleRate, int(audio.size()), channelMask(audio.size()),
                         repairUtf8(description));
    std::vector<const float*> planes(audio.size());
    const auto frames = int64_t(audio.empty() ? 0 : audio[0].size());
    for (int64_t at = 0; at < frames; at += blockFrames) {
        if (stop.stop_requested()) { return false; }
        std::ranges::transform(audio, planes.begin(), [at](const auto& c) { return c.data() + at; });
        writer.append(planes, std::min(blockFrames, frames - at));
    }
    writer.finish(true);
    return true;
}

std::string wantedName(std::string_view base, const EditPlan& plan) {
    return std::string(base) + " - " + plan.name + ".wav";
}

std::string sheetLine(const std::string& file, double seconds, const EditPlan& plan) {
    std::string line = file + "    (" + fixed(seconds, 2) + " s)";
    if (plan.quality < seamless) { line += "  · splice match " + fixed(plan.quality * 100, 0) + "%"; }
    const double missed = plan.targetSec.value_or(seconds) - seconds;
    if (std::abs(missed) > TempEditPlanner::lengthTolerance) {
        line += "  · " + fixed(std::abs(missed), 1) + (missed > 0 ? " s short" : " s over");
    }
    return line;
}

// How to read the map of an edit that isn't cut on bar lines alone.
std::string fillingsLine(const std::vector<EditPlan>& plans) {
    const auto isFilled = [](const EditPlan::Span& span) { return span.pause > 0 || span.beat > 1; };
    const bool any =
        std::ranges::any_of(plans, [&](const EditPlan& plan) { return std::ranges::any_of(plan.spans, isFilled); });
    return any ? "Where bars don't reach a length, an edit enters on another beat (b12.3 is the third beat of bar 12) "
                 "or "
                 "pauses on a bar line."
               : "";
}

// Where the parts of the edit lie in the source: "0:00.000–0:12.000 ↷ 0:24.000–0:36.000".
std::string timesOf(const EditPlan& plan, double sampleRate) {
    std::string out;
    for (const auto& [start, end, pause, beat] : plan.spans) {
        if (!out.empty()) { out += pause > 0 ? " · pause · " : " ↷ "; }
        out += timeText(double(start) / sampleRate) + "–" + timeText(double(end) / sampleRate);
    }
    return out;
}

// The sheet is UTF-8 with one entry per line, while file names may hold any bytes. There is always one line or more.
std::string sheetText(const std::vector<std::string>& lines) {
    std::string out;
    for (std::string line : lines) {
        std::ranges::replace_if(
            line, [](char c) { return c == '\n' || c == '\r'; }, ' ');
        out += line + '\n';
    }
    out.pop_back();
    return repairUtf8(out);
}

}  // namespace

std::filesystem::path fileOf(const std::filesystem::path& folder, std::string_view base, const EditPlan& plan) {
    return folder / EditsRecord(folder).nameFor(wantedName(base, plan));
}

bool write(const Job& job, Result& done, const Progress& progress, const std::stop_token& stop) {
    done = {job.folder, {}, {}, {}};
    createFolders(job.folder);
    EditsRecord record(job.folder);
    record.begin(job.source);
    std::vector<std::string> lines = job.header;
    if (std::string how = fillingsLine(job.plans); !how.empty()) { lines.push_back(std::move(how)); }
    lines.emplace_back();
    for (size_t i = 0; i < job.plans.size(); ++i) {
        if (stop.stop_requested()) { return false; }
        const EditPlan& plan = job.plans[i];
        const std::string wanted = wantedName(job.base, plan);
        if (progress) { progress(i, record.nameFor(wanted)); }
        const auto audio = TempEditRenderer::render(plan, job.sound, job.sampleRate, job.options);
        const std::string name = record.nameFor(wanted);
        // The sheet is written last and syncs the folder for all files.
        FileReplacement file(job.folder / name, {.syncFolder = false});
        if (!writeWave(file, job, plan, audio, stop)) { return false; }
        file.commit();
        record.add(name);
        done.files.push_back(job.folder / name);
        done.seconds.push_back(audio.empty() ? 0 : double(audio[0].size()) / job.sampleRate);
        lines.push_back(sheetLine(name, done.seconds.back(), plan));
        lines.push_back("    " + plan.map + "  (" + timesOf(plan, job.sampleRate) + ")");
    }
    if (stop.stop_requested()) { return false; }
    const std::string notes = record.nameFor(std::string(job.base) + " - Edit Notes.txt");
    FileReplacement::writeText(job.folder / notes, sheetText(lines));
    record.add(notes);
    done.notes = job.folder / notes;
    return true;
}

}  // namespace brindlehum::TempEditExporter
