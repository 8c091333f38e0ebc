// MusicModel: analyses when the hands rest, plans at once.
#include "editor/music/music_model.h"

#include <utility>

#include "audio/stream/sample_source.h"
#include "edits/temp_edit_planner.h"

namespace brindlehum {

MusicModel::MusicModel(DocumentModel& document, SettingsStore& settings, MainLoop& loop, PlayerMessage& message,
                       std::shared_ptr<SerialQueue> writer)
    : document_(document),
      settings_(settings),
      loop_(loop),
      message_(message),
      queue_(loop, "Brindlehum.music"),
      writer_(loop, std::move(writer)) {
    connect(&document, &DocumentModel::opened, this, &MusicModel::opened);
    connect(&document, &DocumentModel::edited, this, &MusicModel::edited);
    connect(&document, &DocumentModel::stepped, this, &MusicModel::stepped);
}

BarTimes MusicModel::bars() const {
    return {boundaries_, document_.doc() ? document_.doc()->sampleRate : 1, document_.total()};
}

void MusicModel::forget() {
    analyses_.cancel();
    rest_.reset();
    isAnalyzing_ = isStale_ = hasNoPulse_ = false;
    analysis_.reset();
    boundaries_.clear();
    pins_.reset();
    plans_.clear();
}

void MusicModel::opened() {
    forget();
    given_ = document_.doc() && findBars ? findBars(document_.doc()->url) : GivenBars();
    givenTo_.clear();
    lastExport_.reset();
    if (document_.doc()) { analyze(); }
    Q_EMIT changed();
}

void MusicModel::edited(const EditStep::Moved* moved) {
    if (moved) { given_ = following(given_, *moved, boundaries_, document_.doc()->sampleRate); }
    givenTo_[document_.history().stateID()] = given_;
    if (moved) { analyzeSoon(); }
}

void MusicModel::stepped() {
    const auto known = givenTo_.find(document_.history().stateID());
    if (known != givenTo_.end()) { given_ = known->second; }
    analyzeSoon();
}

// Plans of the sound before would cut in the wrong places, and go at once; bars are shown as stale.
void MusicModel::analyzeSoon() {
    analyses_.cancel();
    isAnalyzing_ = false;
    isStale_ = analysis_.has_value();
    pins_.reset();
    plans_.clear();
    rest_ = loop_.after(restSeconds, [this] { analyze(); });
    Q_EMIT changed();
}

void MusicModel::analyze() {
    rest_.reset();
    if (!document_.doc()) { return; }
    givenTo_[document_.history().stateID()] = given_;
    isAnalyzing_ = true;
    const auto work = [sound = document_.sound(), rate = document_.doc()->sampleRate,
                       source = document_.doc()->info.detected, name = document_.doc()->url.filename().string(),
                       given = given_](const Background::Task& task) {
        SoundSamples samples(sound, rate);
        return analyzeMusic({samples, source, name, given.bpm, given.beatsPerBar, given.downbeat},
                            [&task](AnalysisStage) { return !task.isStopped(); });
    };
    queue_.run(
        analyses_, work, [this](AnalysisOutcome outcome) { show(std::move(outcome)); },
        [this](const std::exception& error) {
            forget();
            message_.fail(error.what());
            Q_EMIT changed();
        });
    Q_EMIT changed();
}

void MusicModel::show(AnalysisOutcome outcome) {
    isAnalyzing_ = isStale_ = false;
    analysis_ = std::move(outcome.analysis);
    hasNoPulse_ = !analysis_;
    boundaries_ = analysis_ ? analysis_->grid.boundaries() : std::vector<double>();
    resetPins();
}

void MusicModel::give(const GivenBars& given) {
    if (!document_.doc()) { return; }
    given_ = given;
    if (keepBars && !document_.isDirty()) { keepBars(document_.doc()->url, given); }
    analyze();
}

void MusicModel::setTempo(double bpm) {
    GivenBars given = given_;
    given.bpm = bpm;
    if (analysis_) { given.beatsPerBar = analysis_->grid.beatsPerBar; }
    give(given);
}

void MusicModel::setBeatsPerBar(int beats) {
    GivenBars given = given_;
    given.beatsPerBar = beats;
    if (analysis_) { given.bpm = analysis_->grid.bpm; }
    give(given);
}

void MusicModel::setDownbeat(int64_t frame) {
    if (!document_.doc()) { return; }
    GivenBars given = given_;
    given.downbeat = double(frame) / document_.doc()->sampleRate;
    give(given);
}

void MusicModel::forgetGivenBars() {
    give({});
}

void MusicModel::movePin(PinKind kind, int64_t toFrame) {
    if (!pins_ || boundaries_.empty()) { return; }
    const Pins next = moved(*pins_, kind, toFrame, bars());
    if (next == *pins_) { return; }
    pins_ = next;
    replan();
}

void MusicModel::resetPins() {
    pins_ = analysis_ ? std::optional(analysis_->structure.pins) : std::nullopt;
    replan();
}

void MusicModel::setOptions(const TempEditOptions& options) {
    const auto fields = [](const TempEditOptions& o) {
        return std::tie(o.targets, o.extended, o.exactLength, o.crossfadeMs);
    };
    if (fields(options) == fields(options_)) { return; }
    options_ = options;
    replan();
}

void MusicModel::replan() {
    plans_.clear();
    if (document_.doc() && analysis_ && pins_ && !isStale_) {
        // The pins are the one thing that differs: lent for the call, so that the similarities aren't copied.
        const Pins measured = std::exchange(analysis_->structure.pins, *pins_);
        plans_ = TempEditPlanner::plans(analysis_->grid, analysis_->structure, document_.doc()->sampleRate,
                                        document_.total(), options_);
        analysis_->structure.pins = measured;
    }
    Q_EMIT changed();
}

void MusicModel::setSnap(bool snap) {
    snap_ = snap;
    Q_EMIT changed();
}

int64_t MusicModel::snapFrame(int64_t frame, double pixelsPerFrame) const {
    if (!snap_ || !analysis_ || isStale_) { return frame; }
    return snapped(frame, analysis_->grid.beats, document_.doc()->sampleRate, pixelsPerFrame);
}

void MusicModel::selectBar(int64_t frame) {
    const auto bar = isStale_ ? std::nullopt : barAt(frame, bars());
    // Without bars a double click selects everything, as in other editors.
    if (!bar && !boundaries_.empty()) { return; }
    document_.setSelection(bar.value_or(FrameRange{0, document_.total()}));
    document_.setCursor(bar ? bar->lower : 0);
}

PinnedLoop MusicModel::pinnedLoop() const {
    if (!pins_) { return {}; }
    PinnedLoop loop;
    if (pins_->loopStart < pins_->loopEnd) { loop.range = FrameRange{frame(pins_->loopStart), frame(pins_->loopEnd)}; }
    loop.carryTail = frame(pins_->loopEnd) >= frame(pins_->musicEnd);
    return loop;
}

void MusicModel::makeTempEdits() {
    if (!document_.doc() || !analysis_ || !pins_ || plans_.empty()) { return; }
    const auto& doc = *document_.doc();
    const AppSettings& settings = settings_.value();
    const auto work = [this, url = doc.url, besideSource = settings.tempEditsBesideSource, pulls = settings.pulls(),
                       rate = doc.sampleRate, sound = document_.sound(), plans = plans_, options = options_,
                       header = TempEditExporter::notesHeader(doc.url.filename().string(), doc.url, *analysis_,
                                                              *pins_)](const Background::Task& task) {
        const auto folder = TempEditExporter::folderFor(url, TempEditExporter::editsFolder(url, besideSource, pulls));
        const std::string base = url.stem().string();
        TempEditExporter::Result done;
        const auto progress = [&](size_t plan, const std::string&) {
            task.tell([this, share = double(plan) / double(plans.size())] {
                writing_ = share;
                Q_EMIT changed();
            });
        };
        TempEditExporter::write({url, folder, base, header, plans, sound, rate, options}, done, progress, task.token());
        return done;
    };
    writing_ = 0;
    writer_.run(
        exports_, work,
        [this](TempEditExporter::Result done) {
            writing_.reset();
            message_.notify(std::to_string(done.files.size()) + " edits written");
            lastExport_ = std::move(done);
            Q_EMIT changed();
        },
        [this](const std::exception& error) {
            writing_.reset();
            message_.fail(error.what());
            Q_EMIT changed();
        });
    Q_EMIT changed();
}

void MusicModel::cancelTempEdits() {
    if (!writing_) { return; }
    exports_.cancel();
    writing_.reset();
    Q_EMIT changed();
}

}  // namespace brindlehum
