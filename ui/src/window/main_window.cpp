// The main window: builds its parts, connects them and remembers their sizes.
#include "ui/window/main_window.h"

#include <QApplication>
#include <QCloseEvent>
#include <QFileDialog>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QScreen>
#include <QSplitter>
#include <QSystemTrayIcon>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>
#include <iterator>

#include "app/app_model.h"
#include "library/catalog/catalog_location.h"
#include "mix/config/speaker_map.h"
#include "ui/browser/browser_bar.h"
#include "ui/browser/browser_table.h"
#include "ui/browser/browser_view.h"
#include "ui/browser/chosen_sound.h"
#include "ui/inspector/inspector_view.h"
#include "ui/look/dialog_start.h"
#include "ui/look/grip_splitter.h"
#include "ui/look/path_text.h"
#include "ui/look/screen_fit.h"
#include "ui/player/export_bar.h"
#include "ui/player/player_view.h"
#include "ui/sidebar/sidebar_view.h"
#include "ui/window/banner_stack.h"
#include "ui/window/bars_dialog.h"
#include "ui/window/file_drops.h"
#include "ui/window/link_bar.h"
#include "ui/window/main_menus.h"
#include "ui/window/rename_dialog.h"
#include "ui/window/temp_edits_bar.h"
#include "ui/window/ui_state.h"

namespace brindlehum {
namespace {

namespace fs = std::filesystem;

constexpr int saveDelayMs = 500;       // a window being sized changes many times a second
constexpr QSize firstSize(1440, 900);  // where the screen has the room
constexpr int sidebarMinWidth = 150;   // logical pixels, as is the next
constexpr int sidebarWidth = 230;
constexpr size_t mostLanes = 16;  // that a waveform shows

QString audioFilter() {
    QStringList patterns;
    for (const auto extension : AudioFileInfo::audioExtensions) {
        const auto text = QString::fromLatin1(extension.data(), qsizetype(extension.size()));
        patterns << "*." + text << "*." + text.toUpper();
    }
    return QCoreApplication::translate("MainWindow", "Audio files (%1);;All files (*)").arg(patterns.join(' '));
}

bool askRemoval(QWidget* parent, const QString& question, const QString& losses) {
    QMessageBox box(parent);
    box.setIcon(QMessageBox::Warning);
    box.setText(question);
    box.setInformativeText(losses);
    auto* remove = box.addButton(QCoreApplication::translate("MainWindow", "Remove"), QMessageBox::AcceptRole);
    box.setDefaultButton(box.addButton(QMessageBox::Cancel));
    box.exec();
    return box.clickedButton() == remove;
}

}  // namespace

MainWindow::MainWindow(AppModel& model) : model_(model), recentFiles_(model.defaults(), model.disk()) {
    setObjectName("main");
    setWindowTitle("Brindlehum");
    makeParts();
    makeDrops();
    auto* editsBar = new TempEditsBar(model.tempEdits(), model.player().message());
    connect(editsBar, &TempEditsBar::barsAsked, this, &MainWindow::setBars);
    player_->addToMessage(editsBar);
    player_->addToMessage(new LinkBar(model.links()));
    player_->addToMessage(new ExportBar(model.player().dragOut().progress(), model.player().message(),
                                        [this](const auto& files) { model_.session().fileManager().reveal(files); }));
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

MainWindow::~MainWindow() {
    model_.library().roots().mayRemove = nullptr;
}

void MainWindow::makeParts() {
    const auto makeSplitter = [](Qt::Orientation orientation) {
        auto* splitter = new QSplitter(orientation);
        splitter->setChildrenCollapsible(false);
        splitter->setHandleWidth(5);
        return splitter;
    };
    LibraryModel& library = model_.library();
    sidebar_ = new SidebarView(library.listing(), library.search(), library.roots(), model_.settings());
    sidebar_->setMinimumWidth(sidebarMinWidth);
    inspectorSplit_ = makeSplitter(Qt::Horizontal);
    inspectorSplit_->addWidget(
        browser_ =
            new BrowserView({library.listing(), library.search(), library.roots(), library.edits(), library.infoCache(),
                             model_.player().sound(), model_.player().transport(), model_.settings()}));
    inspectorSplit_->addWidget(inspector_ = new InspectorView(library.edits(), model_.settings()));
    inspectorSplit_->setStretchFactor(0, 1);
    playerSplit_ = new GripSplitter(tr("Height of the player"));
    playerSplit_->setObjectName("playerSplit");
    playerSplit_->addWidget(inspectorSplit_);
    playerSplit_->addWidget(player_ = new PlayerView(model_.player(), model_.settings(), WaveformView::Style::window));
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

void MainWindow::makeDrops() {
    auto* drops = new FileDrops(*this, *sidebar_, model_.disk());
    drops->open = [this](const fs::path& path) { openPath(path); };
    drops->openLink = [this](const std::string& link) { model_.links().open(link); };
    drops->addToLibrary = [this](const std::vector<fs::path>& folders) { model_.addLibraryFolders(folders); };
}

void MainWindow::connectParts() {
    const auto saveSoon = [this] { saveSoon_.start(); };
    connect(sideSplit_, &QSplitter::splitterMoved, this, saveSoon);
    connect(inspectorSplit_, &QSplitter::splitterMoved, this, saveSoon);
    connect(playerSplit_, &QSplitter::splitterMoved, this, [this, saveSoon] {
        playerExtra_ = player_->height() - PlayerHeight::automatic(playerRoom());
        saveSoon();
    });
    connect(playerSplit_, &GripSplitter::resetAsked, this, [this, saveSoon] {
        playerExtra_ = 0;
        fitPlayer();
        saveSoon();
    });
    connect(&browser_->table(), &BrowserTable::columnsChanged, this, saveSoon);
    connect(sidebar_, &SidebarView::foldedChanged, this, saveSoon);
    connect(&browser_->bar().inspectorToggle(), &QToolButton::clicked, this, &MainWindow::showInspector);
    connect(browser_, &BrowserView::selectionMoved, this,
            [this] { inspector_->setSelection(browser_->table().selectedEntries()); });
    browser_->table().setDragForms(&model_.player().dragOut());
    hasTray = [] { return QSystemTrayIcon::isSystemTrayAvailable(); };
    confirmRemoval = [this](const auto& question, const auto& losses) { return askRemoval(this, question, losses); };
    model_.library().roots().mayRemove = [this](const std::string& root, bool losesWords) {
        return mayRemove(root, losesWords);
    };
    confirmRename = [this](const auto& renames) { return askRename(this, renames, inspector_->hasUnsaved()); };
    connect(inspector_, &InspectorView::renameAsked, this, &MainWindow::renameToUCS);
    connect(sidebar_, &SidebarView::addFolderAsked, &model_, &AppModel::addLibraryFolder);
    connect(sidebar_, &SidebarView::typed, &browser_->bar(), &BrowserBar::type);
    connect(browser_, &BrowserView::addFolderAsked, &model_, &AppModel::addLibraryFolder);
    browser_->actions().reveal = [this](const auto& files) { model_.session().fileManager().reveal(files); };
    browser_->actions().renameToUCS = [this](const auto& files) { renameToUCS(files); };
    browser_->actions().openInEditor = [this](const auto& file) { model_.openEditor(file); };
    browser_->actions().makeTempEdits = [this](const auto& files) { model_.makeTempEdits(files); };
    browser_->actions().setBars = [this](const fs::path& file) { setBars(file); };
    connect(&model_.library(), &LibraryModel::messageChanged, this,
            [this] { browser_->showMessage(QString::fromStdString(model_.library().message().value_or(""))); });
    connect(&model_.library(), &LibraryModel::catalogStateChanged, this, &MainWindow::refreshBanners);
    connect(&model_.control(), &ControlServer::started, this, &MainWindow::refreshBanners);
    connect(&model_.player().listening(), &ListeningSetup::outputsChanged, this, &MainWindow::refreshBanners);
    connect(&model_.settings(), &SettingsStore::changed, this, &MainWindow::refreshBanners);
    connect(&model_, &AppModel::settingsProblemChanged, this, &MainWindow::refreshBanners);
    connect(&model_, &AppModel::permissionsChanged, this, &MainWindow::refreshBanners);
    connect(&model_.player(), &PlayerModel::changed, this, [this] {
        if (PlayerHeight::automatic(playerRoom()) != fittedHeight_) { fitPlayer(); }
    });
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
    resize(fittingSize(*this, firstSize));
    restoreGeometry(state.geometry);
    const int side = std::clamp(width() / 6, sidebarMinWidth, sidebarWidth);
    if (!sideSplit_->restoreState(state.sidebarSplit)) { sideSplit_->setSizes({side, width() - side}); }
    if (!inspectorSplit_->restoreState(state.inspectorSplit)) {
        inspectorSplit_->setSizes({width() - side - InspectorView::idealWidth, InspectorView::idealWidth});
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

PlayerHeight::Room MainWindow::playerRoom() const {
    const LoadedSound& sound = model_.player().sound();
    const auto source = sound.source();
    return {int(std::min(sound.laneLabels().size(), mostLanes)), source && source->asAmbisonic(),
            playerSplit_->height() - playerSplit_->handleWidth()};
}

void MainWindow::fitPlayer() {
    const PlayerHeight::Room room = playerRoom();
    fittedHeight_ = PlayerHeight::automatic(room);
    player_->setMinimumHeight(PlayerHeight::minimum(room));
    const int wanted = PlayerHeight::withExtra(room, playerExtra_);
    playerSplit_->setSizes({std::max(1, room.available - wanted), wanted});
}

void MainWindow::refreshBanners() {
    std::vector<Banner> banners;
    switch (model_.engine().devices().server()) {
        case SoundServer::absent:
            banners.push_back(
                {tr("No sound server is running, so nothing will be heard. Brindlehum plays through PipeWire."),
                 {},
                 {}});
            break;
        case SoundServer::silent:
            banners.push_back({tr("The sound server doesn't answer, so nothing will be heard."), {}, {}});
            break;
        case SoundServer::running:
            addFitBanner(banners);
            break;
    }
    if (!model_.library().catalogError().empty()) {
        banners.push_back(
            {tr("The library's catalog can't be opened, so search and shared metadata are off. Folders can still be "
                "browsed. (%1)")
                 .arg(QString::fromStdString(model_.library().catalogError())),
             tr("Show Its Folder"),
             [this] { model_.session().fileManager().openFolder(defaultCatalogFile().parent_path()); }});
    }
    if (const std::string& problem = model_.control().problem(); !problem.empty()) {
        banners.push_back({tr("%1, so other programs can't drive Brindlehum.").arg(QString::fromStdString(problem)),
                           tr("Try Again"), [this] { model_.control().start(); }});
    }
    addFileManagerBanners(banners);
    const auto problem = model_.defaults().problem();
    if (problem && problem != readProblem_) {
        banners.push_back({QString::fromStdString(*problem), tr("Dismiss"), [this, problem] {
                               readProblem_ = problem;
                               refreshBanners();
                           }});
    }
    banners_->setBanners(banners);
}

// Asks only if something would be lost.
bool MainWindow::mayRemove(const std::string& root, bool losesWords) {
    QStringList losses;
    if (inspector_->hasUnsavedIn(root)) {
        losses << tr("The inspector holds edits of its sounds that aren't saved yet.");
    }
    if (losesWords) {
        losses << tr(
            "Some of its sounds are in formats that can't hold metadata. What was written about them is only in the "
            "catalog, and would be lost.");
    }
    if (losses.isEmpty()) { return true; }
    return confirmRemoval(tr("Remove “%1” from the library?").arg(pathText(fs::path(root).filename())),
                          losses.join('\n'));
}

// Only while the user wants something of the file manager.
void MainWindow::addFileManagerBanners(std::vector<Banner>& banners) {
    const AppSettings& settings = model_.settings().value();
    if (!settings.finderPanel) { return; }
    const auto allow = [this] { model_.requestAccessibility(); };
    if (!model_.axTrusted()) {
        banners.push_back(
            {tr("Allow Accessibility so Space plays audio in the file manager and the panel follows windows "
                "instantly."),
             tr("Turn On Accessibility"), allow});
    } else if (model_.automationDenied()) {
        banners.push_back(
            {tr("Brindlehum can't read the file manager's selection. Turn on accessibility, then start the "
                "file manager again."),
             tr("Turn On Accessibility"), allow});
    }
    if (settings.spacePlaysInFinder && model_.keyTap().isRefused()) {
        banners.push_back({tr("Another program has taken the Space key, so it can't play audio in the file manager."),
                           tr("Leave Space Alone"),
                           [this] { model_.settings().change([](AppSettings& s) { s.spacePlaysInFinder = false; }); }});
    }
}

// Says which speakers of the active profile its device can't play.
void MainWindow::addFitBanner(std::vector<Banner>& banners) {
    const ListeningSetup& listening = model_.player().listening();
    const auto device = listening.device();
    if (!device) {
        banners.push_back({tr("There is no output device, so nothing will be heard."), {}, {}});
        return;
    }
    const std::string warning = SpeakerMap::warning(listening.profile(), *device);
    if (warning.empty()) { return; }
    Banner banner{QString::fromStdString(warning), {}, {}, tr("Edit…"), [this] { model_.openWindow("settings"); }};
    const auto& devices = listening.devices();
    const auto all = devices.allOutputs();
    const auto standard = devices.defaultOutput();
    const OutputProfile* fitting = SpeakerMap::fitting(model_.settings().value().profiles, all, standard);
    const AudioOutputDevice* its = fitting ? SpeakerMap::deviceOf(*fitting, all, standard) : nullptr;
    if (its && SpeakerMap::fit(*fitting, *its).unheard == 0) {
        banner.button = tr("Use %1").arg(QString::fromStdString(fitting->name));
        banner.action = [this, id = fitting->id] { model_.player().listening().selectProfile(id); };
    }
    banners.push_back(banner);
}

void MainWindow::openPath(const fs::path& path) {
    const bool isSound = AudioFileInfo::isAudioPath(path);
    if (model_.disk().isFolder(path).value_or(!isSound)) {
        browser_->chosen().openFolder(path);
    } else if (isSound) {
        browser_->chosen().open(path);
        recentFiles_.add(path);
    }
}

void MainWindow::quit() {
    inspector_->settleEdits([this] {
        if (!leaveEditor) { return QApplication::quit(); }
        leaveEditor([] { QApplication::quit(); });
    });
}

void MainWindow::renameToUCS(const std::vector<fs::path>& files) {
    std::vector<fs::path> sounds;
    std::ranges::copy_if(files, std::back_inserter(sounds), AudioFileInfo::isAudioPath);
    if (sounds.empty()) { return; }
    model_.library().edits().previewUCS(sounds, [this, self = QPointer(this)](const UCSRenames& renames) {
        if (self && confirmRename(renames)) { model_.library().edits().rename(renames); }
    });
}

void MainWindow::setBars(const fs::path& file) {
    auto* dialog = new BarsDialog(model_.barsOf(file), model_.player().sound(), model_.player().transport(), this);
    connect(dialog, &BarsDialog::editsAsked, this, [this](const fs::path& piece) { model_.makeTempEdits({piece}); });
    dialog->show();
}

QString MainWindow::shownFolder() {
    return dialogStart(model_.library().listing().folder().value_or(fs::path()), model_.disk());
}

void MainWindow::chooseFile() {
    const QString file = QFileDialog::getOpenFileName(this, tr("Open File"), shownFolder(), audioFilter());
    if (!file.isEmpty()) { openPath(pathOfText(file)); }
}

void MainWindow::chooseFolder() {
    const QString folder = QFileDialog::getExistingDirectory(this, tr("Open Folder"), shownFolder());
    if (!folder.isEmpty()) { openPath(pathOfText(folder)); }
}

void MainWindow::closeEvent(QCloseEvent* event) {
    save();
    // Nobody could stop a sound without a window.
    if (!hasTray() && model_.player().isPlaying()) { model_.player().stopAndReturn(); }
    QMainWindow::closeEvent(event);
}

void MainWindow::resizeEvent(QResizeEvent* event) {
    QMainWindow::resizeEvent(event);
    fitPlayer();
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

}  // namespace brindlehum
