#include "ui/window/main_window.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDragEnterEvent>
#include <QFileDialog>
#include <QMimeData>
#include <QScreen>
#include <QSplitter>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>

#include "library/catalog/catalog_location.h"
#include "platform/headless_audio.h"
#include "ui/browser/browser_bar.h"
#include "ui/browser/browser_table.h"
#include "ui/browser/browser_view.h"
#include "ui/inspector/inspector_view.h"
#include "ui/look/file_drag.h"
#include "ui/player/player_view.h"
#include "ui/sidebar/sidebar_view.h"
#include "ui/window/banner_stack.h"
#include "ui/window/drop_overlay.h"
#include "ui/window/main_menus.h"
#include "ui/window/temp_edits_bar.h"
#include "ui/window/ui_state.h"

namespace brindlehum {
namespace {

namespace fs = std::filesystem;

constexpr int saveDelayMs = 500;       // a window being sized changes many times a second
constexpr QSize firstSize(1440, 900);  // where the screen has the room
constexpr QSize aroundFirst(80, 100);
constexpr int sidebarMinWidth = 190;  // logical pixels, as is the next
constexpr int sidebarWidth = 230;

bool isFolder(const fs::path& path) {
    std::error_code error;
    return fs::is_directory(path, error);
}

QString audioFilter() {
    QStringList patterns;
    for (const auto extension : AudioFileInfo::audioExtensions) {
        const auto text = QString::fromLatin1(extension.data(), qsizetype(extension.size()));
        patterns << "*." + text << "*." + text.toUpper();
    }
    return "Audio files (" + patterns.join(' ') + ");;All files (*)";
}

}  // namespace

std::optional<fs::path> droppable(const std::vector<fs::path>& paths) {
    for (const auto& path : paths) {
        if (isFolder(path) || AudioFileInfo::isAudioPath(path)) { return path; }
    }
    return std::nullopt;
}

MainWindow::MainWindow(AppModel& model) : model_(model) {
    setObjectName("main");
    setWindowTitle("Brindlehum");
    setAcceptDrops(true);
    makeParts();
    player_->addToMessage(new TempEditsBar(model.tempEdits(), model.player()));
    overlay_ = new DropOverlay(this);
    libraryOverlay_ = new DropOverlay(sidebar_);
    libraryOverlay_->setAccessibleName("Library drop target");
    fillMenuBar(*this, model);
    saveSoon_.setSingleShot(true);
    saveSoon_.setInterval(saveDelayMs);
    connect(&saveSoon_, &QTimer::timeout, this, &MainWindow::save);
    connect(qApp, &QCoreApplication::aboutToQuit, this, &MainWindow::save);
    restore();
    connectParts();
    refreshBanners();
    browser_->table().setFocus();
}

MainWindow::~MainWindow() = default;

void MainWindow::makeParts() {
    const auto makeSplitter = [](Qt::Orientation orientation) {
        auto* splitter = new QSplitter(orientation);
        splitter->setChildrenCollapsible(false);
        splitter->setHandleWidth(5);
        return splitter;
    };
    sidebar_ = new SidebarView(model_.library());
    sidebar_->setMinimumWidth(sidebarMinWidth);
    inspectorSplit_ = makeSplitter(Qt::Horizontal);
    inspectorSplit_->addWidget(browser_ = new BrowserView(model_));
    inspectorSplit_->addWidget(inspector_ = new InspectorView(model_.library()));
    inspectorSplit_->setStretchFactor(0, 1);
    playerSplit_ = makeSplitter(Qt::Vertical);
    playerSplit_->setObjectName("playerSplit");
    playerSplit_->addWidget(inspectorSplit_);
    playerSplit_->addWidget(player_ = new PlayerView(model_.player(), WaveformView::Style::window));
    playerSplit_->setStretchFactor(0, 1);
    auto* detail = new QWidget;
    auto* column = new QVBoxLayout(detail);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(banners_ = new BannerStack);
    column->addWidget(playerSplit_, 1);
    sideSplit_ = makeSplitter(Qt::Horizontal);
    sideSplit_->addWidget(sidebar_);
    sideSplit_->addWidget(detail);
    sideSplit_->setStretchFactor(1, 1);
    setCentralWidget(sideSplit_);
}

void MainWindow::connectParts() {
    const auto saveSoon = [this] { saveSoon_.start(); };
    connect(sideSplit_, &QSplitter::splitterMoved, this, saveSoon);
    connect(inspectorSplit_, &QSplitter::splitterMoved, this, saveSoon);
    connect(playerSplit_, &QSplitter::splitterMoved, this, [this, saveSoon] {
        playerExtra_ = std::max(0, player_->height() - basePlayerHeight());
        saveSoon();
    });
    connect(&browser_->table(), &BrowserTable::columnsChanged, this, saveSoon);
    connect(sidebar_, &SidebarView::foldedChanged, this, saveSoon);
    connect(&browser_->bar().inspectorToggle(), &QToolButton::clicked, this, &MainWindow::showInspector);
    connect(browser_, &BrowserView::selectionMoved, this,
            [this] { inspector_->setSelection(browser_->table().selectedEntries()); });
    connect(sidebar_, &SidebarView::addFolderAsked, &model_, &AppModel::addLibraryFolder);
    connect(sidebar_, &SidebarView::typed, &browser_->bar(), &BrowserBar::type);
    connect(browser_, &BrowserView::addFolderAsked, &model_, &AppModel::addLibraryFolder);
    connect(browser_, &BrowserView::loadAsked, this, [this](const fs::path& file) { asked_ = file; });
    connect(&model_.player(), &PlayerModel::changed, this, &MainWindow::followPlayer);
    connect(&model_.library(), &LibraryModel::renamed, this, &MainWindow::followRenames);
}

bool MainWindow::showsInspector() const {
    return !inspector_->isHidden();
}

bool MainWindow::showsSidebar() const {
    return !sidebar_->isHidden();
}

void MainWindow::showInspector(bool shown) {
    inspector_->setVisible(shown);
    browser_->bar().inspectorToggle().setChecked(shown);
    Q_EMIT partsChanged();
    saveSoon_.start();
}

void MainWindow::showSidebar(bool shown) {
    sidebar_->setVisible(shown);
    Q_EMIT partsChanged();
    saveSoon_.start();
}

void MainWindow::restore() {
    const UIState state = UIState::load(model_.defaults());
    resize(firstSize.boundedTo(screen()->availableSize() - aroundFirst));
    restoreGeometry(state.geometry);
    if (!sideSplit_->restoreState(state.sidebarSplit)) { sideSplit_->setSizes({sidebarWidth, width() - sidebarWidth}); }
    if (!inspectorSplit_->restoreState(state.inspectorSplit)) {
        inspectorSplit_->setSizes({width() - sidebarWidth - InspectorView::idealWidth, InspectorView::idealWidth});
    }
    browser_->table().restoreColumns(state.columns);
    sidebar_->setFolded(state.folded);
    playerExtra_ = state.playerExtra;
    showInspector(state.inspector);
    showSidebar(state.sidebar);
    fitPlayer();
}

void MainWindow::save() {
    saveSoon_.stop();
    UIState state;
    state.geometry = saveGeometry();
    state.sidebarSplit = sideSplit_->saveState();
    state.inspectorSplit = inspectorSplit_->saveState();
    state.columns = browser_->table().saveColumns();
    state.folded = sidebar_->folded();
    state.playerExtra = playerExtra_;
    state.inspector = showsInspector();
    state.sidebar = showsSidebar();
    if (state != UIState::load(model_.defaults())) { state.save(model_.defaults()); }
}

int MainWindow::basePlayerHeight() const {
    const auto source = model_.player().source();
    return source && source->asAmbisonic() ? ambisonicPlayerHeight : playerHeight;
}

// The row for a soundfield makes the player higher; what the user has added stays.
void MainWindow::fitPlayer() {
    const int base = basePlayerHeight();
    player_->setMinimumHeight(base);
    const int wanted = base + playerExtra_;
    const int all = playerSplit_->height();
    playerSplit_->setSizes({std::max(1, all - wanted - playerSplit_->handleWidth()), wanted});
}

void MainWindow::refreshBanners() {
    std::vector<Banner> banners;
    const auto devices = model_.engine().devices().allOutputs();
    if (devices.size() == 1 && devices.front().uid == HeadlessAudioSystem::uid) {
        banners.push_back({"No sound server is running, so nothing will be heard. Brindlehum plays through PipeWire.",
                           "Check Again", [this] { refreshBanners(); }});
    }
    if (!model_.library().catalog()) {
        banners.push_back(
            {"The library's catalog can't be opened, so search and shared metadata are off. Folders can still be "
             "browsed. (" +
                 QString::fromStdString(model_.library().catalogError()) + ")",
             "Show Its Folder", [this] { model_.desktop().openFolder(defaultCatalogFile().parent_path()); }});
    }
    banners_->setBanners(std::move(banners));
}

void MainWindow::openPath(const fs::path& path) {
    if (isFolder(path)) {
        browser_->openFolder(path);
    } else if (AudioFileInfo::isAudioPath(path)) {
        asked_ = path;
        browser_->reveal(path);
        model_.player().load(path, model_.settings().value().autoPlay);
    }
}

// A file that came in from elsewhere (the command line, the control port) is shown in its folder.
void MainWindow::followPlayer() {
    if (player_->minimumHeight() != basePlayerHeight()) { fitPlayer(); }
    const auto& info = model_.player().info();
    if (!info || info->url == followed_) { return; }
    followed_ = info->url;
    // Whoever chose it here may be searching for the next one by now.
    if (followed_ != asked_) { browser_->reveal(followed_); }
    asked_.clear();
}

// What was renamed is selected and loaded under its new name.
void MainWindow::followRenames(const LibraryModel::Moves& moves) {
    Paths now;
    for (const auto& move : moves) { now.push_back(move.to); }
    browser_->table().expect(now);
    const auto& info = model_.player().info();
    if (!info) { return; }
    const auto loaded = std::ranges::find(moves, info->url, &LibraryModel::Move::from);
    if (loaded == moves.end()) { return; }
    asked_ = loaded->to;
    model_.player().load(asked_, false);
}

void MainWindow::quit() {
    if (inspector_->settleEdits()) { QApplication::quit(); }
}

void MainWindow::chooseFile() {
    const fs::path start = model_.library().folder().value_or(fs::path());
    const QString file = QFileDialog::getOpenFileName(this, "Open File", FileDrag::toText(start), audioFilter());
    if (!file.isEmpty()) { openPath(FileDrag::toPath(file)); }
}

void MainWindow::chooseFolder() {
    const fs::path start = model_.library().folder().value_or(fs::path());
    const QString folder = QFileDialog::getExistingDirectory(this, "Open Folder", FileDrag::toText(start));
    if (!folder.isEmpty()) { openPath(FileDrag::toPath(folder)); }
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

void MainWindow::changeEvent(QEvent* event) {
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::ActivationChange && isActiveWindow()) {
        refreshBanners();
        sidebar_->refresh();  // volumes come and go
    }
}

bool MainWindow::wouldAddToLibrary(const QDropEvent& event) const {
    const QPoint at = sidebar_->mapFrom(this, event.position().toPoint());
    return !draggedFolders_.empty() && sidebar_->isVisible() && sidebar_->rect().contains(at);
}

void MainWindow::showDropTarget(const QDropEvent& event) {
    if (wouldAddToLibrary(event)) {
        overlay_->hide();
        return libraryOverlay_->showFor("Drop to add to the library");
    }
    libraryOverlay_->hide();
    const bool opens = std::ranges::find(draggedFolders_, dragged_) != draggedFolders_.end();
    overlay_->showFor(opens ? "Drop to open the folder" : "Drop to load the file");
}

void MainWindow::hideDropTarget() {
    overlay_->hide();
    libraryOverlay_->hide();
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event) {
    if (event->source()) { return; }  // our own files on their way out
    // Looked at once, and not for each move of the pointer.
    draggedFolders_ = FileDrag::localPaths(*event->mimeData());
    const auto path = droppable(draggedFolders_);
    if (!path) { return; }
    dragged_ = *path;
    std::erase_if(draggedFolders_, [](const fs::path& one) { return !isFolder(one); });
    event->setDropAction(Qt::CopyAction);
    event->accept();
    showDropTarget(*event);
}

void MainWindow::dragMoveEvent(QDragMoveEvent* event) {
    event->setDropAction(Qt::CopyAction);
    event->accept();
    showDropTarget(*event);
}

void MainWindow::dragLeaveEvent(QDragLeaveEvent* /*event*/) {
    hideDropTarget();
}

void MainWindow::dropEvent(QDropEvent* event) {
    hideDropTarget();
    event->setDropAction(Qt::CopyAction);
    event->accept();
    if (wouldAddToLibrary(*event)) { return model_.addLibraryFolders(draggedFolders_); }
    openPath(dragged_);
}

}  // namespace brindlehum
