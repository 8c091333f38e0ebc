// PieceBars: the bars of one piece, analysed anew with each value that the user sets.
#pragma once

#include <QObject>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "analysis/bars/given_bars.h"
#include "analysis/piece/music_analysis.h"
#include "app/bars_by_hand.h"
#include "platform/background.h"

namespace brindlehum {

// Main thread. Begins with what is stored for the file, and starts to analyse at once.
class PieceBars : public QObject {
    Q_OBJECT
public:
    PieceBars(std::filesystem::path file, BarsByHand& stored, MainLoop& loop);
    // Stops a running analysis, and waits until it has noticed.
    ~PieceBars() override { analyses_.cancel(); }

    const std::filesystem::path& file() const { return file_; }
    const GivenBars& given() const { return given_; }
    // Analyses again unless nothing changes.
    void set(const GivenBars& given);
    // Temp edits are cut by these values from now on.
    void store() { stored_.set(file_, given_); }

    bool isAnalysing() const { return analyses_.isBusy(); }
    // The latest analysis; stays while a newer one runs. Null when there is none.
    const MusicAnalysis* analysis() const;
    // The signal at Signal::analysisRate, also when the piece has no pulse; null before the first analysis.
    const WorkingSignal* signal() const;
    // Why there is no analysis with these values, in one line; empty if there is one, or will be.
    const std::string& problem() const { return problem_; }

Q_SIGNALS:
    void changed();

private:
    void analyse();

    const std::filesystem::path file_;
    BarsByHand& stored_;
    GivenBars given_;
    AnalysisOutcome outcome_;
    std::string problem_;
    Background::Line analyses_;
    Background background_;
};

}  // namespace brindlehum
