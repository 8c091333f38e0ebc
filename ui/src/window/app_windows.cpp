// Makes the windows and connects them to the model's window actions.
#include "ui/window/app_windows.h"

#include <QApplication>
#include <QClipboard>
#include <QLocale>
#include <utility>

#include "app/app_model.h"
#include "ui/editor/editor_window.h"
#include "ui/inspector/inspector_view.h"
#include "ui/look/dialog_start.h"
#include "ui/look/form_scroll.h"
#include "ui/look/icons.h"
#include "ui/look/theme_controller.h"
#include "ui/monitor/monitor_window.h"
#include "ui/panel/hud_controller.h"
#include "ui/player/player_view.h"
#include "ui/settings/settings_window.h"
#include "ui/settings/works_page.h"
#include "ui/window/folder_chooser.h"
#include "ui/window/main_window.h"
#include "ui/window/manual_window.h"
#include "ui/window/status_menu.h"
#include "works_facts.h"

namespace brindlehum {
namespace {

void bringUp(QWidget& window) {
    if (window.isMinimized()) { window.showNormal(); }
    window.show();
    // The offscreen platform can't raise windows, and Qt would print a warning each time.
    if (QGuiApplication::platformName() == QLatin1String("offscreen")) { return; }
    window.raise();
    window.activateWindow();
}

}  // namespace

AppWindows::AppWindows(AppModel& model, bool isQuiet)
    : model_(model), isQuiet_(isQuiet), theme_(std::make_unique<ThemeController>()) {
    // The C locale doesn't group digits.
    if (QLocale().language() == QLocale::C) { QLocale::setDefault(QLocale(QLocale::English)); }
    QApplication::setQuitOnLastWindowClosed(false);
    QApplication::setApplicationVersion(QStringLiteral(BRINDLEHUM_VERSION));
    QApplication::setWindowIcon(applicationIcon());
    main_ = std::make_unique<MainWindow>(model);
    model.quitAction = [this] {
        if (main_->inspector().hasUnsaved()) { open("main"); }  // the question belongs to a window that is seen
        main_->quit();
    };
    status_ = std::make_unique<StatusMenu>(model, model.quitAction);
    hud_ = std::make_unique<HUDController>(model.player(), model.settings());
    hud_->hasCompositor = [this] { return model_.session().blendsWindows(); };
    QObject::connect(&model, &AppModel::fileManagerWindow, hud_.get(), &HUDController::setFileManagerWindow);
    QObject::connect(&model, &AppModel::fileManagerState, hud_.get(), &HUDController::setFileManager);
    QObject::connect(hud_.get(), &HUDController::editorAsked, &model, &AppModel::editLoaded);
    QObject::connect(&main_->playerView(), &PlayerView::editorAsked, &model, &AppModel::editLoaded);
    QObject::connect(hud_.get(), &HUDController::upmixPanelAsked, main_.get(), [this] {
        open("main");
        main_->playerView().showUpmixPanel();
    });
    model.chooseFoldersAction = [this](const AppModel::FoldersChosen& chosen) {
        const auto start = model_.library().listing().folder().value_or(std::filesystem::path());
        chosen(chooseLibraryFolders(main_.get(), start, model_.disk()));
    };
    model.clipboardText = [] { return QGuiApplication::clipboard()->text().toStdString(); };
    model.openInEditorAction = [this](const std::filesystem::path& file) { editor().open(file); };
    main_->leaveEditor = [this](const std::function<void()>& proceed) {
        if (model_.editor().document().isDirty()) { open("editor"); }
        editor().leave(proceed);
    };
    QObject::connect(&model.editor().document(), &DocumentModel::abandonedChanged, main_.get(),
                     [this] { offerAbandoned(); });
    model.openWindowAction = [this](const std::string& id) { open(id); };
    if (isQuiet_) { return; }
    offerAbandoned();
    open("main");
}

AppWindows::~AppWindows() {
    model_.openWindowAction = nullptr;
    model_.clipboardText = nullptr;
    model_.quitAction = nullptr;
    model_.openInEditorAction = nullptr;
    model_.chooseFoldersAction = nullptr;
}

EditorWindow& AppWindows::editor() {
    if (!editor_) {
        editor_ = std::make_unique<EditorWindow>(model_.editor(), model_.settings(), model_.session().fileManager());
        editor_->dialogStart = [this](const auto& folder) { return dialogStart(folder, model_.disk()); };
        editor_->openGenerationSettings = [this] {
            open("settings");
            settings_->showGeneration();
        };
    }
    return *editor_;
}

void AppWindows::offerAbandoned() {
    if (!isQuiet_ && !model_.editor().document().abandoned().empty()) { open("editor"); }
}

void AppWindows::open(const std::string& id) {
    if (std::exchange(isQuiet_, false)) { offerAbandoned(); }
    if (id == "main") { bringUp(*main_); }
    if (id == "editor") { bringUp(editor()); }
    if (id == "monitor") {
        if (!monitor_) {
            monitor_ = std::make_unique<MonitorWindow>(model_.monitor(), model_.settings(), model_.loop());
        }
        bringUp(*monitor_);
    }
    if (id == "manual") {
        if (!manual_) { manual_ = std::make_unique<ManualWindow>(); }
        bringUp(*manual_);
    }
    if (id != "settings" && id != "works") { return; }
    if (!settings_) {
        settings_ = std::make_unique<SettingsWindow>(
            model_.settings(), model_.library().roots(), model_.library().search(), model_.engine().devices(),
            model_.speakerTest(), model_.session(), model_.loop(), [this] { model_.addLibraryFolder(); },
            model_.editor().generationKey());
        works_ = makeWorksPage(model_);
        settings_->addPage(new FormScroll(works_), symbol("check"),
                           QCoreApplication::translate("AppWindows", "What works here"));
    }
    if (id == "works") { settings_->showPage(works_); }
    bringUp(*settings_);
}

}  // namespace brindlehum
