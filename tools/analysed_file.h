// Analyses a file as music, for the commands that show the result.
#pragma once

#include <string>

#include "analysis/bars/given_bars.h"
#include "analysis/piece/music_analysis.h"
#include "audio/probe/audio_file_info.h"
#include "command.h"

namespace brindlehum::cli {

// Values that the user sets to override the analysis.
struct AnalysisWords {
    GivenBars given;

    // Reads `bpm N`, `meter N` or `downbeat SECONDS` at `at` and moves `at` to the value; returns false for any other
    // word. Throws UsageError.
    bool take(Words words, size_t& at);
};
extern const std::string_view analysisHelp;  // its words, one per line

struct AnalysedFile {
    AudioFileInfo info;
    AnalysisOutcome outcome;
    double seconds() const { return double(info.frames) / info.sampleRate; }
};
// Shows the current stage on stderr if that is a terminal. Throws Error when the file can't be read.
AnalysedFile analyseFile(const std::string& file, const AnalysisWords& words);

std::string_view rawValue(AnalysisOutcome::Status status);
// The message for an outcome without an analysis.
std::string_view failureText(AnalysisOutcome::Status status);

}  // namespace brindlehum::cli
