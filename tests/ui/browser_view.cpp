// The browser over a real library: auditioning by keys, searching as one types, facets, and metadata that is edited.
#include <QAbstractItemView>
#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>
#include <QToolButton>
#include <fstream>

#include "library/meta/meta_io.h"
#include "ui/browser/browser_bar.h"
#include "ui/browser/browser_table.h"
#include "ui/browser/browser_view.h"
#include "ui/inspector/inspector_view.h"
#include "ui/inspector/star_row.h"
#include "ui/look/text_field.h"
#include "ui/sidebar/sidebar_view.h"
#include "ui/window/main_window.h"
#include "window_fixture.h"

namespace brindlehum {
namespace {

struct Browser : test::WindowTest {
    LibraryModel& library = model.library();
    std::filesystem::path root = folder / "lib";
    MainWindow window{model};
    BrowserTable& table = window.browser().table();
    QLineEdit& field = window.browser().bar().field();
    InspectorView& inspector = window.inspector();

    Browser() {
        window.resize(1300, 900);
        window.show();
        QApplication::setActiveWindow(&window);
        std::filesystem::create_directories(root / "inner");
    }
    // A sound in the library with this description and library name.
    std::filesystem::path sound(const std::string& name, const std::string& description,
                                const std::string& lib = "Storms") {
        const auto path = file("lib/" + name, 1);
        SoundMeta meta;
        meta.description = description;
        meta.category = "WEATHER";
        meta.library = lib;
        MetaIO::write(meta, path);
        return path;
    }
    bool index() {
        library.roots().add(root);
        window.openPath(root);
        return idle();
    }
    bool idle() {
        return settle(
            [&] { return !library.isBusy() && library.roots().indexing().empty() && !inspector.isLoading(); });
    }
    bool found(const QStringList& expected) {
        loop.advance(LibrarySearch::debounceSeconds);
        return settle([&] { return !library.search().isRunning() && names() == expected; });
    }
    QStringList names() {
        QStringList all;
        for (int row = 0; row < table.rows().rowCount(); ++row) {
            all << QString::fromStdString(table.rows().entry(row).url.filename());
        }
        return all;
    }
    bool plays(const std::filesystem::path& path) {
        return settle(
            [&] { return player.sound().info() && player.sound().info()->url == path && player.isPlaying(); });
    }
    bool says(const QString& text) {
        return std::ranges::any_of(window.findChildren<QLabel*>(), [&](const QLabel* label) {
            return label->isVisible() && label->text().contains(text);
        });
    }
    QPlainTextEdit& description() { return *qobject_cast<QPlainTextEdit*>(&inspector.field("DESCRIPTION").editor()); }
    QModelIndex sidebarRow(int section, int row) {
        auto& rows = window.sidebar().rows();
        return rows.index(row, 0, rows.section(section));
    }
    void clickSidebar(int section, int row) {
        auto& tree = window.sidebar().tree();
        const QModelIndex index = sidebarRow(section, row);
        tree.scrollTo(index);
        QTest::mouseClick(tree.viewport(), Qt::LeftButton, {}, tree.visualRect(index).center());
    }
};

TEST_F(Browser, KeysAuditionTheListWithNumbersByValue) {
    model.settings().change([](AppSettings& settings) { settings.autoPlay = true; });
    const auto first = sound("take2.wav", "");
    const auto second = sound("Take10.wav", "");
    std::ofstream(root / "notes.txt") << "x";
    ASSERT_TRUE(index());
    EXPECT_EQ(names(), (QStringList{"inner", "take2.wav", "Take10.wav"}));
    table.setFocus();
    QTest::keyClick(&table, Qt::Key_Down);
    ASSERT_EQ(table.selectedEntries().size(), 1);
    EXPECT_EQ(table.selectedEntries()[0].url, root / "inner") << "the first row, without a click";
    QTest::keyClick(&table, Qt::Key_Down);
    EXPECT_TRUE(plays(first));
    QTest::keyClick(&table, Qt::Key_Down);
    EXPECT_TRUE(plays(second));
    QTest::keyClick(&table, Qt::Key_Space);
    EXPECT_FALSE(player.isPlaying());
    QTest::keyClick(&table, Qt::Key_Up, Qt::ShiftModifier);
    EXPECT_EQ(table.selectedEntries().size(), 2);
    ASSERT_TRUE(idle());
    EXPECT_EQ(player.sound().info()->url, second) << "several rows load nothing";
    model.settings().change([](AppSettings& settings) { settings.autoPlay = false; });
    table.mark(first);
    QTest::keyClick(&table, Qt::Key_Return);
    EXPECT_TRUE(plays(first)) << "Return plays without auto-play, too";
    table.selectFirst();
    QTest::keyClick(&table, Qt::Key_Return);
    EXPECT_EQ(library.listing().folder(), root / "inner");
    named<QToolButton>(window, "Enclosing folder")->click();
    EXPECT_EQ(library.listing().folder(), root);
}

TEST_F(Browser, LettersSearchHeadsSortAndEscapeReturnsToTheFolder) {
    sound("b.wav", "Thunder far");
    sound("a.wav", "Thunder thunder near");
    sound("c.wav", "Rain");
    ASSERT_TRUE(index());
    table.setFocus();
    QTest::keyClicks(&table, "thu");
    EXPECT_EQ(field.text(), "thu");
    EXPECT_TRUE(says("Searching…"));
    loop.advance(LibrarySearch::debounceSeconds);
    ASSERT_TRUE(settle([&] { return says("2 results"); }));
    const QStringList ranked = names();
    QTest::keyClick(&field, Qt::Key_Down);
    ASSERT_EQ(table.selectedEntries().size(), 1);
    EXPECT_EQ(table.selectedEntries()[0].url.filename().string(), ranked[0].toStdString());
    for (const QStringList& expected : {QStringList{"a.wav", "b.wav"}, QStringList{"b.wav", "a.wav"}, ranked}) {
        table.sortBy(BrowserTableModel::Name);
        EXPECT_EQ(names(), expected);
    }
    table.sortBy(BrowserTableModel::Name);
    QTest::keyClick(&field, Qt::Key_Escape);
    EXPECT_FALSE(library.search().isSearching());
    EXPECT_TRUE(table.hasFocus());
    ASSERT_TRUE(settle([&] { return names().size() == 4; }));
    library.search().setQuery("nothing like this");
    loop.advance(LibrarySearch::debounceSeconds);
    ASSERT_TRUE(settle([&] { return says("No results for “nothing like this”"); }));
    named<QPushButton>(window, "Clear Search")->click();
    EXPECT_FALSE(library.search().isSearching());
    EXPECT_EQ(field.text(), "");
}

TEST_F(Browser, FacetsToggleAndTheirChipsClearThem) {
    sound("a.wav", "one", "Storms");
    sound("b.wav", "two", "Rains");
    ASSERT_TRUE(index());
    clickSidebar(SidebarRows::Categories, 0);
    EXPECT_EQ(library.search().category(), "WEATHER");
    library.search().setLibraryFilter("Storms");
    ASSERT_TRUE(found({"a.wav"}));
    EXPECT_TRUE(window.sidebar().rows().row(sidebarRow(SidebarRows::Categories, 0))->selected);
    named<QToolButton>(window, "Clear library Storms")->click();
    ASSERT_TRUE(found({"a.wav", "b.wav"}));
    EXPECT_EQ(library.search().category(), "WEATHER");
    clickSidebar(SidebarRows::Categories, 0);
    EXPECT_FALSE(library.search().category()) << "the chosen facet clears itself";
    library.search().setQuery("one");
    library.search().setCategory("WEATHER");
    clickSidebar(SidebarRows::Library, 0);
    EXPECT_FALSE(library.search().isSearching()) << "a root ends the search";
    EXPECT_EQ(library.listing().folder(), root);
}

TEST_F(Browser, WithoutACatalogCellsAreProbedAndFacetsAreHidden) {
    const auto path = sound("plain.wav", "unseen");
    std::ofstream(folder / "blocked") << "x";
    AppModel lame{{loop, audio, defaults, session, folder / "blocked" / "Catalog.sqlite"}};
    MainWindow bare(lame);
    bare.resize(1300, 900);
    bare.show();
    bare.openPath(root);
    EXPECT_TRUE(bare.sidebar().tree().isRowHidden(SidebarRows::Categories, {}));
    auto& rows = bare.browser().table().rows();
    EXPECT_TRUE(
        settle([&] { return rows.rowCount() == 2 && rows.index(1, BrowserTableModel::Length).data() == "0:01.000"; }));
    EXPECT_EQ(rows.index(1, BrowserTableModel::Format).data().toString().toStdString(),
              AudioFileInfo::load(path).summary());
}

TEST_F(Browser, ANewFileAppearsAndLeavesTheSelectionAlone) {
    model.settings().change([](AppSettings& settings) { settings.autoPlay = true; });
    const auto path = sound("b.wav", "kept");
    ASSERT_TRUE(index());
    ASSERT_TRUE(table.mark(path));
    sound("a.wav", "new");
    ASSERT_TRUE(settle([&] { return table.rows().rowCount() == 3; }));
    ASSERT_EQ(table.selectedEntries().size(), 1);
    EXPECT_EQ(table.selectedEntries()[0].url, path);
    EXPECT_FALSE(player.sound().info()) << "what the user didn't choose isn't played";
    window.browser().actions().copyPath({path, root / "a.wav"});
    EXPECT_EQ(QGuiApplication::clipboard()->text().toStdString(), path.string() + "\n" + (root / "a.wav").string());
}

TEST_F(Browser, FocusReturnsToTheTableOnceItHasRowsAgain) {
    sound("a.wav", "x");
    std::filesystem::create_directories(root / "empty");
    library.listing().open(root / "empty");
    table.setFocus();
    ASSERT_TRUE(idle());
    EXPECT_TRUE(field.hasFocus()) << "an empty table isn't shown";
    library.listing().open(root);
    ASSERT_TRUE(idle());
    EXPECT_TRUE(table.hasFocus());
}

TEST_F(Browser, AFileOpenedFromOutsideIsNeverEditedAsTheRowSelectedBefore) {
    const auto old = sound("old.wav", "Old");
    ASSERT_TRUE(index());
    table.mark(old);
    ASSERT_TRUE(idle());
    const auto fresh = sound("fresh.wav", "Fresh");  // younger than the list
    model.open({{fresh}, {}});
    ASSERT_TRUE(settle([&] {
        const auto& info = player.sound().info();
        const bool loaded = info && info->url == fresh;
        const auto rows = table.selectedEntries();
        EXPECT_TRUE(!loaded || rows.empty() || rows[0].url == fresh) << "two files at once";
        return loaded && rows.size() == 1;
    }));
    ASSERT_TRUE(idle());
    EXPECT_EQ(inspector.urls(), std::vector{fresh});
    EXPECT_EQ(inspector.field("DESCRIPTION").text(), "Fresh");
}

TEST_F(Browser, TheInspectorSavesWhatWasEditedIntoEveryFile) {
    const auto one = sound("one.wav", "Rain", "Storms");
    const auto two = sound("two.wav", "Rain", "Weather");
    ASSERT_TRUE(index());
    table.mark(one);
    QTest::keyClick(&table, Qt::Key_Down, Qt::ShiftModifier);
    ASSERT_TRUE(idle());
    EXPECT_TRUE(named(window, "2 files"));
    EXPECT_EQ(inspector.field("DESCRIPTION").text(), "Rain");
    EXPECT_EQ(qobject_cast<QLineEdit*>(&inspector.field("LIBRARY").editor())->placeholderText(), "Mixed");
    auto* save = named<QPushButton>(inspector, "Save");
    const auto entries = window.findChildren<QAction*>();
    const auto inMenu = std::ranges::find(entries, "Save Metadata", &QAction::text);
    ASSERT_NE(inMenu, entries.end());
    EXPECT_FALSE(save->isEnabled() || (*inMenu)->isEnabled());
    description().setPlainText("Rain on tin");
    EXPECT_TRUE((*inMenu)->isEnabled());
    auto* stars = inspector.findChild<StarRow*>();
    QTest::mouseClick(stars, Qt::LeftButton, {}, stars->starRect(4).center());
    (*inMenu)->trigger();
    EXPECT_FALSE(save->isEnabled() || (*inMenu)->isEnabled());
    ASSERT_TRUE(idle());
    for (const auto& [path, lib] : {std::pair(one, "Storms"), std::pair(two, "Weather")}) {
        const SoundMeta meta = MetaIO::read(path);
        EXPECT_EQ(meta.description, "Rain on tin");
        EXPECT_EQ(meta.rating, 4);
        EXPECT_EQ(meta.library, lib);
    }
    EXPECT_TRUE(says("Saved metadata to 2 files"));
}

TEST_F(Browser, AnEntryOfTheUCSListFillsItsThreeFields) {
    const auto path = sound("one.wav", "Bark");
    ASSERT_TRUE(index());
    table.mark(path);
    ASSERT_TRUE(idle());
    auto* line = qobject_cast<QLineEdit*>(&inspector.field("CATID").editor());
    QTest::keyClicks(line, "puppy");
    auto* list = qobject_cast<QAbstractItemView*>(QApplication::activePopupWidget());
    ASSERT_TRUE(list);
    EXPECT_EQ(list->model()->index(0, 0).data(), "ANMLDog - ANIMALS / DOG");
    EXPECT_TRUE(says("Not in the UCS list"));
    QTest::keyClick(list, Qt::Key_Down);
    EXPECT_EQ(line->text(), "puppy") << "a look through the list changes nothing";
    QTest::keyClick(list, Qt::Key_Return);
    EXPECT_FALSE(QApplication::activePopupWidget());
    EXPECT_FALSE(says("Not in the UCS list"));
    for (const auto& [tag, text] : {std::pair("CATID", "ANMLDog"), {"CATEGORY", "ANIMALS"}, {"SUBCATEGORY", "DOG"}}) {
        EXPECT_EQ(inspector.field(tag).text(), text);
    }
    inspector.save();
    ASSERT_TRUE(idle());
    EXPECT_EQ(MetaIO::read(path).subCategory, "DOG");
}

TEST_F(Browser, UnsavedEditsOutliveAChangeOfTheSelection) {
    const auto one = sound("one.wav", "First");
    const auto two = sound("two.wav", "Second");
    ASSERT_TRUE(index());
    const auto select = [&](const std::filesystem::path& path) {
        table.mark(path);
        return idle();
    };
    ASSERT_TRUE(select(one));
    description().setPlainText("Changed");
    ASSERT_TRUE(select(two));
    EXPECT_EQ(inspector.urls(), std::vector{one}) << "the form stays with its file";
    EXPECT_EQ(inspector.field("DESCRIPTION").text(), "Changed");
    named<QPushButton>(window, "Save the edits and go on")->click();
    ASSERT_TRUE(idle());
    EXPECT_EQ(MetaIO::read(one).description, "Changed");
    EXPECT_EQ(inspector.urls(), std::vector{two});
    EXPECT_EQ(inspector.field("DESCRIPTION").text(), "Second");
    description().setPlainText("Never");
    inspector.askUnsaved = [] { return InspectorView::Unsaved::keep; };
    inspector.settleEdits([] { ADD_FAILURE() << "the application stays"; });
    ASSERT_TRUE(select(one));
    named<QPushButton>(window, "Discard the edits and go on")->click();
    ASSERT_TRUE(idle());
    EXPECT_EQ(inspector.field("DESCRIPTION").text(), "Changed");
    EXPECT_EQ(MetaIO::read(two).description, "Second");
}

TEST_F(Browser, WordsOfAFailedSaveStayWithTheReasonUntilTheyAreSaved) {
    const auto one = sound("one.wav", "First");
    const auto bad = root / "bad.wav";
    const auto other = sound("other.wav", "Other");
    ASSERT_TRUE(index());
    std::ofstream(bad) << "RIFX no wave";
    ASSERT_TRUE(settle([&] { return table.rows().rowOf(bad) >= 0; }));
    table.mark(bad);
    for (int i = 0; i < 2; ++i) { QTest::keyClick(&table, Qt::Key_Down, Qt::ShiftModifier); }
    ASSERT_TRUE(idle());
    ASSERT_EQ(inspector.urls(), (std::vector{bad, one, other}));
    description().setPlainText("Typed");
    inspector.save();
    table.mark(other);  // the user goes on at once
    ASSERT_TRUE(idle());
    EXPECT_EQ(MetaIO::read(one).description, "Typed");
    EXPECT_EQ(inspector.urls(), std::vector{bad}) << "of the file that failed";
    EXPECT_EQ(inspector.field("DESCRIPTION").text(), "Typed");
    EXPECT_TRUE(says("Couldn't save bad.wav: Not a WAV file Brindlehum can write"));
    bool settled = false;
    inspector.askUnsaved = [] { return InspectorView::Unsaved::save; };
    inspector.settleEdits([&] { settled = true; });
    ASSERT_TRUE(idle());
    EXPECT_FALSE(settled) << "the application stays, since the save failed again";
    QString losses;
    bool answer = false;
    window.confirmRemoval = [&](const QString&, const QString& text) { return losses = text, answer; };
    library.roots().askToRemove(root.string());
    ASSERT_TRUE(idle());
    EXPECT_TRUE(losses.contains("aren't saved yet"));
    EXPECT_EQ(model.settings().value().libraryRoots.size(), 1);
    std::filesystem::remove(bad);
    std::filesystem::copy(one, bad);
    named<QPushButton>(window, "Try again to save the edits")->click();
    ASSERT_TRUE(idle());
    EXPECT_EQ(MetaIO::read(bad).description, "Typed");
    EXPECT_EQ(inspector.urls(), std::vector{other});
    inspector.settleEdits([&] { settled = true; });
    EXPECT_TRUE(settled);
    losses.clear();
    library.roots().askToRemove(root.string());
    ASSERT_TRUE(idle());
    EXPECT_EQ(losses, "") << "nothing to lose, nothing to ask";
    EXPECT_TRUE(model.settings().value().libraryRoots.empty());
}

TEST_F(Browser, RemovingAFolderAsksForWordsThatOnlyTheCatalogHolds) {
    const auto path = file("lib/a.caf", 1, {test::FileKind::caf});
    ASSERT_TRUE(index());
    library.edits().save({{{"DESCRIPTION", "wind"}}, std::nullopt}, {path});
    ASSERT_TRUE(idle());
    QString losses;
    window.confirmRemoval = [&](const QString&, const QString& text) { return losses = text, false; };
    library.roots().askToRemove(root.string());
    ASSERT_TRUE(idle());
    EXPECT_TRUE(losses.contains("only in the catalog")) << losses.toStdString();
    EXPECT_EQ(model.settings().value().libraryRoots.size(), 1);
}

TEST_F(Browser, RenamingShowsTheNamesFirstAndTheFileStaysChosenAndLoaded) {
    const auto path = sound("old.wav", "x");
    SoundMeta meta = MetaIO::read(path);
    meta.catID = "WTHRain";
    meta.fxName = "Rain On Tin";
    MetaIO::write(meta, path);
    ASSERT_TRUE(index());
    ASSERT_TRUE(load(path));
    field.setText("old");
    ASSERT_TRUE(found({"old.wav"}));
    table.mark(path);
    ASSERT_TRUE(idle());
    auto* rename = named<QPushButton>(inspector, "Rename to UCS…");
    EXPECT_FALSE(rename->isVisible());
    model.settings().change([](AppSettings& settings) { settings.expertMode = true; });
    EXPECT_TRUE(rename->isVisible());
    bool answer = false;
    const auto renamed = root / "WTHRain_Rain On Tin.wav";
    std::vector<std::filesystem::path> shown;
    window.confirmRename = [&](const UCSRenames& renames) {
        for (const auto& each : renames) { shown.push_back(each.to); }
        return answer;
    };
    rename->click();
    ASSERT_TRUE(idle());
    EXPECT_EQ(shown, std::vector{renamed});
    EXPECT_TRUE(std::filesystem::exists(path)) << "the user said no";
    answer = true;
    window.renameToUCS({path});
    ASSERT_TRUE(settle([&] { return player.sound().info() && player.sound().info()->url == renamed; }));
    EXPECT_FALSE(std::filesystem::exists(path));
    EXPECT_TRUE(library.search().isSearching()) << "the results stay";
    library.search().clearFilters();
    ASSERT_TRUE(idle());
    EXPECT_EQ(inspector.urls(), std::vector{renamed});
}

}  // namespace
}  // namespace brindlehum
