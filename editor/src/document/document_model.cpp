// DocumentModel: opening, the history of edits, and work that takes a while.
#include "editor/document/document_model.h"

#include <algorithm>
#include <chrono>
#include <new>

#include "base/path.h"
#include "editor/document/clipboard.h"
#include "editor/document/edit_preview.h"
#include "editor/document/save_document.h"

namespace brindlehum {
namespace {

// Samples that an edit changes within a few milliseconds; more of them are changed in the background.
constexpr int64_t quickSamples = 2'000'000;

int64_t unixTime() {
    return std::chrono::duration_cast<std::chrono::seconds>(std::chrono::system_clock::now().time_since_epoch())
        .count();
}

// The words may have been edited since the document was opened, and stand in the file then. Times are counted from what
// was opened: a save over that file has moved its own.
WavNotes notesNow(const DocumentModel::Doc& doc, const DocumentModel::ReadNotes& read) {
    std::error_code none;
    if (!read || !std::filesystem::is_regular_file(doc.url, none)) { return doc.notes; }
    WavNotes notes = read(doc.url);
    notes.timeReference = doc.notes.timeReference;
    return notes;
}

}  // namespace

DocumentModel::DocumentModel(MainLoop& loop, std::filesystem::path journals, PlayerMessage& message)
    : message_(message),
      journal_(std::move(journals), loop, [this](const std::string& problem) { message_.fail(problem); }),
      queue_(loop, "Brindlehum.editor"),
      listening_(loop, "Brindlehum.preview") {
    journal_.findAbandoned([this](std::vector<std::filesystem::path> found) {
        abandoned_ = std::move(found);
        if (!abandoned_.empty()) { Q_EMIT abandonedChanged(); }
    });
}

DocumentModel::~DocumentModel() = default;

void DocumentModel::setBusy(std::optional<Busy> busy) {
    busy_ = std::move(busy);
    if (!busy_) { loading_.reset(); }
    Q_EMIT changed();
}

void DocumentModel::showLoading(Loading loading) {
    loading_ = std::move(loading);
    ++revision_;
    Q_EMIT changed();
}

void DocumentModel::open(const std::filesystem::path& path) {
    setBusy(Busy{"Loading…", 0.0});
    message_.clear();
    const auto work = [this, path, read = readNotes](const Background::Task& task) {
        const auto progress = [&, shown = 0.0](double share) mutable {
            if (share - shown < 0.02) { return; }
            shown = share;
            task.tell([this, share] { setBusy(Busy{"Loading…", share}); });
        };
        const auto shown = [&](const AudioFileInfo& info, Sound soFar, int64_t total) {
            task.tell([this, loading = Loading{path, info, std::move(soFar), total, info.sampleRate}] {
                showLoading(loading);
            });
        };
        LoadedDocument loaded = loadDocument(
            path, progress, [&] { return task.isStopped(); }, shown);
        if (read) { loaded.notes = read(path); }
        return loaded;
    };
    queue_.run(
        jobs_, work,
        [this, path](LoadedDocument loaded) {
            setBusy(std::nullopt);
            Doc doc{path, std::move(loaded.info), 0, std::move(loaded.notes)};
            doc.sampleRate = doc.info.sampleRate;
            const Marks marks{doc.notes.cues, 0};
            show(std::move(doc), EditHistory({std::move(loaded.sound), marks}));
            journal_.begin({path, doc_->sampleRate, unixTime(), doc_->notes});
            if (loaded.notNumbers > 0) {
                message_.notify(std::to_string(loaded.notNumbers) +
                                " samples that are no numbers were read as silence");
            }
        },
        [this](const std::exception& error) {
            setBusy(std::nullopt);
            message_.fail(error.what());
        });
}

void DocumentModel::show(std::optional<Doc> doc, EditHistory history) {
    ++documents_;
    doc_ = std::move(doc);
    history_ = std::move(history);
    selection_.reset();
    cursor_ = 0;
    view_ = VisibleRange::all(total());
    ++revision_;
    Q_EMIT opened();
    Q_EMIT changed();
}

void DocumentModel::close() {
    jobs_.cancel();
    busy_.reset();
    loading_.reset();
    journal_.close();
    show(std::nullopt, {});
}

void DocumentModel::cancel() {
    if (!busy_) { return; }
    jobs_.cancel();
    saves_.cancel();
    setBusy(std::nullopt);
}

void DocumentModel::push(EditStep step) {
    const Content made(step.state.sound, step.state.marks);
    journal_.pushed(history_.content(), step.name, made);
    history_.push(step.name, made);
    selection_ = step.state.selection;
    cursor_ = step.state.cursor;
    if (step.showsFromStart) { view_ = VisibleRange::all(total()); }
    contentChanged();
    Q_EMIT edited(step.moved ? &*step.moved : nullptr);
    Q_EMIT changed();
}

void DocumentModel::contentChanged() {
    ++revision_;
    const EditState fits = fitted(state());
    selection_ = fits.selection;
    cursor_ = fits.cursor;
    // A view of everything stays one; another shows the same frames, as far as they are there.
    VisibleRange view = view_;
    view.total = total();
    view_ = view_.isAll() ? VisibleRange::all(total()) : scrolled(zoomed(view, 1, 0), 0);
}

void DocumentModel::step(bool (EditHistory::*move)(), void (JournalKeeper::*write)()) {
    if (!doc_ || !(history_.*move)()) { return; }
    (journal_.*write)();
    contentChanged();
    Q_EMIT stepped();
    Q_EMIT changed();
}

void DocumentModel::undo() {
    step(&EditHistory::undo, &JournalKeeper::undone);
}

void DocumentModel::redo() {
    step(&EditHistory::redo, &JournalKeeper::redone);
}

void DocumentModel::goTo(size_t position) {
    while (position < history_.position()) { undo(); }
    while (position > history_.position() && !history_.redoName().empty()) { redo(); }
}

void DocumentModel::perform(const Work& work, bool isQuick, const char* status, std::function<void(bool)> done) {
    if (!doc_) { return; }
    if (isQuick) {
        auto step = work();
        if (step) { push(std::move(*step)); }
        if (done) { done(step.has_value()); }
        return;
    }
    performAside([work](const EditOps::Progress&) { return work(); }, status, std::move(done));
}

void DocumentModel::performAside(const LongWork& work, const char* status, std::function<void(bool)> done) {
    setBusy(Busy{status, std::nullopt});
    const auto inBackground = [this, work, status](const Background::Task& task) {
        return work([&, shown = 0.0](double share) mutable {
            if (share - shown >= 0.02) {
                shown = share;
                task.tell([this, status, share] { setBusy(Busy{status, share}); });
            }
            return !task.isStopped();
        });
    };
    queue_.run(
        jobs_, inBackground,
        [this, document = documents_, before = history_.stateID(),
         done = std::move(done)](std::optional<EditStep> step) {
            setBusy(std::nullopt);
            if (document != documents_ || before != history_.stateID()) {
                return message_.notify(std::string(step ? step->name : "The edit") +
                                       " was dropped: the sound was edited meanwhile");
            }
            const bool isMade = step.has_value();
            if (step) { push(std::move(*step)); }
            if (done) { done(isMade); }
        },
        [this](const std::exception& error) {
            setBusy(std::nullopt);
            const bool isMemory = dynamic_cast<const std::bad_alloc*>(&error) != nullptr;
            message_.fail(isMemory ? "Not enough memory" : error.what());
        });
}

void DocumentModel::cut() {
    copy();
    perform([state = state(), rate = doc_ ? doc_->sampleRate : 0,
             style = cutStyle_] { return EditCommands::cut(state, rate, style); },
            true, "");
}

void DocumentModel::copy() {
    if (!doc_) { return; }
    if (auto clip = EditCommands::copy(state(), doc_->sampleRate)) {
        EditorClipboard::set(std::move(*clip));
        Q_EMIT copied();
        Q_EMIT changed();
    }
}

bool DocumentModel::canPaste() const {
    return doc_ && EditorClipboard::clip().has_value();
}

void DocumentModel::paste() {
    if (!canPaste()) { return; }
    const Clip clip = *EditorClipboard::clip();
    const bool isQuick = clip.sampleRate == doc_->sampleRate || clip.sound.frames() < quickSamples / 8;
    perform([state = state(), rate = doc_->sampleRate, clip] { return EditCommands::paste(state, rate, clip); },
            isQuick, "Converting the rate…");
}

void DocumentModel::remove() {
    if (!doc_) { return; }
    perform([state = state(), rate = doc_->sampleRate,
             style = cutStyle_] { return EditCommands::remove(state, rate, style); },
            true, "");
}

void DocumentModel::trim() {
    if (!doc_) { return; }
    perform([state = state(), rate = doc_->sampleRate,
             style = cutStyle_] { return EditCommands::trim(state, rate, style); },
            true, "");
}

void DocumentModel::silence() {
    perform([state = state()] { return EditCommands::silence(state); }, true, "");
}

void DocumentModel::apply(const std::string& effect) {
    const EditOps::Effect* found = EditOps::effect(effect);
    if (!doc_ || !found) { return; }
    const bool isQuick = range().length() * sound().channels() < quickSamples;
    perform([state = state(), rate = doc_->sampleRate, effect,
             lanes = scope_] { return EditCommands::apply(state, rate, effect, lanes); },
            isQuick, found->name);
}

void DocumentModel::preview(std::function<Sound()> work, const Heard& heard) {
    listening_.run(
        previews_, std::move(work),
        [this, heard, revision = revision_](Sound sound) {
            if (revision == revision_) { heard(std::move(sound)); }
        },
        [this](const std::exception& error) { message_.fail(error.what()); });
}

void DocumentModel::preview(const std::string& effect, const Heard& heard) {
    if (!doc_ || !EditOps::effect(effect)) { return; }
    preview([state = state(), rate = doc_->sampleRate, effect,
             lanes = scope_] { return EditPreview::ofEffect(state, rate, effect, lanes); },
            heard);
}

void DocumentModel::preview(Macro macro, const Heard& heard) {
    if (!doc_) { return; }
    const PinnedLoop pinned = pinnedLoop ? pinnedLoop() : PinnedLoop{};
    preview([state = state(), rate = doc_->sampleRate, macro,
             pinned] { return EditPreview::ofMacro(state, rate, macro, pinned); },
            heard);
}

void DocumentModel::run(Macro macro) {
    if (!doc_) { return; }
    const MacroInfo& info = macros()[size_t(macro)];
    const bool isWhole = macro == Macro::hiPass;
    const int64_t samples = (isWhole ? total() : range().length()) * sound().channels();
    const PinnedLoop pinned = pinnedLoop ? pinnedLoop() : PinnedLoop{};
    const auto done = [this, macro](bool isMade) {
        if (isMade) {
            Q_EMIT macroRan(macro);
        } else if (macro == Macro::seamlessLoop) {
            message_.fail(tooShortToLoop);
        }
    };
    const auto work = [state = state(), rate = doc_->sampleRate, macro, pinned](const EditOps::Progress& progress) {
        return brindlehum::run(macro, state, rate, pinned, EditOps::systemSeeded(), progress);
    };
    const bool isQuick =
        info.isQuick && (samples < quickSamples || macro == Macro::topAndTails || macro == Macro::swap);
    if (!isQuick) { return performAside(work, info.status, done); }
    perform([work] { return work({}); }, true, "", done);
}

void DocumentModel::setCutStyle(CutStyle style) {
    cutStyle_ = style;
    Q_EMIT changed();
}

void DocumentModel::setScope(EditOps::Lanes lanes) {
    scope_ = std::move(lanes);
    Q_EMIT changed();
}

void DocumentModel::setSelection(std::optional<FrameRange> range) {
    if (range) {
        range->lower = std::clamp<int64_t>(range->lower, 0, total());
        range->upper = std::clamp<int64_t>(range->upper, 0, total());
        if (range->length() <= 0) { range.reset(); }
    }
    if (range == selection_) { return; }
    selection_ = range;
    Q_EMIT changed();
}

void DocumentModel::setCursor(int64_t frame) {
    cursor_ = std::clamp<int64_t>(frame, 0, total());
    Q_EMIT changed();
}

void DocumentModel::setView(const VisibleRange& view) {
    if (view == view_) { return; }
    view_ = view;
    Q_EMIT changed();
}

std::filesystem::path DocumentModel::proposedName() const {
    if (!doc_) { return {}; }
    auto name = doc_->url.stem();
    name += " edit.wav";
    return doc_->url.parent_path() / name;
}

std::function<WavNotes()> DocumentModel::notesReader() const {
    if (!doc_) {
        return [] { return WavNotes(); };
    }
    return [doc = *doc_, read = readNotes] { return notesNow(doc, read); };
}

void DocumentModel::saveAs(const std::filesystem::path& path, std::function<void()> done) {
    if (!doc_) { return; }
    setBusy(Busy{"Saving…", 0.0});
    const auto work = [this, path, content = history_.content(), doc = *doc_,
                       notes = notesReader()](const Background::Task& task) {
        const auto progress = [&, shown = 0.0](double share) mutable {
            if (share - shown < 0.02) { return !task.isStopped(); }
            shown = share;
            task.tell([this, share] { setBusy(Busy{"Saving…", share}); });
            return !task.isStopped();
        };
        return saveDocument(path, {doc.url, doc.info, doc.sampleRate, content, notes()}, progress);
    };
    queue_.run(
        saves_, work,
        [this, path, document = documents_, saved = history_.stateID(),
         done = std::move(done)](const SaveResult& result) {
            setBusy(std::nullopt);
            if (!result.isWritten || document != documents_) { return; }
            history_.markSaved(saved);
            journal_.saved();
            message_.notify("Saved " + printableName(path) + result.note);
            Q_EMIT changed();
            if (done && !isDirty()) { done(); }
        },
        [this](const std::exception& error) {
            setBusy(std::nullopt);
            message_.fail(error.what());
        });
}

void DocumentModel::recover() {
    if (abandoned_.empty()) { return; }
    const auto edits = abandoned_.front();
    abandoned_.erase(abandoned_.begin());
    Q_EMIT abandonedChanged();
    journal_.close();
    journal_.recover(edits, [this](JournalKeeper::Recovered found) {
        Doc doc{found.about.url, {}, found.about.sampleRate, found.about.notes};
        try {
            doc.info = AudioFileInfo::load(doc.url);
        } catch (const std::exception&) {  // the file may be gone; its channels are then taken as they are
        }
        if (doc.info.channels != found.history.now().channels()) {
            doc.info = {};
            doc.info.channels = found.history.now().channels();
            doc.info.detected = SourceFormat::discrete(doc.info.channels);
        }
        doc.info.url = doc.url;
        doc.info.sampleRate = doc.sampleRate;
        show(std::move(doc), std::move(found.history));
        message_.notify(found.isWhole ? "Unsaved edits are back"
                                      : "Unsaved edits are back, up to the last but one step");
    });
}

void DocumentModel::discardAbandoned() {
    if (abandoned_.empty()) { return; }
    journal_.discard(abandoned_.front());
    abandoned_.erase(abandoned_.begin());
    Q_EMIT abandonedChanged();
}

}  // namespace brindlehum
