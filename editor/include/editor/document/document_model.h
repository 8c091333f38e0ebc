// DocumentModel: the editor's one document: its file, its edits and their undo, its selection and view.
#pragma once

#include <QObject>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "editor/document/edit_commands.h"
#include "editor/document/edit_history.h"
#include "editor/document/journal_keeper.h"
#include "editor/document/load_document.h"
#include "editor/document/macros.h"
#include "mix/player/player_message.h"
#include "mix/player/visible_range.h"
#include "platform/background.h"

namespace brindlehum {

// Main thread. What needs a document, a selection or a clip does nothing without one. Long work runs in the background,
// one job at a time; its result is dropped when the document has moved on meanwhile.
class DocumentModel : public QObject {
    Q_OBJECT
public:
    struct Doc {
        std::filesystem::path url;  // the file that it was opened from
        AudioFileInfo info;
        double sampleRate = 0;  // Hz
        WavNotes notes = {};    // what it said of itself then
    };
    // A file that is being opened, as far as it is read: it can be looked at, but not edited.
    struct Loading {
        std::filesystem::path url;
        AudioFileInfo info;
        Sound soFar;
        int64_t total = 0;      // frames, once it is whole
        double sampleRate = 0;  // Hz
    };
    // A long job: what it does, and how far it is from 0 to 1, if it knows.
    struct Busy {
        std::string text;
        std::optional<double> progress;
    };
    // What a file says of itself besides its description, with all its cue points. Called in the background.
    using ReadNotes = std::function<WavNotes(const std::filesystem::path& file)>;

    // Journals go to `journals`. The message outlives the model.
    DocumentModel(MainLoop& loop, std::filesystem::path journals, PlayerMessage& message);
    ~DocumentModel() override;

    const std::optional<Doc>& doc() const { return doc_; }
    const Sound& sound() const { return history_.now(); }
    int64_t total() const { return sound().frames(); }
    const EditHistory& history() const { return history_; }
    // Cue points of the source, where the edits have moved them.
    const Marks& marks() const { return history_.content().marks; }
    // Rises at every change of the sound.
    uint64_t revision() const { return revision_; }
    bool isDirty() const { return doc_ && history_.isDirty(); }
    const std::optional<FrameRange>& selection() const { return selection_; }
    int64_t cursor() const { return cursor_; }
    // The selection, or everything without one.
    FrameRange range() const { return state().range(); }
    const VisibleRange& view() const { return view_; }
    const std::optional<Busy>& busy() const { return busy_; }
    // None before the first samples are there.
    const std::optional<Loading>& loading() const { return loading_; }

    // The file replaces the document once it is loaded; until then, and if it can't be loaded, the present one stays.
    // Unsaved edits of the present one are lost: ask before.
    void open(const std::filesystem::path& path);
    // Writes 24-bit WAVE through a safe replacement, with the notes of the source and the moved cue points; the
    // document is clean afterwards, and keeps its url. The path may be that of the source. `done` is called after a
    // success.
    void saveAs(const std::filesystem::path& path, std::function<void()> done = {});
    // "Rain edit.wav" beside the file that was opened.
    std::filesystem::path proposedName() const;
    // Ends the long job that runs, a save too.
    void cancel();
    // Closes the document and forgets its unsaved edits.
    void close();

    void undo();
    void redo();
    // To a state of history().names().
    void goTo(size_t position);
    void cut();
    void copy();
    void paste();
    void remove();
    void trim();
    void silence();
    void apply(const std::string& effect);
    void run(Macro macro);
    // For listening: some seconds of the range as the effect or the macro would make it. Made in the background; a
    // newer preview overtakes an older one. `heard` isn't called for a sound that was edited meanwhile.
    using Heard = std::function<void(Sound)>;
    void preview(const std::string& effect, const Heard& heard);
    void preview(Macro macro, const Heard& heard);
    void cancelPreview() { previews_.cancel(); }
    bool isPreviewing() const { return previews_.isBusy(); }
    bool canPaste() const;

    CutStyle cutStyle() const { return cutStyle_; }
    void setCutStyle(CutStyle style);
    const EditOps::Lanes& scope() const { return scope_; }  // the lanes that effects change
    void setScope(EditOps::Lanes lanes);
    void setSelection(std::optional<FrameRange> range);  // cut to the document; an empty one is none
    void setCursor(int64_t frame);
    void setView(const VisibleRange& view);
    // For the seamless loop without a selection; asked when it runs.
    std::function<PinnedLoop()> pinnedLoop;

    // Documents of earlier processes that weren't closed, looked for at construction.
    const std::vector<std::filesystem::path>& abandoned() const { return abandoned_; }
    void recover();           // opens the newest of them
    void discardAbandoned();  // deletes the newest of them

    ReadNotes readNotes;
    // The notes of the source as they are now, for a new file; to be called in the background.
    std::function<WavNotes()> notesReader() const;
    // Before the process ends: waits until the journal is on disk.
    void finish(double patience) { journal_.finish(patience); }
    // The queue of long work; tests drain it.
    Background& queue() { return queue_; }
    Background& listening() { return listening_; }  // previews
    JournalKeeper& journal() { return journal_; }

Q_SIGNALS:
    void opened();  // another document, or none
    // Another state of the sound by a new edit; `moved` is null when every frame stayed in its place.
    void edited(const EditStep::Moved* moved);
    void stepped();  // another state by undo or redo
    void macroRan(Macro macro);
    void copied();   // by a copy, or a cut before it cuts
    void changed();  // anything that is shown
    void abandonedChanged();

private:
    EditState state() const { return {history_.now(), selection_, cursor_, marks()}; }
    void show(std::optional<Doc> doc, EditHistory history);
    void push(EditStep step);
    void contentChanged();
    void step(bool (EditHistory::*move)(), void (JournalKeeper::*write)());
    // Runs a step of an edit at once if it is short, else in the background.
    using Work = std::function<std::optional<EditStep>()>;
    void perform(const Work& work, bool isQuick, const char* status, std::function<void(bool)> done = {});
    using LongWork = std::function<std::optional<EditStep>(const EditOps::Progress& progress)>;
    void performAside(const LongWork& work, const char* status, std::function<void(bool)> done);
    void setBusy(std::optional<Busy> busy);
    void showLoading(Loading loading);
    void preview(std::function<Sound()> work, const Heard& heard);

    PlayerMessage& message_;
    std::optional<Doc> doc_;
    EditHistory history_;
    uint64_t revision_ = 0;
    std::optional<FrameRange> selection_;
    int64_t cursor_ = 0;
    VisibleRange view_;
    CutStyle cutStyle_ = CutStyle::exact;
    EditOps::Lanes scope_;
    std::optional<Busy> busy_;
    std::optional<Loading> loading_;
    std::vector<std::filesystem::path> abandoned_;
    JournalKeeper journal_;
    uint64_t documents_ = 0;  // shown so far
    Background::Line jobs_;   // loads, and edits that take a while
    Background::Line saves_;  // no edit ends a save
    Background::Line previews_;
    Background queue_;
    Background listening_;  // last members, so that their work ends first
};

}  // namespace brindlehum
