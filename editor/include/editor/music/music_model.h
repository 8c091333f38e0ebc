// MusicModel: bars, key, loudness, pins and edit plans of the editor's document.
#pragma once

#include <QObject>
#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "analysis/music_analysis.h"
#include "editor/document/document_model.h"
#include "editor/music/moved_bars.h"
#include "editor/music/pin_moves.h"
#include "edits/edit_plan.h"
#include "edits/temp_edit_exporter.h"
#include "settings/settings_store.h"

namespace brindlehum {

// Main thread. A document is analysed when it is opened, and after edits once the hands rest; a newer analysis
// overtakes an older one, and none is shown for a sound that is no longer the document's.
class MusicModel : public QObject {
    Q_OBJECT
public:
    static constexpr double restSeconds = 0.6;  // from an edit to its analysis

    // Temp edits are written on `writer`, which all share that write some.
    MusicModel(DocumentModel& document, SettingsStore& settings, MainLoop& loop, PlayerMessage& message,
               std::shared_ptr<SerialQueue> writer);

    const std::optional<MusicAnalysis>& analysis() const { return analysis_; }
    // The analysis is of an earlier state of the sound: bars may have moved.
    bool isStale() const { return isStale_; }
    bool isAnalyzing() const { return isAnalyzing_; }
    // No pulse was found, or the sound is too short for one: there are no bars.
    bool hasNoPulse() const { return hasNoPulse_; }
    const GivenBars& givenBars() const { return given_; }
    const std::vector<double>& boundaries() const { return boundaries_; }  // seconds
    BarTimes bars() const;
    int64_t frame(int ofBoundary) const { return frameOfBoundary(bars(), ofBoundary); }

    // The working copy; each analysis starts it anew.
    const std::optional<Pins>& pins() const { return pins_; }
    const std::vector<EditPlan>& plans() const { return plans_; }
    const TempEditOptions& options() const { return options_; }
    const std::optional<TempEditExporter::Result>& lastExport() const { return lastExport_; }
    // Share of the edits written, while they are.
    const std::optional<double>& writing() const { return writing_; }

    // Each analyses again; they stay until another document is opened, and follow its edits.
    void setTempo(double bpm);
    void setBeatsPerBar(int beats);
    void setDownbeat(int64_t frame);
    void forgetGivenBars();
    void analyze();

    void movePin(PinKind kind, int64_t toFrame);
    void resetPins();
    void setOptions(const TempEditOptions& options);

    bool snap() const { return snap_; }  // selections snap to beats
    void setSnap(bool snap);
    // The frame, or a beat near it on the screen, if snapping is on.
    int64_t snapFrame(int64_t frame, double pixelsPerFrame) const;
    void selectBar(int64_t frame);
    // The loop that the pins mark.
    PinnedLoop pinnedLoop() const;

    // What is known of a file's bars from earlier, and a way to keep it. Only what belongs to the file itself is kept:
    // what is given to an edited sound lasts as long as the document.
    std::function<GivenBars(const std::filesystem::path& file)> findBars;
    std::function<void(const std::filesystem::path& file, const GivenBars& given)> keepBars;

    // Writes all plans and their sheet into the edits' folder.
    void makeTempEdits();
    void cancelTempEdits();

    Background& queue() { return queue_; }  // tests drain it

Q_SIGNALS:
    void changed();

private:
    void opened();
    void edited(const EditStep::Moved* moved);
    void stepped();
    void analyzeSoon();
    void give(const GivenBars& given);
    void show(AnalysisOutcome outcome);
    void forget();
    void replan();

    DocumentModel& document_;
    SettingsStore& settings_;
    MainLoop& loop_;
    PlayerMessage& message_;
    std::optional<MusicAnalysis> analysis_;
    std::vector<double> boundaries_;
    bool isStale_ = false;
    bool isAnalyzing_ = false;
    bool hasNoPulse_ = false;
    GivenBars given_;
    std::map<uint64_t, GivenBars> givenTo_;  // by state of the document, for undo
    std::optional<Pins> pins_;
    std::vector<EditPlan> plans_;
    TempEditOptions options_;
    bool snap_ = true;
    std::optional<TempEditExporter::Result> lastExport_;
    std::optional<double> writing_;
    TimerHandle rest_;
    Background::Line analyses_;
    Background::Line exports_;
    Background queue_;   // analyses
    Background writer_;  // temp edits; last members, so that their work ends first
};

}  // namespace brindlehum
