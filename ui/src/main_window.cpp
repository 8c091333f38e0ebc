#include "ui/main_window.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDragEnterEvent>
#include <QFileDialog>
#include <QMimeData>
#include <QSplitter>
#include <QStandardPaths>
#include <QTreeView>

#include "ui/drop_overlay.h"
#include "ui/file_drag.h"
#include "ui/folder_browser.h"
#include "ui/main_menus.h"
#include "ui/player_view.h"
#include "ui/temp_edits_bar.h"
#include "ui/ui_state.h"

namespace brindlehum {
namespace {

namespace fs = std::filesystem;

constexpr int saveDelayMs = 500;  // a window being sized changes many times a second
constexpr QSize firstSize(1080, 760);

bool isFolder(const fs::path& path) {
    std::error_code error;
    return fs::is_directory(path, error);
}

fs::path firstFolder(const fs::path& remembered) {
    if (!remembered.empty() && isFolder(remembered)) return remembered;
    const auto music = FileDrag::toPath(QStandardPaths::writableLocation(QStandardPaths::MusicLocation));
    return isFolder(music) ? music : FileDrag::toPath(QDir::homePath());
}

QString audioFilter() {
    QStringList patterns;
    for (const auto extension : AudioFileInfo::audioExtensions) {
        const auto text = QString::fromLatin1(extension.data(), static_cast<qsizetype>(extension.size()));
        patterns << "*." + text << "*." + text.toUpper();
    }
    return "Audio files (" + patterns.join(' ') + ");;All files (*)";
}

}  // namespace

std::optional<fs::path> droppable(const std::vector<fs::path>& paths) {
    for (const auto& path : paths)
        if (isFolder(path) || AudioFileInfo::isAudioPath(path)) return path;
    return std::nullopt;
}

MainWindow::MainWindow(AppModel& model) : model_(model) {
    setObjectName("main");
    setWindowTitle("Brindlehum");
    setAcceptDrops(true);
    splitter_ = new QSplitter(Qt::Vertical);
    splitter_->setChildrenCollapsible(false);
    splitter_->setHandleWidth(6);
    splitter_->addWidget(player_ = new PlayerView(model.player(), WaveformView::Style::window));
    splitter_->addWidget(browser_ = new FolderBrowser);
    splitter_->setStretchFactor(0, 1);
    splitter_->setStretchFactor(1, 1);
    setCentralWidget(splitter_);
    player_->addToMessage(new TempEditsBar(model.tempEdits(), model.player()));
    overlay_ = new DropOverlay(this);
    fillMenuBar(*this, model);

    saveSoon_.setSingleShot(true);
    saveSoon_.setInterval(saveDelayMs);
    connect(&saveSoon_, &QTimer::timeout, this, &MainWindow::save);
    connect(qApp, &QCoreApplication::aboutToQuit, this, &MainWindow::save);
    restore();
    connect(splitter_, &QSplitter::splitterMoved, &saveSoon_, qOverload<>(&QTimer::start));
    connect(browser_, &FolderBrowser::columnsChanged, &saveSoon_, qOverload<>(&QTimer::start));
    connect(browser_, &FolderBrowser::folderChanged, this, &MainWindow::save);
    connect(browser_, &FolderBrowser::fileChosen, this, &MainWindow::load);
    connect(browser_, &FolderBrowser::togglePlay, this, [this] { model_.player().togglePlay(); });
    connect(browser_, &FolderBrowser::openFolderAsked, this, &MainWindow::chooseFolder);
    connect(&model.player(), &PlayerModel::changed, this, &MainWindow::followPlayer);
    browser_->list().setFocus();
}

MainWindow::~MainWindow() = default;

void MainWindow::restore() {
    const UIState state = UIState::load(model_.defaults());
    resize(firstSize);
    restoreGeometry(state.geometry);
    if (!splitter_->restoreState(state.splitter)) splitter_->setSizes({430, 330});
    browser_->restoreColumns(state.columns);
    browser_->setFolder(firstFolder(state.folder));
}

void MainWindow::save() {
    UIState state;
    state.folder = browser_->folder();
    state.geometry = saveGeometry();
    state.splitter = splitter_->saveState();
    state.columns = browser_->saveColumns();
    if (state != UIState::load(model_.defaults())) state.save(model_.defaults());
}

void MainWindow::load(const fs::path& file) {
    shown_ = file;
    model_.player().load(file, model_.settings().value().autoPlay);
}

void MainWindow::openPath(const fs::path& path) {
    if (isFolder(path)) {
        browser_->setFolder(path);
    } else if (AudioFileInfo::isAudioPath(path)) {
        browser_->reveal(path);
        load(path);
    }
}

// A file that came in from elsewhere (the command line, the control port) is shown in its folder.
void MainWindow::followPlayer() {
    const auto& info = model_.player().info();
    if (!info || info->url == shown_) return;
    shown_ = info->url;
    browser_->reveal(info->url);
}

void MainWindow::chooseFile() {
    const QString file =
        QFileDialog::getOpenFileName(this, "Open File", FileDrag::toText(browser_->folder()), audioFilter());
    if (!file.isEmpty()) openPath(FileDrag::toPath(file));
}

void MainWindow::chooseFolder() {
    const QString folder = QFileDialog::getExistingDirectory(this, "Open Folder", FileDrag::toText(browser_->folder()));
    if (!folder.isEmpty()) openPath(FileDrag::toPath(folder));
}

void MainWindow::closeEvent(QCloseEvent* event) {
    save();
    QMainWindow::closeEvent(event);
}

void MainWindow::resizeEvent(QResizeEvent* event) {
    QMainWindow::resizeEvent(event);
    saveSoon_.start();
}

void MainWindow::moveEvent(QMoveEvent* event) {
    QMainWindow::moveEvent(event);
    saveSoon_.start();
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event) {
    if (event->source()) return;  // our own files on their way out
    const auto path = droppable(FileDrag::localPaths(*event->mimeData()));
    if (!path) return;
    event->setDropAction(Qt::CopyAction);
    event->accept();
    overlay_->showFor(isFolder(*path) ? "Drop to open the folder" : "Drop to load the file");
}

void MainWindow::dragLeaveEvent(QDragLeaveEvent* /*event*/) {
    overlay_->hide();
}

void MainWindow::dropEvent(QDropEvent* event) {
    overlay_->hide();
    const auto path = droppable(FileDrag::localPaths(*event->mimeData()));
    if (!path) return;
    event->setDropAction(Qt::CopyAction);
    event->accept();
    openPath(*path);
}

}  // namespace brindlehum
