// The entries of the menu bar.
#include "ui/window/main_menus.h"

#include <QApplication>
#include <QMenuBar>
#include <QMessageBox>

#include "app/app_model.h"
#include "ui/browser/browser_table.h"
#include "ui/browser/browser_view.h"
#include "ui/inspector/inspector_view.h"
#include "ui/look/icons.h"
#include "ui/look/path_text.h"
#include "ui/look/setting_action.h"
#include "ui/player/drag_menu.h"
#include "ui/player/export_copy.h"
#include "ui/player/player_view.h"
#include "ui/window/key_list.h"
#include "ui/window/main_window.h"
#include "ui/window/outputs_menu.h"

namespace brindlehum {
namespace {

QAction* add(QMenu* menu, const QString& text, const QKeySequence& keys, std::function<void()> action) {
    auto* entry = menu->addAction(text);
    entry->setShortcut(keys);
    QObject::connect(entry, &QAction::triggered, menu, [action = std::move(action)] { action(); });
    return entry;
}

void about(QWidget* parent) {
    QMessageBox box(parent);
    box.setWindowTitle(QCoreApplication::translate("MainMenus", "About Brindlehum"));
    box.setIconPixmap(applicationIcon().pixmap(64, 64));
    box.setText("<b>Brindlehum " + QApplication::applicationVersion().toHtmlEscaped() + "</b>");
    box.setInformativeText(QCoreApplication::translate(
        "MainMenus",
        "Hear any audio file correctly on the speakers or headphones at hand.\n\n"
        "Licence: GNU General Public License, version 3 or later. This program comes with no warranty."));
    box.exec();
}

void fillRecent(QMenu* menu, MainWindow& window) {
    menu->clear();
    for (const auto& path : window.recentFiles().files()) {
        QString name = pathText(path.filename());
        QAction* entry = menu->addAction(name.replace('&', "&&"));
        entry->setToolTip(pathText(path));
        QObject::connect(entry, &QAction::triggered, &window, [&window, path] { window.openPath(path); });
    }
    const bool any = !menu->isEmpty();
    menu->addSeparator();
    QAction* clear = menu->addAction(QCoreApplication::translate("MainMenus", "Clear List"));
    clear->setEnabled(any);
    QObject::connect(clear, &QAction::triggered, &window, [&window] { window.recentFiles().clear(); });
}

void fillPulls(QMenu* menu, MainWindow& window, DragOut& dragOut) {
    auto* pull = add(menu, QCoreApplication::translate("MainMenus", "Export to Pulls Folder"),
                     QKeySequence("Ctrl+Shift+P"), [&dragOut] { dragOut.exportToPulls(true); });
    auto* forms = menu->addMenu(QCoreApplication::translate("MainMenus", "Drag As"));
    QObject::connect(forms, &QMenu::aboutToShow, &window, [forms, &dragOut] {
        forms->clear();
        fillDragForms(*forms, dragOut);
    });
    const auto follow = [pull, forms, &dragOut] {
        const bool loaded = dragOut.request(false).has_value();
        pull->setEnabled(loaded);
        forms->setEnabled(loaded);
    };
    QObject::connect(menu, &QMenu::aboutToShow, pull, follow);
    QObject::connect(menu, &QMenu::aboutToHide, pull, [pull] { pull->setEnabled(true); });
}

void fillFile(QMenu* menu, MainWindow& window, AppModel& model) {
    add(menu, QCoreApplication::translate("MainMenus", "Add Library Folder…"), QKeySequence("Ctrl+O"),
        [&model] { model.addLibraryFolder(); });
    add(menu, QCoreApplication::translate("MainMenus", "Open File…"), QKeySequence("Ctrl+Shift+O"),
        [&window] { window.chooseFile(); });
    add(menu, QCoreApplication::translate("MainMenus", "Open Folder…"), {}, [&window] { window.chooseFolder(); });
    auto* recent = menu->addMenu(QCoreApplication::translate("MainMenus", "Open Recent"));
    recent->setToolTipsVisible(true);
    QObject::connect(recent, &QMenu::aboutToShow, &window, [recent, &window] { fillRecent(recent, window); });
    menu->addSeparator();
    InspectorView& inspector = window.inspector();
    auto* save = add(menu, QCoreApplication::translate("MainMenus", "Save Metadata"), QKeySequence("Ctrl+S"),
                     [&inspector] { inspector.save(); });
    const auto followEdits = [save, &inspector] { save->setEnabled(inspector.fields().hasEdits()); };
    QObject::connect(&inspector, &InspectorView::editsChanged, save, followEdits);
    followEdits();
    fillPulls(menu, window, model.player().dragOut());
    menu->addSeparator();
    auto* editor = add(menu, QCoreApplication::translate("MainMenus", "Open in Editor"), QKeySequence("Ctrl+E"),
                       [&model] { model.editLoaded(); });
    auto* edits =
        add(menu, QCoreApplication::translate("MainMenus", "Make Temp Edits"), QKeySequence("Ctrl+Shift+E"), [&model] {
            if (const auto& info = model.player().sound().info()) { model.makeTempEdits({info->url}); }
        });
    auto* bars = add(menu, QCoreApplication::translate("MainMenus", "Set Bars…"), QKeySequence("Ctrl+Shift+B"),
                     [&window, &model] {
                         if (const auto& info = model.player().sound().info()) { window.setBars(info->url); }
                     });
    const auto follow = [edits, bars, editor, &model] {
        for (auto* entry : {edits, bars, editor}) { entry->setEnabled(model.player().sound().info().has_value()); }
    };
    QObject::connect(&model.player(), &PlayerModel::changed, edits, follow);
    follow();
    menu->addSeparator();
    add(menu, QCoreApplication::translate("MainMenus", "Close Window"), QKeySequence("Ctrl+W"),
        [&window] { window.close(); });
    add(menu, QCoreApplication::translate("MainMenus", "Quit"), QKeySequence("Ctrl+Q"), [&window] { window.quit(); });
}

std::vector<std::filesystem::path> chosenSounds(MainWindow& window) {
    std::vector<std::filesystem::path> files;
    for (const auto& entry : window.browser().table().selectedEntries()) {
        if (!entry.isFolder) { files.push_back(entry.url); }
    }
    return files;
}

void fillEdit(QMenu* menu, MainWindow& window, AppModel& model) {
    add(menu, QCoreApplication::translate("MainMenus", "Find"), QKeySequence("Ctrl+F"),
        [&window] { window.browser().focusSearch(); });
    add(menu, QCoreApplication::translate("MainMenus", "Clear Search"), QKeySequence("Ctrl+Shift+F"),
        [&model] { model.library().search().clearFilters(); });
    add(menu, QCoreApplication::translate("MainMenus", "Select All"), QKeySequence("Ctrl+A"),
        [&window] { window.browser().table().selectAll(); });
    menu->addSeparator();
    add(menu, QCoreApplication::translate("MainMenus", "Copy Sound"), QKeySequence("Ctrl+C"),
        [&window] { window.playerView().exportCopy().copy(true); });
    menu->addSeparator();
    auto* rename = add(menu, QCoreApplication::translate("MainMenus", "Rename to UCS Names…"), {},
                       [&window] { window.renameToUCS(chosenSounds(window)); });
    auto* undo = add(menu, QCoreApplication::translate("MainMenus", "Undo Rename"), {},
                     [&model] { model.library().edits().undoRename(); });
    QObject::connect(menu, &QMenu::aboutToShow, undo, [rename, undo, &window, &model] {
        rename->setEnabled(!chosenSounds(window).empty());
        undo->setEnabled(model.library().edits().canUndoRename());
    });
    menu->addSeparator();
    add(menu, QCoreApplication::translate("MainMenus", "Settings…"), QKeySequence("Ctrl+,"),
        [&model] { model.openWindow("settings"); });
}

// Sorting by the keyboard, as by a click on a column's head.
void fillSort(QMenu* menu, BrowserTable& table) {
    for (int column = 0; column < BrowserTableModel::ColumnCount; ++column) {
        add(menu, QCoreApplication::translate("MainMenus", "Sort by %1").arg(BrowserTableModel::columnName(column)), {},
            [&table, column] { table.sortBy(column); });
    }
}

QAction* addPart(QMenu* menu, const QString& text, const QKeySequence& keys, MainWindow& window,
                 bool (MainWindow::*shown)() const, void (MainWindow::*show)(bool)) {
    auto* entry = menu->addAction(text);
    entry->setShortcut(keys);
    entry->setCheckable(true);
    entry->setChecked((window.*shown)());
    QObject::connect(entry, &QAction::triggered, &window, show);
    QObject::connect(&window, &MainWindow::partsChanged, entry,
                     [entry, &window, shown] { entry->setChecked((window.*shown)()); });
    return entry;
}

void fillZoom(QMenu* menu, WaveformView& wave) {
    auto* in = add(menu, QCoreApplication::translate("MainMenus", "Zoom In"), {},
                   [&wave] { wave.zoom(WaveformView::zoomStep); });
    in->setShortcuts({QKeySequence("Ctrl++"), QKeySequence("Ctrl+=")});
    add(menu, QCoreApplication::translate("MainMenus", "Zoom Out"), QKeySequence("Ctrl+-"),
        [&wave] { wave.zoom(1 / WaveformView::zoomStep); });
    add(menu, QCoreApplication::translate("MainMenus", "Show Whole Sound"), QKeySequence("Ctrl+0"),
        [&wave] { wave.showAll(); });
    auto* selection = add(menu, QCoreApplication::translate("MainMenus", "Show Selection"), QKeySequence("Ctrl+Alt+0"),
                          [&wave] { wave.showSelected(); });
    QObject::connect(menu, &QMenu::aboutToShow, selection,
                     [selection, &wave] { selection->setEnabled(wave.selection().has_value()); });
    QObject::connect(menu, &QMenu::aboutToHide, selection, [selection] { selection->setEnabled(true); });
}

void fillView(QMenu* menu, MainWindow& window, AppModel& model) {
    addPart(menu, QCoreApplication::translate("MainMenus", "Sidebar"), QKeySequence("F9"), window,
            &MainWindow::showsSidebar, &MainWindow::showSidebar);
    addPart(menu, QCoreApplication::translate("MainMenus", "Metadata Inspector"), QKeySequence("Ctrl+I"), window,
            &MainWindow::showsInspector, &MainWindow::showInspector);
    menu->addSeparator();
    BrowserTable& table = window.browser().table();
    fillSort(menu->addMenu(QCoreApplication::translate("MainMenus", "Sort")), table);
    auto* columns = menu->addMenu(QCoreApplication::translate("MainMenus", "Columns"));
    QObject::connect(columns, &QMenu::aboutToShow, &table, [columns, &table] { table.fillColumns(*columns); });
    menu->addSeparator();
    fillZoom(menu, window.playerView().waveform());
    menu->addSeparator();
    add(menu, QCoreApplication::translate("MainMenus", "Editor"), {}, [&model] { model.openWindow("editor"); });
    add(menu, QCoreApplication::translate("MainMenus", "Monitor"), QKeySequence("Ctrl+Shift+M"),
        [&model] { model.openWindow("monitor"); });
    addSetting(*menu, QCoreApplication::translate("MainMenus", "File Manager Panel"), model.settings(),
               &AppSettings::finderPanel);
    auto* expert = addSetting(*menu, QCoreApplication::translate("MainMenus", "Expert Mode"), model.settings(),
                              &AppSettings::expertMode);
    expert->setShortcut(QKeySequence("Ctrl+Alt+E"));
}

}  // namespace

void fillMenuBar(MainWindow& window, AppModel& model) {
    QMenuBar* bar = window.menuBar();
    PlayerModel& player = model.player();
    fillFile(bar->addMenu(QCoreApplication::translate("MainMenus", "&File")), window, model);

    fillEdit(bar->addMenu(QCoreApplication::translate("MainMenus", "&Edit")), window, model);
    fillView(bar->addMenu(QCoreApplication::translate("MainMenus", "&View")), window, model);

    auto* playback = bar->addMenu(QCoreApplication::translate("MainMenus", "&Playback"));
    auto* play = add(playback, QCoreApplication::translate("MainMenus", "Play / Stop"), QKeySequence("Ctrl+Return"),
                     [&player] { player.togglePlay(); });
    play->setShortcuts({QKeySequence("Ctrl+Return"), QKeySequence("Ctrl+Enter")});
    add(playback, QCoreApplication::translate("MainMenus", "Toggle Loop"), QKeySequence("Ctrl+L"),
        [&player] { player.transport().setLoop(!player.transport().loop()); });
    add(playback, QCoreApplication::translate("MainMenus", "Clear Selection"), QKeySequence("Ctrl+D"),
        [&player] { player.transport().clearSelection(); });
    add(playback, QCoreApplication::translate("MainMenus", "Open Copied Link"), QKeySequence("Ctrl+Shift+V"),
        [&model] { model.openCopiedLink(); });

    playback->addSeparator();
    addSetting(*playback, QCoreApplication::translate("MainMenus", "Auto-Play"), model.settings(),
               &AppSettings::autoPlay);
    addSetting(*playback, QCoreApplication::translate("MainMenus", "Space Plays in File Manager"), model.settings(),
               &AppSettings::spacePlaysInFinder);
    playback->addSeparator();
    add(playback, QCoreApplication::translate("MainMenus", "Compare Upmix with Fold-Down"), QKeySequence("Ctrl+U"),
        [&player] { player.compare().toggle(); });
    add(playback, QCoreApplication::translate("MainMenus", "Adjust Upmix…"), QKeySequence("Ctrl+Shift+U"),
        [&window] { window.playerView().showUpmixPanel(); });
    playback->addSeparator();
    auto* outputs = playback->addMenu(QCoreApplication::translate("MainMenus", "Output"));
    const auto refill = [outputs, &model, &player] { fillOutputs(*outputs, model.settings(), player.listening()); };
    QObject::connect(&model.settings(), &SettingsStore::changed, outputs, refill);
    refill();

    auto* help = bar->addMenu(QCoreApplication::translate("MainMenus", "&Help"));
    add(help, QCoreApplication::translate("MainMenus", "Manual"), QKeySequence("F1"),
        [&model] { model.openWindow("manual"); });
    add(help, QCoreApplication::translate("MainMenus", "Keys"), QKeySequence("Ctrl+?"),
        [&window] { showKeyList(window); });
    add(help, QCoreApplication::translate("MainMenus", "What Works Here…"), {},
        [&model] { model.openWindow("works"); });
    help->addSeparator();
    add(help, QCoreApplication::translate("MainMenus", "About Brindlehum"), {}, [&window] { about(&window); });
}

}  // namespace brindlehum
