// The editor's window.
#include "ui/editor/editor_window.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QDragEnterEvent>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QMimeData>
#include <QProgressBar>
#include <QPushButton>
#include <QSplitter>
#include <QStackedWidget>
#include <QStyle>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>

#include "audio/probe/audio_file_info.h"
#include "base/time_text.h"
#include "platform/session.h"
#include "ui/editor/document_out.h"
#include "ui/editor/editor_actions.h"
#include "ui/editor/editor_header.h"
#include "ui/editor/editor_menus.h"
#include "ui/editor/editor_wave_view.h"
#include "ui/editor/effects_list.h"
#include "ui/editor/generation_box.h"
#include "ui/editor/history_list.h"
#include "ui/editor/lane_heads.h"
#include "ui/editor/temp_edits_panel.h"
#include "ui/look/elided_label.h"
#include "ui/look/empty_state.h"
#include "ui/look/file_drag.h"
#include "ui/look/fitting_row.h"
#include "ui/look/icons.h"
#include "ui/look/menu_button.h"
#include "ui/look/screen_fit.h"
#include "ui/look/tabular_font.h"
#include "ui/player/drag_handle.h"

namespace brindlehum {
namespace {

constexpr QSize firstSize(1180, 760);
constexpr int panelWidth = 320;  // logical pixels

QToolButton* buttonOf(QAction* action, const char* role = "flat") {
    auto* button = new QToolButton;
    button->setDefaultAction(action);
    button->setToolButtonStyle(Qt::ToolButtonTextOnly);
    button->setProperty("role", role);
    button->setFocusPolicy(Qt::TabFocus);
    return button;
}

std::optional<std::filesystem::path> audioIn(const QMimeData& data) {
    for (const auto& path : FileDrag::localPaths(data)) {
        if (AudioFileInfo::isAudioPath(path)) { return path; }
    }
    return std::nullopt;
}

EditorWindow::Leave ask(QWidget* parent, const QString& name) {
    QMessageBox box(parent);
    box.setIcon(QMessageBox::Warning);
    box.setText(QCoreApplication::translate("EditorWindow", "Save the edits of %1?").arg(name));
    box.setInformativeText(QCoreApplication::translate("EditorWindow", "They are lost if you don't save them."));
    box.setStandardButtons(QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel);
    box.setDefaultButton(QMessageBox::Save);
    switch (box.exec()) {
        case QMessageBox::Save:
            return EditorWindow::Leave::save;
        case QMessageBox::Discard:
            return EditorWindow::Leave::discard;
        default:
            return EditorWindow::Leave::cancel;
    }
}

}  // namespace

EditorWindow::EditorWindow(EditorModel& editor, SettingsStore& settings, FileManager& files) : editor_(editor) {
    setObjectName("editor");
    setAcceptDrops(true);
    resize(fittingSize(*this, firstSize));
    askToLeave = [this](const QString& name) { return ask(this, name); };
    askForConsent = [this](const GenerationQuestion& question) { return askConsent(this, question); };
    wave_ = new EditorWaveView(editor.document(), editor.music(), editor.transport(), editor.loop());
    actions_ = new EditorActions(editor, *wave_, *this);
    makeBody(settings, files);
    // A click leaves the keyboard with the waveform.
    for (auto* button : findChildren<QAbstractButton*>()) { button->setFocusPolicy(Qt::TabFocus); }
    EditorMenus::fill(*menuBar(), *this, editor, *actions_);
    connect(actions_->openFile, &QAction::triggered, this, &EditorWindow::chooseFile);
    connect(actions_->saveAs, &QAction::triggered, this, [this] { saveAs(); });
    connect(actions_->closeDocument, &QAction::triggered, this,
            [this] { leave([this] { editor_.document().close(); }); });
    connect(&editor.document(), &DocumentModel::changed, this, &EditorWindow::refresh);
    connect(&editor.document(), &DocumentModel::abandonedChanged, this, &EditorWindow::refresh);
    connect(&editor.transport(), &EditorTransport::changed, this, &EditorWindow::refresh);
    connect(&editor.transport().playhead(), &PlayheadModel::frameChanged, this, &EditorWindow::showPosition);
    connect(&editor.message(), &PlayerMessage::changed, this, &EditorWindow::refresh);
    connect(&editor.document(), &DocumentModel::opened, this, [this] {
        if (editor_.document().doc()) { wave_->setFocus(); }
    });
    refresh();
}

void EditorWindow::makeBody(SettingsStore& settings, FileManager& files) {
    auto* left = new QWidget;
    auto* column = new QVBoxLayout(left);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    auto* lanes = new QHBoxLayout;
    lanes->setSpacing(0);
    lanes->addWidget(new LaneHeads(editor_.document(), editor_.transport(), *wave_));
    lanes->addWidget(wave_, 1);
    column->addLayout(lanes, 1);
    column->addWidget(makeTransport());
    auto* split = new QSplitter;
    split->setChildrenCollapsible(false);
    split->addWidget(left);
    split->addWidget(makePanel(settings, files));
    split->setStretchFactor(0, 1);
    split->setSizes({firstSize.width() - panelWidth, panelWidth});
    auto* document = new QWidget;
    auto* rows = new QVBoxLayout(document);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(0);
    rows->addWidget(new EditorHeader(editor_.document(), editor_.music(), editor_.transport(), settings));
    rows->addWidget(makeToolbar());
    rows->addWidget(split, 1);
    stack_ = new QStackedWidget;
    stack_->addWidget(empty_ = new EmptyState);
    stack_->addWidget(document);
    empty_->setTexts(tr("No document"), tr("Drop a file here, or choose Open in Editor (Ctrl+E) from the browser."),
                     tr("Open File…"));
    connect(empty_, &EmptyState::actionAsked, this, &EditorWindow::chooseFile);
    auto* all = new QWidget;
    auto* whole = new QVBoxLayout(all);
    whole->setContentsMargins(0, 0, 0, 0);
    whole->setSpacing(0);
    whole->addWidget(stack_, 1);
    whole->addWidget(makeStatus());
    setCentralWidget(all);
}

QWidget* EditorWindow::makePanel(SettingsStore& settings, FileManager& files) {
    auto* panel = new QSplitter(Qt::Vertical);
    panel->setChildrenCollapsible(false);
    panel->setMinimumWidth(300);
    const auto reveal = [&files](const std::filesystem::path& item) { files.reveal({item}); };
    auto* generation =
        new GenerationBox(editor_, settings,
                          {[this] { openGenerationSettings ? openGenerationSettings() : void(); }, reveal,
                           [this](const GenerationQuestion& question) { return askForConsent(question); }});
    panel->addWidget(new TempEditsPanel(editor_.music(), editor_.transport(), settings, reveal, generation));
    auto* history = new QWidget;
    auto* column = new QVBoxLayout(history);
    column->setContentsMargins(12, 4, 12, 12);
    column->setSpacing(6);
    auto* title = new QLabel(tr("History"));
    title->setProperty("role", "headline");
    column->addWidget(title);
    column->addWidget(new HistoryList(editor_.document()));
    panel->addWidget(history);
    panel->setStretchFactor(0, 1);
    connect(actions_->history, &QAction::toggled, history, &QWidget::setVisible);
    return panel;
}

QWidget* EditorWindow::makeToolbar() {
    auto* bar = new QWidget;
    auto* row = new QHBoxLayout(bar);
    row->setContentsMargins(12, 2, 12, 6);
    row->setSpacing(2);
    for (const auto& [action, icon, name] :
         {std::tuple(actions_->undo, "undo", tr("Undo")), std::tuple(actions_->redo, "redo", tr("Redo"))}) {
        action->setIcon(symbol(icon));
        QToolButton* button = buttonOf(action);
        button->setToolButtonStyle(Qt::ToolButtonIconOnly);
        button->setAccessibleName(name);
        row->addWidget(button);
    }
    row->addSpacing(8);
    auto* edits = new FittingRow(2);  // in the Edit menu, too
    for (QAction* each :
         {actions_->cut, actions_->copy, actions_->paste, actions_->remove, actions_->trim, actions_->silence}) {
        edits->add(buttonOf(each));
    }
    row->addWidget(edits);
    row->addSpacing(8);
    const auto addList = [&](const QString& text, const QString& tip, std::vector<EffectsList::Entry> entries) {
        auto* button = new QToolButton;
        button->setText(text);
        button->setToolTip(tip);
        button->setFocusPolicy(Qt::TabFocus);
        auto* list = new EffectsList(editor_, tr("Hear it first, or apply it at once"), std::move(entries), this);
        connect(button, &QToolButton::clicked, this, [list, button] { list->showUnder(*button); });
        row->addWidget(button);
        return button;
    };
    effects_ = addList(tr("Effects"), tr("One click, applied to the selection or the whole file"),
                       EffectsList::effects(editor_.document()));
    macros_ =
        addList(tr("Macros"), tr("Longer changes, each one step of undo"), EffectsList::macros(editor_.document()));
    lanes_ = new MenuButton(tr("Lanes"), tr("Which lanes Effects touch"), [this](QMenu& menu) {
        DocumentModel& document = editor_.document();
        const auto& scope = document.scope();
        addChoice(menu, tr("All lanes"), !scope, [&document] { document.setScope(std::nullopt); });
        for (int lane = 0; lane < document.sound().channels(); ++lane) {
            const bool isIn = scope && std::ranges::find(*scope, lane) != scope->end();
            addChoice(menu, tr("Lane %1").arg(lane + 1), isIn, [&document, lane, isIn] {
                auto chosen = document.scope().value_or(std::vector<int>{});
                isIn ? void(std::erase(chosen, lane)) : chosen.push_back(lane);
                document.setScope(chosen.empty() ? EditOps::Lanes() : EditOps::Lanes(chosen));
            });
        }
    });
    lanes_->setText(tr("Lanes"));
    row->addWidget(lanes_);
    row->addStretch();
    row->addWidget(buttonOf(actions_->spectrum, "switch"));
    row->addWidget(buttonOf(actions_->snap, "switch"));
    for (const auto& [action, icon] : {std::pair(actions_->zoomOut, "minus"), std::pair(actions_->zoomIn, "plus")}) {
        action->setIcon(symbol(icon));
        QToolButton* button = buttonOf(action);
        button->setToolButtonStyle(Qt::ToolButtonIconOnly);
        row->addWidget(button);
    }
    row->addWidget(buttonOf(actions_->fit));
    row->addWidget(buttonOf(actions_->zoomSelection));
    return bar;
}

QWidget* EditorWindow::makeTransport() {
    auto* bar = new QWidget;
    auto* row = new QHBoxLayout(bar);
    row->setContentsMargins(12, 6, 12, 6);
    row->setSpacing(8);
    actions_->toStart->setIcon(symbol("to-start"));
    QToolButton* toStart = buttonOf(actions_->toStart);
    toStart->setToolButtonStyle(Qt::ToolButtonIconOnly);
    row->addWidget(toStart);
    row->addWidget(play_ = new QToolButton);
    play_->setProperty("role", "play");
    play_->setIconSize({18, 18});
    play_->setToolTip(actions_->play->toolTip());
    connect(play_, &QToolButton::clicked, actions_->play, &QAction::trigger);
    for (QAction* each : {actions_->loop, actions_->preRoll, actions_->loopSeam}) {
        row->addWidget(buttonOf(each, "switch"));
    }
    row->addWidget((new DocumentOut(editor_, *wave_))->handle());
    row->addStretch();
    for (QLabel** each : {&position_, &selected_, &length_}) {
        row->addSpacing(10);
        row->addWidget(*each = new QLabel);
        (*each)->setFont(tabularFont(9.5));
    }
    return bar;
}

QWidget* EditorWindow::makeStatus() {
    auto* bar = new QWidget;
    auto* column = new QVBoxLayout(bar);
    column->setContentsMargins(12, 0, 12, 6);
    auto* row = new QHBoxLayout;
    row->addWidget(status_ = new ElidedLabel, 1);
    row->addWidget(progress_ = new QProgressBar);
    progress_->setFixedWidth(160);
    progress_->setTextVisible(false);
    row->addWidget(cancel_ = new QToolButton);
    cancel_->setText(tr("Cancel"));
    connect(cancel_, &QToolButton::clicked, this, [this] { editor_.document().cancel(); });
    column->addLayout(row);
    recovery_ = new QFrame;
    recovery_->setProperty("role", "notice");
    auto* notice = new QHBoxLayout(recovery_);
    notice->addWidget(new QLabel(tr("Unsaved edits of an earlier session were kept.")), 1);
    auto* restore = new QPushButton(tr("Bring Them Back"));
    connect(restore, &QPushButton::clicked, this, [this] { leave([this] { editor_.document().recover(); }); });
    auto* discard = new QPushButton(tr("Discard"));
    connect(discard, &QPushButton::clicked, this, [this] { editor_.document().discardAbandoned(); });
    notice->addWidget(restore);
    notice->addWidget(discard);
    column->addWidget(recovery_);
    return bar;
}

void EditorWindow::chooseFile() {
    const QString path = QFileDialog::getOpenFileName(this, tr("Open in Editor"));
    if (!path.isEmpty()) { open(pathOfText(path)); }
}

void EditorWindow::open(const std::filesystem::path& path) {
    leave([this, path] { editor_.document().open(path); });
}

void EditorWindow::leave(const std::function<void()>& proceed) {
    DocumentModel& document = editor_.document();
    if (!document.isDirty()) { return proceed(); }
    switch (askToLeave(pathText(document.doc()->url.filename()))) {
        case Leave::save:
            return saveAs(proceed);
        case Leave::discard:
            document.close();
            return proceed();
        case Leave::cancel:
            return;
    }
}

void EditorWindow::saveAs(const std::function<void()>& done) {
    DocumentModel& document = editor_.document();
    if (!document.doc()) { return; }
    const std::filesystem::path proposed = document.proposedName();
    const QString start = dialogStart(proposed.parent_path()) + '/' + pathText(proposed.filename());
    const QString path = QFileDialog::getSaveFileName(this, tr("Save As"), start, tr("WAVE audio (*.wav)"));
    if (!path.isEmpty()) { document.saveAs(pathOfText(path), done); }
}

void EditorWindow::closeEvent(QCloseEvent* event) {
    if (!editor_.document().isDirty()) {
        editor_.transport().stop();
        return event->accept();
    }
    event->ignore();
    leave([this] {
        editor_.transport().stop();
        hide();
    });
}

void EditorWindow::dragEnterEvent(QDragEnterEvent* event) {
    if (event->mimeData()->hasUrls() && audioIn(*event->mimeData())) { event->acceptProposedAction(); }
}

void EditorWindow::dropEvent(QDropEvent* event) {
    if (const auto path = audioIn(*event->mimeData())) {
        event->acceptProposedAction();
        open(*path);
    }
}

// Thirty times a second while it plays, so it touches nothing else.
void EditorWindow::showPosition() {
    const auto& doc = editor_.document().doc();
    if (!doc) { return; }
    EditorTransport& transport = editor_.transport();
    const bool follows = transport.isPlaying() && transport.followsDocument();
    const int64_t frame = follows ? transport.playhead().wholeFrame() : editor_.document().cursor();
    position_->setText(tr("POS %1").arg(QString::fromStdString(timeText(double(frame) / doc->sampleRate))));
}

void EditorWindow::refresh() {
    const DocumentModel& document = editor_.document();
    const auto& doc = document.doc();
    const auto& loading = document.loading();
    const int page = doc || loading ? 1 : 0;
    if (page != stack_->currentIndex()) {
        stack_->setCurrentIndex(page);
        if (page == 1) { wave_->setFocus(); }
    }
    setWindowTitle(loading ? tr("%1 – Editor").arg(pathText(loading->url.filename()))
                   : doc   ? tr("%1[*] – Editor").arg(pathText(doc->url.filename()))
                           : tr("Editor"));
    setWindowModified(document.isDirty());
    const auto time = [&](int64_t frame) { return QString::fromStdString(timeText(double(frame) / doc->sampleRate)); };
    showPosition();
    if (doc) {
        selected_->setText(document.selection() ? tr("SEL %1").arg(time(document.selection()->length())) : tr("SEL –"));
        length_->setText(tr("LEN %1").arg(time(document.total())));
    }
    const bool playing = editor_.transport().isPlaying();
    play_->setIcon(symbol(playing ? "stop" : "play", SymbolRole::onAccent));
    play_->setAccessibleName(playing ? tr("Stop") : tr("Play"));
    play_->setEnabled(actions_->play->isEnabled());
    const auto& busy = document.busy();
    const auto& message = editor_.message().text();
    status_->setFullText(QString::fromStdString(busy ? busy->text : message.value_or("")));
    const char* role = !busy && editor_.message().isProblem() ? "warning" : "secondary";
    if (status_->property("role") != role) {
        status_->setProperty("role", role);
        status_->style()->polish(status_);
    }
    for (QToolButton* each : {effects_, macros_, lanes_}) { each->setEnabled(actions_->selectAll->isEnabled()); }
    progress_->setVisible(busy.has_value());
    progress_->setRange(0, busy && busy->progress ? 100 : 0);
    if (busy && busy->progress) { progress_->setValue(int(*busy->progress * 100)); }
    cancel_->setVisible(busy.has_value());
    recovery_->setVisible(!document.abandoned().empty());
}

}  // namespace brindlehum
