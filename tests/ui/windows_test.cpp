// The windows as a whole: the folder list, the menus, the status menu, and what a keyboard and a reader can reach.
#include <QAbstractButton>
#include <QAbstractSlider>
#include <QAbstractSpinBox>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDropEvent>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QMimeData>
#include <QScrollBar>
#include <QTabWidget>
#include <QTest>
#include <QTreeView>
#include <fstream>

#include "ui/app_windows.h"
#include "ui/file_drag.h"
#include "ui/folder_browser.h"
#include "ui/main_window.h"
#include "ui/player_view.h"
#include "ui/settings_window.h"
#include "ui/status_menu.h"
#include "ui/ui_state.h"
#include "window_fixture.h"

namespace brindlehum {
namespace {

struct Windows : test::WindowTest {
    QAction* entry(const QWidget& root, const QString& text) {
        for (auto* action : root.findChildren<QAction*>())
            if (action->text() == text) return action;
        ADD_FAILURE() << "no entry " << text.toStdString();
        return nullptr;
    }
    bool goTo(MainWindow& window, const std::filesystem::path& path) {
        window.openPath(path);
        return settle([&] { return !window.browser().model().isReading(); });
    }
    QStringList names(MainWindow& window) {
        QStringList all;
        for (int row = 0; row < window.browser().model().rowCount(); ++row)
            all << window.browser().model().entry(row).name;
        return all;
    }
};

// What a user can operate; scroll bars and the parts of compound widgets aside.
bool isControl(const QWidget& widget) {
    const auto* line = qobject_cast<const QLineEdit*>(&widget);
    if (line && qobject_cast<const QAbstractSpinBox*>(line->parentWidget())) return false;
    if (qobject_cast<const QScrollBar*>(&widget) || widget.objectName().startsWith("qt_")) return false;
    if (qobject_cast<const QHeaderView*>(&widget)) return false;  // the View menu sorts as well
    return qobject_cast<const QAbstractButton*>(&widget) || qobject_cast<const QAbstractSlider*>(&widget) ||
           qobject_cast<const QAbstractSpinBox*>(&widget) || qobject_cast<const QComboBox*>(&widget) || line ||
           qobject_cast<const QAbstractItemView*>(&widget) || qobject_cast<const WaveformView*>(&widget);
}

QSet<const QWidget*> tabStops(QWidget& window) {
    QSet<const QWidget*> stops;
    for (QWidget* at = window.nextInFocusChain(); at && at != &window; at = at->nextInFocusChain())
        if (at->isVisible() && at->isEnabled() && at->focusPolicy() & Qt::TabFocus) stops.insert(at);
    return stops;
}

void expectReachable(QWidget& window) {
    const auto stops = tabStops(window);
    int controls = 0;
    for (const auto* widget : window.findChildren<QWidget*>()) {
        if (!widget->isVisibleTo(&window) || !isControl(*widget) || widget->window() != &window) continue;
        ++controls;
        const auto* button = qobject_cast<const QAbstractButton*>(widget);
        const QString name = widget->accessibleName().isEmpty() && button ? button->text() : widget->accessibleName();
        EXPECT_FALSE(name.isEmpty()) << widget->metaObject()->className() << " has no accessible name";
        EXPECT_TRUE(!widget->isEnabled() || stops.contains(widget)) << name.toStdString() << " can't be reached by Tab";
    }
    EXPECT_GE(controls, 2);
}

TEST_F(Windows, EveryControlHasANameAndATabStop) {
    ASSERT_TRUE(load(file("field_ambix.wav", 4)));
    player.select(FrameRange{1000, 20000});
    MainWindow window(model);
    window.show();
    ASSERT_TRUE(goTo(window, folder.path()));
    expectReachable(window);
    SettingsWindow settings(model.settings(), model.engine().devices());
    settings.show();
    auto* tabs = settings.findChild<QTabWidget*>();
    for (int tab = 0; tab < tabs->count(); ++tab) {
        tabs->setCurrentIndex(tab);
        expectReachable(settings);
    }
}

TEST_F(Windows, TheListShowsFoldersFirstAndAudioOnlyWithNumbersByValue) {
    std::filesystem::create_directories(folder / "Zeta");
    std::filesystem::create_directories(folder / "trap.wav");
    std::filesystem::create_directories(folder / ".hidden");
    for (const char* name : {"take10.wav", "Take2.WAV", "take1.flac", "notes.txt", ".secret.wav", "a.mp3"})
        std::ofstream(folder / name) << "x";
    std::ofstream(folder / "big.aif") << std::string(5000, 'x');
    MainWindow window(model);
    window.show();
    ASSERT_TRUE(goTo(window, folder.path()));
    EXPECT_EQ(names(window),
              (QStringList{"trap.wav", "Zeta", "a.mp3", "big.aif", "take1.flac", "Take2.WAV", "take10.wav"}));
    window.browser().model().sort(FolderModel::Size, Qt::DescendingOrder);
    EXPECT_EQ(names(window).mid(0, 3), (QStringList{"trap.wav", "Zeta", "big.aif"}));
    window.browser().model().sort(FolderModel::Name, Qt::DescendingOrder);
    EXPECT_EQ(names(window).mid(2), (QStringList{"take10.wav", "Take2.WAV", "take1.flac", "big.aif", "a.mp3"}));
}

TEST_F(Windows, KeysWalkTheFoldersAndChooseFiles) {
    std::filesystem::create_directories(folder / "inner");
    const auto take = file("inner/take.wav", 2);
    MainWindow window(model);
    window.show();
    ASSERT_TRUE(goTo(window, folder.path()));
    QTreeView& list = window.browser().list();
    list.setFocus();
    QCoreApplication::processEvents();
    EXPECT_FALSE(player.info()) << "focus alone chooses nothing";
    QTest::keyClick(&list, Qt::Key_I);
    QTest::keyClick(&list, Qt::Key_Return);
    EXPECT_EQ(window.browser().folder(), folder / "inner");
    ASSERT_TRUE(settle([&] { return window.browser().model().rowCount() == 1; }));
    QTest::keyClick(&list, Qt::Key_Down);
    ASSERT_TRUE(settle([&] { return player.info() && player.info()->url == take; }));
    EXPECT_FALSE(player.isPlaying()) << "auto-play is off";
    QTest::keyClick(&list, Qt::Key_Space);
    ASSERT_TRUE(settle([&] { return player.isPlaying(); }));
    QTest::keyClick(&list, Qt::Key_Backspace);
    EXPECT_EQ(window.browser().folder(), folder.path());
    ASSERT_TRUE(settle([&] { return list.currentIndex().isValid(); }));
    EXPECT_EQ(window.browser().model().path(list.currentIndex().row()), folder / "inner") << "where one came from";
    EXPECT_TRUE(player.isPlaying());
}

TEST_F(Windows, AFolderSaysWhyItIsEmpty) {
    MainWindow window(model);
    window.show();
    ASSERT_TRUE(goTo(window, folder.path()));
    const auto state = [&] {
        QStringList texts;
        for (const auto* label : window.browser().findChildren<QLabel*>())
            if (label->isVisible()) texts << label->text();
        return texts.join('|');
    };
    EXPECT_TRUE(state().contains("No folders or audio files here")) << state().toStdString();
    window.browser().setFolder(folder / "vanished");
    ASSERT_TRUE(settle([&] { return !window.browser().model().isReading(); }));
    EXPECT_TRUE(state().contains("Can't read this folder: No such file or directory")) << state().toStdString();
}

TEST_F(Windows, AnotherProgramsFilesAppearAndTheMarkStays) {
    file("b.wav", 1);
    MainWindow window(model);
    window.show();
    ASSERT_TRUE(goTo(window, folder / "b.wav"));
    ASSERT_TRUE(settle([&] { return window.browser().list().currentIndex().isValid(); }));
    file("a.wav", 1);
    ASSERT_TRUE(settle([&] { return window.browser().model().rowCount() == 2; }));
    EXPECT_EQ(window.browser().list().currentIndex().row(), 1);
}

TEST_F(Windows, ARowDragsOutAsItsFile) {
    file("a.wav", 1);
    file("b #1.wav", 1);
    MainWindow window(model);
    ASSERT_TRUE(goTo(window, folder.path()));
    FolderModel& rows = window.browser().model();
    const std::unique_ptr<QMimeData> data(rows.mimeData({rows.index(0, 0), rows.index(0, 1), rows.index(1, 0)}));
    EXPECT_EQ(FileDrag::localPaths(*data), (std::vector{folder / "a.wav", folder / "b #1.wav"}));
}

TEST_F(Windows, DropsLoadFilesAndOpenFolders) {
    std::filesystem::create_directories(folder / "inner");
    const auto path = file("inner/drop.wav", 2);
    std::ofstream(folder / "notes.txt") << "x";
    EXPECT_FALSE(droppable({folder / "notes.txt"}));
    EXPECT_EQ(droppable({folder / "notes.txt", path}), path);
    MainWindow window(model);
    window.show();
    const std::unique_ptr<QMimeData> data(FileDrag::mimeData({path}));
    QDragEnterEvent enter({10, 10}, Qt::CopyAction, data.get(), Qt::LeftButton, {});
    QApplication::sendEvent(&window, &enter);
    EXPECT_TRUE(enter.isAccepted());
    EXPECT_TRUE(named(window, "Drop target")->isVisible());
    QDropEvent drop({10, 10}, Qt::CopyAction, data.get(), Qt::LeftButton, {});
    QApplication::sendEvent(&window, &drop);
    EXPECT_FALSE(named(window, "Drop target")->isVisible());
    ASSERT_TRUE(settle([&] { return player.info() && player.info()->url == path; }));
    EXPECT_EQ(window.browser().folder(), folder / "inner");
}

TEST_F(Windows, TheFolderAndTheWindowComeBack) {
    std::filesystem::create_directories(folder / "inner");
    {
        MainWindow window(model);
        window.resize(900, 700);
        window.show();
        ASSERT_TRUE(goTo(window, folder / "inner"));
        window.close();
    }
    EXPECT_EQ(UIState::load(defaults).folder, folder / "inner");
    MainWindow again(model);
    EXPECT_EQ(again.browser().folder(), folder / "inner");
    EXPECT_EQ(again.size(), QSize(900, 700));
    defaults.set(UIState::key, "{\"folder\": 3, ");
    EXPECT_EQ(UIState::load(defaults), UIState{});
}

TEST_F(Windows, MenuEntriesCallTheirModels) {
    ASSERT_TRUE(load(file("menu.wav", 2)));
    AppWindows windows(model);
    MainWindow* window = nullptr;
    for (auto* widget : QApplication::topLevelWidgets())
        if (auto* found = qobject_cast<MainWindow*>(widget)) window = found;
    ASSERT_TRUE(window);
    EXPECT_EQ(window->windowTitle(), "Brindlehum");
    const std::vector<std::pair<QString, QString>> shortcuts = {
        {"Expert Mode", "Ctrl+Alt+E"}, {"Play / Stop", "Ctrl+Return"}, {"Toggle Loop", "Ctrl+L"},
        {"Clear Selection", "Ctrl+D"}, {"Settings…", "Ctrl+,"},        {"Quit", "Ctrl+Q"}};
    for (const auto& [text, keys] : shortcuts) EXPECT_EQ(entry(*window, text)->shortcut(), QKeySequence(keys));
    entry(*window, "Expert Mode")->trigger();
    EXPECT_TRUE(model.settings().value().expertMode);
    entry(*window, "Toggle Loop")->trigger();
    EXPECT_TRUE(player.loop());
    entry(*window, "Play / Stop")->trigger();
    EXPECT_TRUE(loop.runUntil([&] { return player.isPlaying(); }));
    entry(*window, "Sort by Size")->trigger();
    EXPECT_EQ(window->browser().list().header()->sortIndicatorSection(), FolderModel::Size);
    player.select(FrameRange{0, 9000});
    entry(*window, "Clear Selection")->trigger();
    EXPECT_FALSE(player.selection());
    entry(*window, "Settings…")->trigger();
    bool open = false;
    for (auto* widget : QApplication::topLevelWidgets())
        open = open || (qobject_cast<SettingsWindow*>(widget) && widget->isVisible());
    EXPECT_TRUE(open);
    window->close();
    model.openWindow("main");
    EXPECT_TRUE(window->isVisible()) << "the application stays when its window closes";
}

TEST_F(Windows, StatusMenuAndSettingsAreOneState) {
    StatusMenu status(model);
    SettingsWindow settings(model.settings(), model.engine().devices());
    settings.show();
    QCheckBox* box = nullptr;
    for (auto* candidate : settings.findChildren<QCheckBox*>())
        if (candidate->text() == "Auto-play when the selection changes") box = candidate;
    ASSERT_TRUE(box);
    entry(status.menu(), "Auto-Play")->trigger();
    EXPECT_TRUE(model.settings().value().autoPlay);
    EXPECT_TRUE(box->isChecked());
    box->click();
    EXPECT_FALSE(entry(status.menu(), "Auto-Play")->isChecked());
    EXPECT_TRUE(entry(status.menu(), "Room 9.1.6")->isChecked()) << "the first one without a choice";
    entry(status.menu(), "Nearfield")->trigger();
    EXPECT_EQ(model.settings().activeProfile().name, "Nearfield");
    EXPECT_TRUE(entry(status.menu(), "Nearfield")->isChecked());
    model.settings().change([](AppSettings& s) { s.profiles[1].name = "Desk"; });
    EXPECT_TRUE(entry(status.menu(), "Desk")->isChecked());
    QStringList texts;
    for (const auto* action : status.menu().actions()) texts << (action->isSeparator() ? "-" : action->text());
    EXPECT_EQ(texts,
              (QStringList{"Auto-Play", "-", "Output", "-", "Show Browser", "Settings…", "-", "Quit Brindlehum"}));
}

}  // namespace
}  // namespace brindlehum
