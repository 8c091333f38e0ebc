// The editor's commands.
#include "ui/editor/editor_actions.h"

#include <QAbstractButton>
#include <QApplication>
#include <QKeyEvent>
#include <QWidget>

#include "ui/editor/editor_wave_view.h"
#include "ui/look/plain_tool_tip.h"

namespace brindlehum {
namespace {

constexpr double zoomStep = 2;

}  // namespace

QAction* EditorActions::add(const QString& text, const QKeySequence& keys, std::function<void()> action,
                            const QString& tip) {
    auto* made = new QAction(QString(text).replace('&', "&&"), this);
    made->setShortcut(keys);
    if (!tip.isEmpty()) { made->setToolTip(plainToolTip(tip)); }
    if (!keys.isEmpty()) { made->setToolTip(made->toolTip() + " (" + keys.toString(QKeySequence::NativeText) + ")"); }
    connect(made, &QAction::triggered, this, [action = std::move(action)] { action(); });
    window_.addAction(made);
    return made;
}

QAction* EditorActions::addSwitch(const QString& text, const QKeySequence& keys, std::function<void(bool)> set,
                                  const QString& tip) {
    auto* made = add(
        text, keys, [] {}, tip);
    made->setCheckable(true);
    connect(made, &QAction::triggered, this, std::move(set));
    return made;
}

EditorActions::EditorActions(EditorModel& editor, EditorWaveView& wave, QWidget& window)
    : QObject(&window), editor_(editor), window_(window) {
    openFile = add(tr("Open File…"), QKeySequence("Ctrl+O"), [] {});
    saveAs = add(tr("Save As…"), QKeySequence("Ctrl+S"), [] {});
    closeDocument = add(tr("Close Document"), {}, [] {});
    makeEdits();
    makeViews(wave);
    makePlayback();
    qApp->installEventFilter(this);
    connect(&editor.document(), &DocumentModel::changed, this, &EditorActions::refresh);
    connect(&editor.music(), &MusicModel::changed, this, &EditorActions::refresh);
    connect(&editor.transport(), &EditorTransport::changed, this, &EditorActions::refresh);
    refresh();
}

bool EditorActions::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::ShortcutOverride) { return false; }
    const auto* button = qobject_cast<QAbstractButton*>(watched);
    const auto* key = static_cast<QKeyEvent*>(event);
    if (!button || button->window() != &window_ || key->key() != Qt::Key_Space || key->modifiers()) { return false; }
    event->accept();
    return true;
}

void EditorActions::makeEdits() {
    DocumentModel& document = editor_.document();
    undo = add(tr("Undo"), QKeySequence::Undo, [&] { document.undo(); });
    redo = add(tr("Redo"), QKeySequence("Ctrl+Shift+Z"), [&] { document.redo(); });
    cut = add(tr("Cut"), QKeySequence::Cut, [&] { document.cut(); });
    copy = add(tr("Copy"), QKeySequence::Copy, [&] { document.copy(); });
    paste = add(tr("Paste"), QKeySequence::Paste, [&] { document.paste(); });
    remove = add(tr("Delete"), QKeySequence(Qt::Key_Delete), [&] { document.remove(); });
    trim = add(
        tr("Trim"), QKeySequence("Ctrl+T"), [&] { document.trim(); }, tr("Keep only the selection"));
    silence = add(
        tr("Silence"), {}, [&] { document.silence(); }, tr("Silence the selection"));
    selectAll = add(tr("Select All"), QKeySequence::SelectAll, [&] {
        document.setSelection(FrameRange{0, document.total()});
    });
    selectNone = add(tr("Clear Selection"), QKeySequence("Ctrl+D"), [&] { document.setSelection(std::nullopt); });
    for (const auto& effect : EditOps::effects()) {
        effects.push_back(add(
            effect.name, {}, [&document, id = std::string(effect.id)] { document.apply(id); }, effect.blurb));
    }
    for (const auto& info : brindlehum::macros()) {
        macros.push_back(add(
            info.title, {}, [&document, macro = info.macro] { document.run(macro); }, info.tip));
    }
}

void EditorActions::makeViews(EditorWaveView& wave) {
    zoomIn = add(tr("Zoom In"), QKeySequence("Ctrl++"), [&wave] { wave.zoom(zoomStep); });
    zoomOut = add(tr("Zoom Out"), QKeySequence("Ctrl+-"), [&wave] { wave.zoom(1 / zoomStep); });
    fit = add(
        tr("Fit"), QKeySequence("Ctrl+0"), [&wave] { wave.showAll(); }, tr("Show the whole document"));
    zoomSelection = add(
        tr("Sel"), QKeySequence("Ctrl+Alt+0"), [&wave] { wave.showSelected(); }, tr("Show the selection"));
    snap = addSwitch(
        tr("Snap"), {}, [this](bool on) { editor_.music().setSnap(on); }, tr("Snap selections to beats"));
    const auto setStyle = [this, &wave] {
        linear->setEnabled(spectrum->isChecked());
        wave.setStyle(!spectrum->isChecked() ? EditorLanes::Style::waves
                      : linear->isChecked()  ? EditorLanes::Style::linearSpectrum
                                             : EditorLanes::Style::logSpectrum);
    };
    spectrum = addSwitch(
        tr("Spectrum"), QKeySequence("Ctrl+G"), [setStyle](bool) { setStyle(); }, tr("Show the lanes as spectrograms"));
    linear = addSwitch(
        tr("Linear Frequencies"), {}, [setStyle](bool) { setStyle(); },
        tr("Space the spectrogram's frequencies evenly, not by octaves"));
    linear->setEnabled(false);
    history = addSwitch(
        tr("History"), QKeySequence("Ctrl+H"), [](bool) {}, tr("List the steps of editing"));
    history->setChecked(true);
}

void EditorActions::makePlayback() {
    DocumentModel& document = editor_.document();
    EditorTransport& transport = editor_.transport();
    play = add(
        tr("Play / Stop"), QKeySequence(Qt::Key_Space), [&] { transport.toggle(); },
        tr("Play/Stop (Space). Plays from the cursor or the selection."));
    play->setToolTip(tr("Play/Stop (Space). Plays from the cursor or the selection."));
    loop = addSwitch(
        tr("Loop"), QKeySequence("Ctrl+L"), [&](bool on) { transport.setLoops(on); },
        tr("Loop the selection, or the whole file"));
    preRoll = addSwitch(
        tr("Pre"), {}, [&](bool on) { transport.setPreRoll(on); }, tr("2 s pre-roll"));
    loopSeam = add(
        tr("Hear the Loop Seam"), QKeySequence("Ctrl+Shift+L"), [&] { transport.auditionLoopPoint(); },
        tr("Starts 2 bars before the loop end and wraps to the loop start until you stop"));
    toStart = add(tr("Return to Zero"), QKeySequence("Ctrl+Home"), [&] {
        transport.stop();
        document.setSelection(std::nullopt);
        document.setCursor(0);
    });
    click = addSwitch(
        tr("Click"), {}, [&](bool on) { transport.setClick(on); },
        tr("Click on the grid while playing. If the click sits, the tempo is right."));
}

// What is being loaded can only be looked at.
void EditorActions::refresh() {
    const DocumentModel& document = editor_.document();
    const bool isIdle = !document.loading();
    const bool hasDoc = isIdle && document.doc() && document.total() > 0;
    const auto named = [&](QAction* action, const QString& plain, const QString& ofStep, const std::string& step) {
        action->setText(step.empty() ? plain : ofStep.arg(QString::fromStdString(step).replace('&', "&&")));
        action->setEnabled(isIdle && !step.empty());
    };
    named(undo, tr("Undo"), tr("Undo %1"), document.history().undoName());
    named(redo, tr("Redo"), tr("Redo %1"), document.history().redoName());
    const bool hasSelection = isIdle && document.selection().has_value();
    for (QAction* each : {cut, copy, remove, trim, silence, zoomSelection, selectNone}) {
        each->setEnabled(hasSelection);
    }
    paste->setEnabled(isIdle && document.canPaste());
    saveAs->setEnabled(hasDoc);
    closeDocument->setEnabled(isIdle && document.doc().has_value());
    for (QAction* each : {selectAll, zoomIn, zoomOut, fit, play, toStart}) { each->setEnabled(hasDoc); }
    for (QAction* each : effects) { each->setEnabled(hasDoc); }
    for (QAction* each : macros) { each->setEnabled(hasDoc); }
    refreshPlayback(isIdle);
}

void EditorActions::refreshPlayback(bool isIdle) {
    const MusicModel& music = editor_.music();
    const EditorTransport& transport = editor_.transport();
    const bool hasBars = isIdle && music.analysis() && !music.isStale();
    loopSeam->setEnabled(hasBars && music.pinnedLoop().range.has_value());
    click->setEnabled(hasBars);
    snap->setChecked(music.snap());
    loop->setChecked(transport.loops());
    preRoll->setChecked(transport.preRoll());
    click->setChecked(transport.click());
}

}  // namespace brindlehum
