#include "ui/main_menus.h"

#include <QApplication>
#include <QMenuBar>
#include <QMessageBox>

#include "ui/folder_browser.h"
#include "ui/icons.h"
#include "ui/main_window.h"
#include "ui/setting_action.h"

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
    box.setWindowTitle("About Brindlehum");
    box.setIconPixmap(applicationIcon().pixmap(64, 64));
    box.setText("<b>Brindlehum " + QApplication::applicationVersion().toHtmlEscaped() + "</b>");
    box.setInformativeText(
        "Hear any audio file correctly on the speakers or headphones at hand.\n\n"
        "Licence: GNU General Public License, version 3 or later. This program comes with no warranty.");
    box.exec();
}

void fillFile(QMenu* menu, MainWindow& window, AppModel& model) {
    add(menu, "Open File…", QKeySequence("Ctrl+Shift+O"), [&window] { window.chooseFile(); });
    add(menu, "Open Folder…", QKeySequence("Ctrl+O"), [&window] { window.chooseFolder(); });
    menu->addSeparator();
    auto* edits =
        add(menu, "Make Temp Edits", QKeySequence("Ctrl+Shift+E"), [&model] { model.handle("tempedits", {}); });
    const auto follow = [edits, &model] { edits->setEnabled(model.player().info().has_value()); };
    QObject::connect(&model.player(), &PlayerModel::changed, edits, follow);
    follow();
    menu->addSeparator();
    add(menu, "Close Window", QKeySequence("Ctrl+W"), [&window] { window.close(); });
    add(menu, "Quit", QKeySequence("Ctrl+Q"), [] { QApplication::quit(); });
}

// What a click on a column's head does, for the keyboard.
void fillSort(QMenu* menu, FolderBrowser& browser) {
    for (int column = 0; column < FolderModel::ColumnCount; ++column) {
        const QString name = browser.model().headerData(column, Qt::Horizontal, Qt::DisplayRole).toString();
        add(menu, "Sort by " + name, {}, [&browser, column] { browser.sortBy(column); });
    }
}

}  // namespace

void fillMenuBar(MainWindow& window, AppModel& model) {
    QMenuBar* bar = window.menuBar();
    PlayerModel& player = model.player();
    fillFile(bar->addMenu("&File"), window, model);

    auto* edit = bar->addMenu("&Edit");
    add(edit, "Settings…", QKeySequence("Ctrl+,"), [&model] { model.openWindow("settings"); });

    auto* view = bar->addMenu("&View");
    fillSort(view, window.browser());
    view->addSeparator();
    auto* expert = addSetting(*view, "Expert Mode", model.settings(), &AppSettings::expertMode);
    expert->setShortcut(QKeySequence("Ctrl+Alt+E"));

    auto* playback = bar->addMenu("&Playback");
    auto* play = add(playback, "Play / Stop", QKeySequence("Ctrl+Return"), [&player] { player.togglePlay(); });
    play->setShortcuts({QKeySequence("Ctrl+Return"), QKeySequence("Ctrl+Enter")});
    add(playback, "Toggle Loop", QKeySequence("Ctrl+L"), [&player] { player.setLoop(!player.loop()); });
    add(playback, "Clear Selection", QKeySequence("Ctrl+D"), [&player] { player.clearSelection(); });

    auto* help = bar->addMenu("&Help");
    add(help, "About Brindlehum", {}, [&window] { about(&window); });
}

}  // namespace brindlehum
