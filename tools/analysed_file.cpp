// Analyses a file as music and shows how far it is.
#include "analysed_file.h"

#include <array>
#include <filesystem>

#include "progress_line.h"
#include "word_values.h"

namespace brindlehum::cli {

const std::string_view analysisHelp =
    "  bpm N              the tempo, 20 to 400\n"
    "  meter N            the beats a bar, 1 to 16\n"
    "  downbeat SECONDS   a time at which a bar starts\n";

namespace {

constexpr std::array<std::string_view, analysisStageCount> stageNames = {"mono", "tempo",    "grid",     "spectrum",
                                                                         "key",  "loudness", "structure"};

}  // namespace

bool AnalysisWords::take(Words words, size_t& at) {
    const std::string& word = words[at];
    if (word != "bpm" && word != "meter" && word != "downbeat") { return false; }
    if (++at == words.size()) { throw UsageError("no value after \"" + word + "\""); }
    using namespace GivenBarsRange;
    if (word == "bpm") {
        given.bpm = numberAfter(word, words[at], slowestBpm, fastestBpm);
    } else if (word == "downbeat") {
        given.downbeat = numberAfter(word, words[at], 0, latestDownbeat);
    } else {
        given.beatsPerBar = wholeNumberAfter(word, words[at], 1, mostBeatsPerBar);
    }
    return true;
}

AnalysedFile analyseFile(const std::string& file, const AnalysisWords& words) {
    const std::string label = std::filesystem::path(file).filename().string().substr(0, 40) + ": ";
    ProgressLine progress;
    progress.tell(label + "reading");
    AnalysedFile result{AudioFileInfo::load(file), {}};
    FileSamples samples(file);
    const std::string name = std::filesystem::path(file).filename().string();
    const GivenBars& given = words.given;
    const AnalysisInput input{samples, result.info.detected, name, given.bpm, given.beatsPerBar, given.downbeat};
    result.outcome = analyzeMusic(input, [&](AnalysisStage stage) {
        const bool reading = stage == AnalysisStage::mono;
        progress.tell(label + std::string(reading ? "reading" : stageNames[size_t(stage)]));
        return true;
    });
    return result;
}

std::string_view rawValue(AnalysisOutcome::Status status) {
    switch (status) {
        case AnalysisOutcome::Status::done:
            return "done";
        case AnalysisOutcome::Status::tooShort:
            return "tooShort";
        case AnalysisOutcome::Status::noPulse:
            return "noPulse";
        case AnalysisOutcome::Status::cancelled:
            break;
    }
    return "cancelled";
}

std::string_view failureText(AnalysisOutcome::Status status) {
    return status == AnalysisOutcome::Status::tooShort ? "Too short for a music analysis: a second or less"
                                                       : AnalysisOutcome::noPulseText;
}

}  // namespace brindlehum::cli
