// TempEdits: turns whole files into their folders of edits, for batches and the command line.
//
// All calls block on I/O and computation: call them on a background thread. They throw nothing; the outcome holds the
// reason for a failure. They check for a stop between the stages of the analysis and every second or so of written
// audio.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <span>
#include <stop_token>
#include <string>
#include <vector>

#include "analysis/bars/given_bars.h"
#include "analysis/piece/music_analysis.h"
#include "edits/edit_plan.h"
#include "edits/temp_edit_exporter.h"

namespace brindlehum::TempEdits {

enum class Status {
    done,
    unread,     // the file can't be opened or read, or is too large for memory
    tooShort,   // a second or less
    noPulse,    // no tempo was found
    unwritten,  // the folder or a file in it can't be written
    cancelled
};

// One file with its analysis and plans.
struct Planned {
    Status status = Status::done;
    std::string reason;  // one line for the user, empty when done
    // The members below are set when done.
    double sampleRate = 0;  // Hz
    int64_t frames = 0;
    std::optional<MusicAnalysis> analysis;
    std::vector<EditPlan> plans;
};
Planned plan(const std::filesystem::path& path, const TempEditOptions& options = {}, const GivenBars& given = {},
             const std::stop_token& stop = {});

struct Job {
    std::filesystem::path url;
    std::filesystem::path folder;  // see TempEditExporter::editsFolder; folderFor has the last word
    GivenBars given = {};
};
struct Outcome {
    Status status = Status::done;     // done even when there are no plans: the sheet is written
    std::string reason;               // one line for the user, empty when done
    TempEditExporter::Result result;  // the finished files, whatever the status
    std::vector<EditPlan> plans;      // set once known; result.files belong to the first of them
    double sampleRate = 0;            // Hz, of the source
    bool barLinesUncertain = false;   // the edits may be cut on the wrong beat
};

// A step of the batch.
struct Step {
    enum class Kind {
        started,   // a file; it is read and analysed next
        writing,   // `file`, the edit for plan `plan` of `plans`
        finished,  // a file, with its `outcome`
    };
    Kind kind = Kind::started;
    size_t index = 0;  // of this job
    size_t count = 0;  // number of all jobs
    const Job& job;
    size_t plan = 0;
    size_t plans = 0;
    std::string file;
    const Outcome* outcome = nullptr;  // borrowed for the call
};
// Called on the batch's threads, one call at a time. Files start in their order; the steps of files in progress at the
// same time interleave. Must not throw.
using Progress = std::function<void(const Step&)>;

// Processes one file: read, analyse, plan, render, write.
Outcome make(const Job& job, const TempEditOptions& options = {}, const Progress& progress = {},
             const std::stop_token& stop = {});

struct Limits {
    unsigned workers = 0;                    // files processed at once; 0: one per processor core
    int64_t memoryBytes = int64_t(2) << 30;  // samples held by all files in progress; a larger file runs alone
};
// Runs a batch and returns one outcome per job, in the order of the jobs. A failure ends only its own file. Jobs with
// the same folder run one after the other. After a stop the files not yet begun are `cancelled`.
std::vector<Outcome> makeAll(std::span<const Job> jobs, const TempEditOptions& options = {},
                             const Progress& progress = {}, const std::stop_token& stop = {}, Limits limits = {});

// The final message of a batch; counts all skipped files together, whatever the reason, and says how many written ones
// need their bars set by hand.
std::string closingText(std::span<const Outcome> outcomes);

}  // namespace brindlehum::TempEdits
