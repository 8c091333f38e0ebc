// The windows as a whole: their memory, the menus, the status menu, and what a keyboard and a reader can reach.
#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSlider>
#include <QAbstractSpinBox>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDropEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMimeData>
#include <QPushButton>
#include <QScrollBar>
#include <QShortcut>
#include <QTabWidget>
#include <QTest>
#include <QTextBlock>
#include <QToolButton>
#include <QTreeWidget>
#include <algorithm>
#include <fstream>

#include "app/start_arguments.h"
#include "platform/headless_audio.h"
#include "ui/browser/browser_table.h"
#include "ui/browser/browser_view.h"
#include "ui/inspector/inspector_view.h"
#include "ui/look/file_drag.h"
#include "ui/player/player_view.h"
#include "ui/settings/session_settings.h"
#include "ui/settings/settings_window.h"
#include "ui/sidebar/sidebar_view.h"
#include "ui/window/app_windows.h"
#include "ui/window/file_drops.h"
#include "ui/window/main_window.h"
#include "ui/window/manual_browser.h"
#include "ui/window/manual_window.h"
#include "ui/window/rename_dialog.h"
#include "ui/window/status_menu.h"
#include "ui/window/ui_state.h"
#include "window_fixture.h"

namespace brindlehum {
namespace {

struct Windows : test::WindowTest {
    QAction* entry(const QWidget& root, const QString& text) {
        const auto actions = root.findChildren<QAction*>();
        const auto found = std::ranges::find(actions, text, &QAction::text);
        if (found != actions.end()) { return *found; }
        ADD_FAILURE() << "no entry " << text.toStdString();
        return nullptr;
    }
    template <class Window>
    static Window* topLevel() {
        for (auto* widget : QApplication::topLevelWidgets()) {
            if (auto* found = qobject_cast<Window*>(widget)) { return found; }
        }
        return nullptr;
    }
    std::unique_ptr<SettingsWindow> makeSettings() {
        return std::make_unique<SettingsWindow>(
            model.settings(), model.library().roots(), model.library().search(), model.engine().devices(),
            model.speakerTest(), model.session(), loop, [this] { ++asked; }, model.editor().generationKey());
    }
    int asked = 0;  // for a folder to add
};

// What a user can operate; scroll bars and the parts of compound widgets aside.
bool isControl(const QWidget& widget) {
    const auto* line = qobject_cast<const QLineEdit*>(&widget);
    if (line && qobject_cast<const QAbstractSpinBox*>(line->parentWidget())) { return false; }
    if (qobject_cast<const QLineEdit*>(widget.parentWidget())) { return false; }  // Escape does what its button does
    if (qobject_cast<const QScrollBar*>(&widget) || widget.objectName().startsWith("qt_")) { return false; }
    if (qobject_cast<const QHeaderView*>(&widget)) { return false; }  // the View menu sorts as well
    return qobject_cast<const QAbstractButton*>(&widget) || qobject_cast<const QAbstractSlider*>(&widget) ||
           qobject_cast<const QAbstractSpinBox*>(&widget) || qobject_cast<const QComboBox*>(&widget) || line ||
           qobject_cast<const QAbstractItemView*>(&widget) || qobject_cast<const WaveformView*>(&widget);
}

QSet<const QWidget*> tabStops(QWidget& window) {
    QSet<const QWidget*> stops;
    for (QWidget* at = window.nextInFocusChain(); at && at != &window; at = at->nextInFocusChain()) {
        if (at->isVisible() && at->isEnabled() && at->focusPolicy() & Qt::TabFocus) { stops.insert(at); }
    }
    return stops;
}

void expectReachable(QWidget& window) {
    const auto stops = tabStops(window);
    int controls = 0;
    for (const auto* widget : window.findChildren<QWidget*>()) {
        if (!widget->isVisibleTo(&window) || !isControl(*widget) || widget->window() != &window) { continue; }
        ++controls;
        const auto* button = qobject_cast<const QAbstractButton*>(widget);
        const QString name = widget->accessibleName().isEmpty() && button ? button->text() : widget->accessibleName();
        EXPECT_FALSE(name.isEmpty()) << widget->metaObject()->className() << " has no accessible name";
        EXPECT_TRUE(!widget->isEnabled() || stops.contains(widget)) << name.toStdString() << " can't be reached by Tab";
    }
    EXPECT_GE(controls, 2);
}

TEST_F(Windows, EveryControlHasANameAndATabStop) {
    const auto path = file("field_ambix.wav", 4);
    ASSERT_TRUE(load(path));
    player.transport().select(FrameRange{1000, 20000});
    MainWindow window(model);
    window.show();
    window.openPath(folder.path());
    ASSERT_TRUE(settle([&] { return !model.library().listing().isListing(); }));
    expectReachable(window);
    const auto settings = makeSettings();
    settings->show();
    auto* tabs = settings->findChild<QTabWidget*>();
    for (int tab = 0; tab < tabs->count(); ++tab) {
        tabs->setCurrentIndex(tab);
        expectReachable(*settings);
    }
}

TEST_F(Windows, DropsLoadFilesOpenFoldersAndAddToTheLibraryOverTheSidebar) {
    std::filesystem::create_directories(folder / "inner");
    const auto path = file("inner/drop.wav", 2);
    std::ofstream(folder / "notes.txt") << "x";
    EXPECT_FALSE(droppable({folder / "notes.txt"}, {}));
    MainWindow window(model);
    window.show();
    const auto dropOn = [&](const QWidget& part, const std::vector<std::filesystem::path>& paths) {
        const std::unique_ptr<QMimeData> data(FileDrag::mimeData(paths));
        const QPoint at = part.mapTo(&window, part.rect().center());
        QDragEnterEvent enter(at, Qt::CopyAction, data.get(), Qt::LeftButton, {});
        QApplication::sendEvent(&window, &enter);
        EXPECT_TRUE(enter.isAccepted());
        EXPECT_EQ(named(window, "Drop target")->isVisible(), &part != &window.sidebar());
        QDropEvent drop(at, Qt::CopyAction, data.get(), Qt::LeftButton, {});
        QApplication::sendEvent(&window, &drop);
        EXPECT_FALSE(named(window, "Drop target")->isVisible());
    };
    dropOn(window.browser(), {folder / "notes.txt", path});
    ASSERT_TRUE(settle([&] { return player.sound().info() && player.sound().info()->url == path; }));
    EXPECT_EQ(model.library().listing().folder(), folder / "inner");
    EXPECT_TRUE(settle([&] { return window.browser().table().selectedEntries().size() == 1; }));
    EXPECT_FALSE(player.isPlaying()) << "auto-play is off";
    dropOn(window.browser(), {folder.path()});
    EXPECT_EQ(model.library().listing().folder(), folder.path());
    EXPECT_TRUE(model.settings().value().libraryRoots.empty());
    dropOn(window.sidebar(), {folder / "notes.txt", folder / "inner"});
    EXPECT_EQ(model.settings().value().libraryRoots, std::vector{(folder / "inner").string()});
}

TEST_F(Windows, TheWindowAndItsPartsComeBack) {
    {
        MainWindow window(model);
        window.resize(1000, 700);
        window.show();
        auto* head = window.browser().table().header();
        EXPECT_TRUE(head->isSectionHidden(BrowserTableModel::Keywords));
        QMenu columns;
        window.browser().table().fillColumns(columns);
        entry(columns, "Keywords")->trigger();
        head->resizeSection(BrowserTableModel::Category, 155);
        head->moveSection(head->visualIndex(BrowserTableModel::Format), 1);
        window.sidebar().setFolded({"Places"});
        window.showInspector(false);
        window.close();
    }
    MainWindow again(model);
    again.show();
    EXPECT_EQ(again.size(), QSize(1000, 700));
    const auto* head = again.browser().table().header();
    EXPECT_EQ(head->sectionSize(BrowserTableModel::Category), 155);
    EXPECT_FALSE(head->isSectionHidden(BrowserTableModel::Keywords));
    EXPECT_TRUE(head->isSectionHidden(BrowserTableModel::Folder));
    EXPECT_EQ(head->visualIndex(BrowserTableModel::Format), 1);
    EXPECT_EQ(again.sidebar().folded(), QStringList{"Places"});
    EXPECT_FALSE(again.inspector().isVisible());
    defaults.set(UIState::key, "{\"inspector\": 3, ");
    EXPECT_EQ(UIState::load(defaults), UIState{});
}

TEST_F(Windows, NoticesSayWhatIsAmissAndHelp) {
    MainWindow fine(model);
    EXPECT_TRUE(named(fine, "Notices")->isHidden());
    HeadlessAudioSystem silent;
    std::ofstream(folder / "blocked") << "x";
    AppModel lame{{loop, silent, defaults, session, folder / "blocked" / "Catalog.sqlite"}};
    MainWindow window(lame);
    ASSERT_TRUE(settle([&] { return !lame.library().catalogError().empty(); }));
    QStringList buttons;
    for (const auto* button : named(window, "Notices")->findChildren<QPushButton*>()) { buttons << button->text(); }
    EXPECT_EQ(buttons, (QStringList{"Show Its Folder"}));
}

TEST_F(Windows, ProfilesThatDoNotFitAreToldWithAWayOut) {
    audio.setOutputs({{1, "pair", "Pair", 2}});
    const auto profile = [this](size_t i) { return model.settings().value().profiles[i].id; };
    model.player().listening().selectProfile(profile(0));
    MainWindow window(model);
    auto* notices = named(window, "Notices");
    const auto button = [&](const QString& text) {
        for (auto* each : notices->findChildren<QPushButton*>()) {
            if (each->text() == text) { return each; }
        }
        return static_cast<QPushButton*>(nullptr);
    };
    EXPECT_TRUE(button("Edit…"));
    ASSERT_TRUE(button("Use Nearfield"));
    button("Use Nearfield")->click();
    EXPECT_EQ(model.settings().value().activeProfileID, profile(1));
    EXPECT_TRUE(notices->isHidden());
    for (const auto& [state, hidden] :
         {std::pair(SoundServer::silent, false), {SoundServer::running, true}, {SoundServer::absent, false}}) {
        audio.setServer(state);
        loop.drain();
        EXPECT_EQ(notices->isHidden(), hidden);
    }
}

TEST_F(Windows, TheLibraryTabListsAddsRescansAndRemoves) {
    const std::string one = folder / "one";
    const std::string two = folder / "two";
    for (const auto& root : {one, two}) { std::filesystem::create_directories(root); }
    const auto settings = makeSettings();
    settings->show();
    settings->findChild<QTabWidget*>()->setCurrentIndex(2);
    for (const auto& root : {one, two}) { model.library().roots().add(root); }
    const auto button = [&](const std::string& text) {
        return named<QPushButton>(*settings, QString::fromStdString(text));
    };
    button("Add Folder…")->click();
    EXPECT_EQ(asked, 1);
    ASSERT_TRUE(settle([&] { return model.library().roots().indexing().empty(); }));
    button("Rescan All")->click();
    EXPECT_EQ(model.library().roots().indexing().size(), 2);
    button("Remove " + one)->click();
    EXPECT_EQ(model.settings().value().libraryRoots, std::vector{two});
}

TEST_F(Windows, AStartByTheSessionOpensNoneUntilTheUserAsks) {
    EXPECT_TRUE(StartArguments::isResident("/usr/bin/brindlehum-resident"));
    EXPECT_FALSE(StartArguments::isResident("/usr/bin/brindlehum"));
    const AppWindows windows(model, true);
    const auto* window = topLevel<MainWindow>();
    ASSERT_TRUE(window);
    model.open(StartRequest{{}, {}, StartAim::stayQuiet});
    EXPECT_FALSE(window->isVisible()) << "neither the first nor a later start by the session";
    model.open({});
    EXPECT_TRUE(window->isVisible());
}

TEST_F(Windows, TheSwitchOfTheSessionFollowsItsFile) {
    const std::filesystem::path entry = folder / "autostart/brindlehum.desktop";
    SessionSettings settings(entry);
    auto* box = settings.findChild<QCheckBox*>();
    box->click();
    EXPECT_TRUE(std::filesystem::exists(entry));
    std::filesystem::remove(entry);
    EXPECT_TRUE(settle([&] { return !box->isChecked(); }));
    box->click();
    std::ofstream(entry, std::ios::app) << "Hidden=true\n";
    EXPECT_TRUE(settle([&] { return !box->isChecked(); })) << "a desktop's tool has switched it off";
    std::filesystem::remove_all(entry.parent_path());
    std::ofstream(entry.parent_path()) << "no folder";
    box->click();
    EXPECT_FALSE(box->isChecked());
    EXPECT_FALSE(settings.findChild<QLabel*>()->text().isEmpty()) << "it says why";
}

TEST_F(Windows, TheManualOpensItsPagesByLinkAndFindsWords) {
    ManualWindow window;
    window.show();
    auto* contents = window.findChild<QListWidget*>();
    EXPECT_GE(contents->count(), 13);
    for (int row = 0; row < contents->count(); ++row) {
        contents->setCurrentRow(row);
        EXPECT_FALSE(contents->item(row)->text().isEmpty());
        EXPECT_GT(window.browser().toPlainText().size(), 200) << contents->item(row)->text().toStdString();
        QStringList links;
        for (QTextBlock block = window.browser().document()->begin(); block.isValid(); block = block.next()) {
            for (auto part = block.begin(); !part.atEnd(); ++part) {
                const QTextCharFormat format = part.fragment().charFormat();
                const QString picture = format.isImageFormat() ? format.toImageFormat().name() : QString();
                if (!picture.isEmpty()) {
                    const QVariant image = window.browser().loadResource(QTextDocument::ImageResource, picture);
                    EXPECT_FALSE(image.value<QImage>().isNull()) << picture.toStdString();
                } else if (format.isAnchor()) {
                    links << format.anchorHref();
                }
            }
        }
        for (const QString& link : links) {
            contents->setCurrentRow(row);
            window.browser().setSource(link);
            EXPECT_NE(contents->currentRow(), row) << link.toStdString();
        }
    }
    contents->setCurrentRow(0);
    EXPECT_TRUE(settle([&] { return !window.browser().isStale(); })) << "a page isn't made again and again";
    EXPECT_GT(window.browser().find("sound", false), 3);
    const int first = window.browser().textCursor().position();
    window.browser().find("sound", false);
    EXPECT_GT(window.browser().textCursor().position(), first);
    window.browser().find("sound", true);
    EXPECT_EQ(window.browser().textCursor().position(), first);
    QTest::keyClick(&window, Qt::Key_F, Qt::ControlModifier);
    QTest::keyClicks(window.findChild<QLineEdit*>(), "no such word");
    EXPECT_TRUE(window.findChild<QLabel*>()->text() == "Not on this page");
}

TEST_F(Windows, MenuEntriesCallTheirModels) {
    ASSERT_TRUE(load(file("menu.wav", 2)));
    AppWindows windows(model);
    auto* window = topLevel<MainWindow>();
    ASSERT_TRUE(window);
    for (const auto& [text, keys] : {std::pair("Play / Stop", "Ctrl+Return"),
                                     {"Clear Selection", "Ctrl+D"},
                                     {"Quit", "Ctrl+Q"},
                                     {"Find", "Ctrl+F"},
                                     {"Add Library Folder…", "Ctrl+O"}}) {
        EXPECT_EQ(entry(*window, text)->shortcut(), QKeySequence(keys));
    }
    entry(*window, "Expert Mode")->trigger();
    EXPECT_TRUE(model.settings().value().expertMode);
    entry(*window, "Toggle Loop")->trigger();
    EXPECT_TRUE(player.transport().loop());
    entry(*window, "Play / Stop")->trigger();
    EXPECT_TRUE(loop.runUntil([&] { return player.isPlaying(); }));
    const auto* head = window->browser().table().header();
    for (const int expected : {int(BrowserTableModel::Length), int(BrowserTableModel::Length), -1}) {
        entry(*window, "Sort by Length")->trigger();
        EXPECT_EQ(head->sortIndicatorSection(), expected) << "up, down, and back to the order as given";
    }
    player.transport().select(FrameRange{0, 9000});
    entry(*window, "Clear Selection")->trigger();
    EXPECT_FALSE(player.transport().selection());
    entry(*window, "Nearfield")->trigger();
    EXPECT_EQ(model.settings().activeProfile().name, "Nearfield");
    entry(*window, "Settings…")->trigger();
    ASSERT_TRUE(topLevel<SettingsWindow>());
    EXPECT_TRUE(topLevel<SettingsWindow>()->isVisible());
    window->close();
    model.openWindow("main");
    EXPECT_TRUE(window->isVisible()) << "the application stays when its window closes";
}

TEST_F(Windows, TheRenameDialogShowsEveryNameAndWhyAFileKeepsIts) {
    using enum UCSRename::Verdict;
    const UCSRenames files = {{"/s/a.wav", "/s/WIND_A.wav", renames},
                              {"/s/b.wav", "/s/WIND_A.wav", nameTwice},
                              {"/s/WIND_C.wav", "/s/WIND_C.wav", alreadyNamed},
                              {"/s/d.wav", {}, noCatID}};
    RenameDialog dialog(files, true);
    dialog.show();
    QStringList lines;
    for (const auto* label : dialog.findChildren<QLabel*>()) { lines << label->text(); }
    EXPECT_TRUE(lines.contains("Rename 1 file to its UCS name?")) << lines.join('|').toStdString();
    EXPECT_TRUE(lines.contains("1 is already so named, 2 can't be renamed."));
    EXPECT_TRUE(lines.contains("Metadata edits that aren't saved yet are not in these names."));
    const auto* list = dialog.findChild<QTreeWidget*>();
    QStringList notes;
    for (int row = 0; row < list->topLevelItemCount(); ++row) { notes << list->topLevelItem(row)->text(2); }
    EXPECT_EQ(notes, (QStringList{"", "A file above gets this name", "Already so named", "Has no CatID"}));
    EXPECT_TRUE(named<QPushButton>(dialog, "Rename")->isEnabled());
    const RenameDialog idle({files[3]}, false);
    EXPECT_FALSE(named<QPushButton>(idle, "Rename")->isEnabled());
}

TEST_F(Windows, FitAScreenAt200Percent) {
    ASSERT_TRUE(load(file("field_ambix.wav", 4)));
    model.settings().change([](AppSettings& settings) { settings.expertMode = true; });
    MainWindow window(model);
    window.openPath(file("field_ambix.wav", 4));
    window.show();
    const auto settings = makeSettings();
    settings->show();
    const QSize screen(800, 460);  // 1600 x 1000 at 200 %, without title bars and a panel
    for (const QWidget* each : {static_cast<QWidget*>(&window), static_cast<QWidget*>(settings.get())}) {
        const QSize least = each->minimumSizeHint();
        EXPECT_TRUE(least.width() <= screen.width() && least.height() <= screen.height())
            << each->windowTitle().toStdString() << " " << least.width() << " x " << least.height();
    }
}

TEST_F(Windows, DropDownsShowAllTheirRowsAndCaptionsGoToTheirFields) {
    const AppWindows windows(model);
    model.openWindow("settings");
    auto* settings = topLevel<SettingsWindow>();
    ASSERT_TRUE(settings);
    int choices = 0;
    for (auto* choice : settings->findChildren<QComboBox*>()) {
        if (!choice->isVisible()) { continue; }
        choice->showPopup();
        const QRect last = choice->view()->visualRect(choice->model()->index(choice->count() - 1, 0));
        EXPECT_GT(last.height(), 0);
        const bool isLong = last.height() * choice->count() > choice->screen()->size().height() / 3;
        const bool allSeen = choice->view()->viewport()->rect().contains(last);
        choice->hidePopup();
        if (isLong) { continue; }  // it scrolls where neither above nor below the field is room for it
        ++choices;
        EXPECT_TRUE(allSeen) << choice->accessibleName().toStdString();
    }
    EXPECT_GE(choices, 3);
    int captions = 0;
    for (auto* label : topLevel<MainWindow>()->inspector().findChildren<QLabel*>()) {
        if (!label->buddy()) { continue; }
        ++captions;
        EXPECT_TRUE(label->text().contains('&')) << label->text().toStdString();
        QTest::mouseClick(label, Qt::LeftButton);
        EXPECT_EQ(topLevel<MainWindow>()->focusWidget(),
                  label->buddy()->focusProxy() ? label->buddy()->focusProxy() : label->buddy());
    }
    EXPECT_EQ(captions, 16);
}

TEST_F(Windows, RecentFilesAreTheLatestOpenedThatStillExist) {
    AppWindows windows(model);
    auto* window = topLevel<MainWindow>();
    for (int i = 0; i < 15; ++i) { window->openPath(file("take " + std::to_string(i) + ".wav", 1)); }
    window->openPath(file("take 9.wav", 1));
    window->openPath(file("not \xE9.wav", 1));
    std::filesystem::remove(file("take 14.wav", 1));
    const auto files = window->recentFiles().files();
    ASSERT_EQ(files.size(), RecentFiles::maxFiles - 1);
    EXPECT_EQ(files[0].filename(), "not \xE9.wav");
    EXPECT_EQ(files[1].filename(), "take 9.wav");
    EXPECT_EQ(files.back().filename(), "take 4.wav");
}

TEST_F(Windows, ClosingTheOnlyWindowStopsTheSoundWhereNoTrayCan) {
    ASSERT_TRUE(load(file("close.wav", 2)));
    MainWindow window(model);
    for (const bool tray : {true, false}) {
        window.hasTray = [tray] { return tray; };
        window.show();
        player.play(std::nullopt);
        ASSERT_TRUE(loop.runUntil([&] { return player.isPlaying(); }));
        window.close();
        EXPECT_EQ(player.isPlaying(), tray);
    }
}

TEST_F(Windows, EscapeClosesADropDownBeforeTheSettings) {
    const auto settings = makeSettings();
    settings->show();
    auto* choice = settings->findChild<QComboBox*>();
    ASSERT_TRUE(choice);
    choice->showPopup();
    ASSERT_TRUE(settle([&] { return QApplication::activePopupWidget(); }));
    const auto escape = [&] {
        QKeyEvent press(QEvent::KeyPress, Qt::Key_Escape, {});
        QApplication::sendEvent(settings.get(), &press);
    };
    escape();
    EXPECT_FALSE(QApplication::activePopupWidget());
    EXPECT_TRUE(settings->isVisible());
    escape();
    EXPECT_FALSE(settings->isVisible());
}

TEST_F(Windows, NoticesOfTheFileManagerHelpByAClickAndLeaveWithThePanel) {
    using Outcome = SelectionReading::Outcome;
    session.watch.trusted = false;
    session.watch.front = true;
    session.watch.outcome = Outcome::denied;
    AppModel denied{{loop, audio, defaults, session, folder / "Other.sqlite", folder / "other"}};
    MainWindow window(denied);
    const auto shows = [&](const char* words) {
        const auto labels = window.findChildren<QLabel*>();
        return std::ranges::any_of(labels, [&](const QLabel* label) { return label->text().contains(words); });
    };
    denied.start(0);
    EXPECT_TRUE(shows("Allow Accessibility so Space plays"));
    named<QPushButton>(window, "Turn On Accessibility")->click();
    EXPECT_EQ(session.watch.clicks, 1);
    session.watch.trusted = true;
    loop.advance(2);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_FALSE(shows("Allow Accessibility"));
    EXPECT_TRUE(shows("can't read the file manager's selection"));
    session.grab.refused = true;
    session.grab.heard.refusal();
    named<QPushButton>(window, "Leave Space Alone")->click();
    EXPECT_FALSE(denied.settings().value().spacePlaysInFinder);
    denied.settings().change([](AppSettings& s) { s.finderPanel = false; });
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_FALSE(shows("file manager"));
}

// Within a window, or one of its widgets that has the focus, a key means one thing.
TEST_F(Windows, NoTwoShortcutsOfAWindowAreTheSame) {
    AppWindows windows(model);
    for (const char* id : {"editor", "monitor", "settings"}) { windows.open(id); }
    size_t seen = 0;
    for (const auto* window : QApplication::topLevelWidgets()) {
        std::map<QString, QStringList> owners;  // by key
        for (const auto* action : window->findChildren<QAction*>()) {
            if (action->shortcutContext() == Qt::WidgetShortcut) { continue; }
            for (const auto& key : action->shortcuts()) { owners[key.toString()] << action->text(); }
        }
        for (const auto* shortcut : window->findChildren<QShortcut*>()) {
            if (shortcut->context() == Qt::WidgetShortcut) { continue; }
            owners[shortcut->key().toString()] << "of " + shortcut->parent()->objectName();
        }
        for (const auto& [key, who] : owners) {
            EXPECT_EQ(who.size(), 1) << key.toStdString() << ": " << who.join(", ").toStdString();
        }
        seen += owners.size();
    }
    EXPECT_GT(seen, 40U);
}

TEST_F(Windows, SoundIsOpenedInTheEditorFromMenuAndPlayerAlike) {
    AppWindows windows(model);
    const auto sound = file("a.wav", 2);
    auto& main = *topLevel<MainWindow>();
    model.editLoaded();
    EXPECT_FALSE(model.editor().document().doc()) << "without a sound";
    ASSERT_TRUE(load(sound));
    named<QToolButton>(main, "Open in the editor")->click();
    EXPECT_TRUE(
        settle([&] { return model.editor().document().doc() && model.editor().document().doc()->url == sound; }));
}

TEST_F(Windows, MenusAndSettingsAreOneState) {
    StatusMenu status(model, [] {});
    MainWindow window(model);
    const auto settings = makeSettings();
    const struct {
        const char* menu;
        const char* box;
        bool AppSettings::*field;
    } switches[] = {
        {"Auto-Play", "Auto-play when the selection changes", &AppSettings::autoPlay},
        {"Space Plays in File Manager", "Space plays audio files instead of the preview",
         &AppSettings::spacePlaysInFinder},
        {"File Manager Panel", "Show the audition panel under file-manager windows", &AppSettings::finderPanel}};
    for (const auto& one : switches) {
        auto* box = named<QCheckBox>(*settings, one.box);
        ASSERT_TRUE(box) << one.box;
        const bool before = model.settings().value().*one.field;
        entry(status.menu(), one.menu)->trigger();
        EXPECT_EQ(model.settings().value().*one.field, !before) << one.menu;
        EXPECT_EQ(box->isChecked(), !before);
        EXPECT_EQ(entry(window, one.menu)->isChecked(), !before);
        box->click();
        EXPECT_EQ(entry(status.menu(), one.menu)->isChecked(), before);
    }
    entry(status.menu(), "Nearfield")->trigger();
    EXPECT_EQ(model.settings().activeProfile().name, "Nearfield");
}

}  // namespace
}  // namespace brindlehum
