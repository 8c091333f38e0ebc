// PieceBars: runs the analyses one after the other; only the newest counts.
#include "app/piece_bars.h"

#include "audio/probe/audio_file_info.h"
#include "audio/stream/sample_source.h"

namespace brindlehum {
namespace {

AnalysisOutcome analysisOf(const std::filesystem::path& file, const GivenBars& given, const Background::Task& task) {
    const AudioFileInfo info = AudioFileInfo::load(file);
    FileSamples samples(file);
    const std::string name = file.filename();
    return analyzeMusic({samples, info.detected, name, given.bpm, given.beatsPerBar, given.downbeat},
                        [&task](AnalysisStage) { return !task.isStopped(); });
}

std::string problemOf(AnalysisOutcome::Status status, const GivenBars& given) {
    switch (status) {
        case AnalysisOutcome::Status::tooShort:
            return "A second or less is too short for bars";
        case AnalysisOutcome::Status::noPulse:
            return given.bpm ? "Nothing sounds in this file" : std::string(AnalysisOutcome::noPulseText);
        case AnalysisOutcome::Status::done:
        case AnalysisOutcome::Status::cancelled:
            break;
    }
    return {};
}

}  // namespace

PieceBars::PieceBars(std::filesystem::path file, BarsByHand& stored, MainLoop& loop)
    : file_(std::move(file)), stored_(stored), given_(stored.find(file_)), background_(loop, "Brindlehum.bars") {
    analyse();
}

void PieceBars::set(const GivenBars& given) {
    if (given == given_) { return; }
    given_ = given;
    analyse();
    Q_EMIT changed();
}

const MusicAnalysis* PieceBars::analysis() const {
    return outcome_.analysis ? &*outcome_.analysis : nullptr;
}

const WorkingSignal* PieceBars::signal() const {
    if (outcome_.analysis) { return &outcome_.analysis->mono22k; }
    return outcome_.mono22k ? &*outcome_.mono22k : nullptr;
}

void PieceBars::analyse() {
    problem_.clear();
    const auto work = [file = file_, given = given_](const Background::Task& task) {
        return analysisOf(file, given, task);
    };
    const auto done = [this](AnalysisOutcome outcome) {
        outcome_ = std::move(outcome);
        problem_ = problemOf(outcome_.status, given_);
        Q_EMIT changed();
    };
    const auto failed = [this](const std::exception& error) {
        outcome_ = {};
        problem_ = error.what();
        Q_EMIT changed();
    };
    background_.run(analyses_, work, done, failed);
}

}  // namespace brindlehum
