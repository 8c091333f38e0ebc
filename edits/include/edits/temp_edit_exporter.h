// TempEditExporter: writes a folder of edits of one piece, with a sheet that tells a music editor how each was cut.
#pragma once

#include <filesystem>
#include <functional>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

#include "analysis/music_analysis.h"
#include "dsp/sound.h"
#include "edits/edit_plan.h"

namespace brindlehum::TempEditExporter {

struct Result {
    std::filesystem::path folder;
    std::vector<std::filesystem::path> files;  // in the order of the plans
    std::vector<double> seconds;               // of each file
    std::filesystem::path notes;               // the sheet; empty until it is written
};

// "<source folder>/<base> Edits" when `besideSource` is set and that folder is writable, else
// "<pullsFolder>/Edits/<base> Edits"; base is the file's name without extension. Accesses the disk.
std::filesystem::path editsFolder(const std::filesystem::path& source, bool besideSource,
                                  const std::filesystem::path& pullsFolder);

// `folder`, from editsFolder(), unless it holds the edits of another piece: of Rain.flac, beside Rain.wav. Then
// "Rain.flac Edits" in its place, or the first "Rain.flac Edits 2" and so on without another piece's edits. In a folder
// beside its source the file's name decides, elsewhere the whole path. Reads the disk.
std::filesystem::path folderFor(const std::filesystem::path& source, const std::filesystem::path& folder);

// Where write() would put a plan's file now: "<base> - <plan name>.wav", or with a number behind it while a file of
// that name isn't ours.
std::filesystem::path fileOf(const std::filesystem::path& folder, std::string_view base, const EditPlan& plan);

// The head of the sheet, one entry per line: where the piece comes from, the results of the analysis, and its pins.
std::vector<std::string> notesHeader(std::string_view name, const std::filesystem::path& url,
                                     const MusicAnalysis& analysis, const Pins& pins);

// The input of an export. Everything is borrowed for the call.
struct Job {
    const std::filesystem::path& source;  // absolute
    const std::filesystem::path& folder;
    std::string_view base;                   // of the file names
    const std::vector<std::string>& header;  // of the sheet
    const std::vector<EditPlan>& plans;
    const Sound& sound;     // the source
    double sampleRate = 0;  // Hz
    const TempEditOptions& options;
};

// Called before each plan is rendered, with its index and the name of the file.
using Progress = std::function<void(size_t plan, const std::string& file)>;

// Renders and writes "<base> - <plan name>.wav" for every plan, one at a time and with one in memory, then "<base> -
// Edit Notes.txt". Replaces only files that we wrote and nobody has changed since; a name that another file has gets a
// number. A file appears under its name, or replaces an older one, only when it is complete and synced to disk. Returns
// false when `stop` was requested; then, and when an Error is thrown, `done` lists the finished files, which stay.
// Blocking I/O on the caller's thread.
bool write(const Job& job, Result& done, const Progress& progress = {}, const std::stop_token& stop = {});

}  // namespace brindlehum::TempEditExporter
