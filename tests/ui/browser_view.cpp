// The browser over a real library: auditioning by keys, searching as one types, facets, and metadata that is edited.
#include <QClipboard>
#include <QFocusEvent>
#include <QHeaderView>
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
#include "ui/look/elided_label.h"
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
        library.addRoot(root);
        window.openPath(root);
        return idle();
    }
    bool idle() {
        return settle([&] { return !library.isBusy() && library.indexing().empty() && !inspector.isLoading(); });
    }
    bool found(const QStringList& expected) {
        loop.advance(LibraryModel::debounceSeconds);
        return settle([&] { return !library.isSearchRunning() && names() == expected; });
    }
    QStringList names() {
        QStringList all;
        for (int row = 0; row < table.rows().rowCount(); ++row) {
            all << QString::fromStdString(table.rows().entry(row).url.filename());
        }
        return all;
    }
    bool plays(const std::filesystem::path& path) {
        return settle([&] { return player.info() && player.info()->url == path && player.isPlaying(); });
    }
    QString visibleText() {
        QStringList texts;
        for (const auto* label : window.findChildren<QLabel*>()) {
            if (label->isVisible()) { texts << label->text(); }
        }
        return texts.join('|');
    }
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

TEST_F(Browser, TheFolderShowsWithNumbersByValueAndKeysAuditionIt) {
    model.settings().change([](AppSettings& settings) { settings.autoPlay = true; });
    const auto first = sound("take2.wav", "");
    const auto second = sound("Take10.wav", "");
    std::ofstream(root / "notes.txt") << "x";
    ASSERT_TRUE(index());
    EXPECT_EQ(names(), (QStringList{"inner", "take2.wav", "Take10.wav"}));
    table.setFocus();
    EXPECT_FALSE(player.info()) << "focus alone chooses nothing";
    QTest::keyClick(&table, Qt::Key_Return);
    EXPECT_EQ(library.folder(), root) << "nothing is selected";
    table.selectFirst();
    QTest::keyClick(&table, Qt::Key_Down);
    EXPECT_TRUE(plays(first));
    QTest::keyClick(&table, Qt::Key_Down);
    EXPECT_TRUE(plays(second));
    QTest::keyClick(&table, Qt::Key_Space);
    EXPECT_FALSE(player.isPlaying());
    QTest::keyClick(&table, Qt::Key_Up, Qt::ShiftModifier);
    EXPECT_EQ(table.selectedEntries().size(), 2);
    EXPECT_TRUE(settle([&] { return !inspector.isLoading(); }));
    EXPECT_EQ(player.info()->url, second) << "several rows load nothing";
    model.settings().change([](AppSettings& settings) { settings.autoPlay = false; });
    table.mark(first);
    QTest::keyClick(&table, Qt::Key_Return);
    EXPECT_TRUE(plays(first)) << "Return plays whatever auto-play says";
    table.selectFirst();
    QTest::keyClick(&table, Qt::Key_Return);
    EXPECT_EQ(library.folder(), root / "inner");
    ASSERT_TRUE(idle());
    EXPECT_TRUE(visibleText().contains("No sounds in this folder"));
    window.browser().bar().findChild<QToolButton*>()->click();
    EXPECT_EQ(library.folder(), root);
}

TEST_F(Browser, LettersSearchEscapeComesBackAndHeadsSort) {
    sound("b.wav", "Thunder far");
    sound("a.wav", "Thunder thunder near");
    sound("c.wav", "Rain");
    ASSERT_TRUE(index());
    table.setFocus();
    QTest::keyClicks(&table, "thu");
    EXPECT_EQ(field.text(), "thu");
    EXPECT_TRUE(visibleText().contains("Searching…"));
    loop.advance(LibraryModel::debounceSeconds);
    ASSERT_TRUE(settle([&] { return table.rows().rowCount() == 2; }));
    const QStringList ranked = names();
    EXPECT_TRUE(visibleText().contains("2 results")) << visibleText().toStdString();
    QTest::keyClick(&field, Qt::Key_Down);
    EXPECT_EQ(table.selectedEntries().size(), 1);
    EXPECT_EQ(table.selectedEntries()[0].url.filename().string(), ranked[0].toStdString());
    for (const QStringList& expected : {QStringList{"a.wav", "b.wav"}, QStringList{"b.wav", "a.wav"}, ranked}) {
        table.sortBy(BrowserTableModel::Name);
        EXPECT_EQ(names(), expected);
    }
    table.sortBy(BrowserTableModel::Name);
    QTest::keyClick(&field, Qt::Key_Escape);
    EXPECT_FALSE(library.isSearching());
    EXPECT_TRUE(table.hasFocus());
    ASSERT_TRUE(settle([&] { return names().size() == 4; }));
    EXPECT_EQ(table.header()->sortIndicatorSection(), BrowserTableModel::unsorted) << "a search's sorting ends with it";
    library.setQuery("nothing like this");
    loop.advance(LibraryModel::debounceSeconds);
    ASSERT_TRUE(settle([&] { return visibleText().contains("No results for “nothing like this”"); }));
    for (auto* button : window.browser().findChildren<QPushButton*>()) {
        if (button->isVisible() && button->text() == "Clear Search") { button->click(); }
    }
    EXPECT_FALSE(library.isSearching());
    EXPECT_EQ(field.text(), "");
}

TEST_F(Browser, ASoundThatComesLateLeavesTheListWhereItIsByNow) {
    sound("a.wav", "Thunder far");
    ASSERT_TRUE(index());
    table.selectFirst();
    QTest::keyClick(&table, Qt::Key_Down);
    ASSERT_EQ(table.selectedEntries().size(), 1);
    ASSERT_FALSE(table.selectedEntries()[0].isFolder);
    library.open(root.parent_path());
    ASSERT_TRUE(settle([&] { return player.info().has_value(); }));
    EXPECT_EQ(library.folder(), root.parent_path());
}

TEST_F(Browser, FacetsToggleShowChipsAndAreClearedByThem) {
    sound("a.wav", "one", "Storms");
    sound("b.wav", "two", "Rains");
    ASSERT_TRUE(index());
    auto& tree = window.sidebar().tree();
    EXPECT_FALSE(tree.isRowHidden(SidebarRows::Categories, {}));
    clickSidebar(SidebarRows::Categories, 0);
    EXPECT_EQ(library.category(), "WEATHER");
    library.setLibraryFilter("Storms");
    ASSERT_TRUE(found({"a.wav"}));
    EXPECT_TRUE(window.sidebar().rows().row(sidebarRow(SidebarRows::Categories, 0))->selected);
    named<QToolButton>(window, "Clear library Storms")->click();
    EXPECT_FALSE(library.libraryFilter());
    EXPECT_EQ(library.category(), "WEATHER");
    ASSERT_TRUE(found({"a.wav", "b.wav"}));
    clickSidebar(SidebarRows::Categories, 0);
    EXPECT_FALSE(library.category()) << "the chosen facet clears itself";
    library.setQuery("one");
    library.setCategory("WEATHER");
    clickSidebar(SidebarRows::Library, 0);
    EXPECT_FALSE(library.isSearching()) << "a root takes every filter off";
    EXPECT_EQ(library.folder(), root);
    tree.setCurrentIndex(sidebarRow(SidebarRows::Places, 1));
    QTest::keyClick(&tree, Qt::Key_Return);
    EXPECT_EQ(library.folder(), library.places()[1]);
    const QModelIndex places = window.sidebar().rows().section(SidebarRows::Places);
    QTest::mouseClick(tree.viewport(), Qt::LeftButton, {}, tree.visualRect(places).center());
    EXPECT_FALSE(tree.isExpanded(places));
}

TEST_F(Browser, WithoutACatalogThereAreNoFacetsAndCellsFillInByThemselves) {
    const auto path = sound("plain.wav", "unseen");
    std::ofstream(folder / "blocked") << "x";
    AppModel lame{{loop, audio, defaults, desktop, folder / "blocked" / "Catalog.sqlite"}};
    MainWindow bare(lame);
    bare.resize(1300, 900);
    bare.show();
    bare.openPath(root);
    ASSERT_TRUE(settle([&] { return bare.browser().table().rows().rowCount() == 2; }));
    EXPECT_TRUE(bare.sidebar().tree().isRowHidden(SidebarRows::Categories, {}));
    auto& rows = bare.browser().table().rows();
    EXPECT_TRUE(settle([&] { return rows.index(1, BrowserTableModel::Length).data() == "0:01.000"; }));
    EXPECT_EQ(rows.index(1, BrowserTableModel::Format).data().toString().toStdString(),
              AudioFileInfo::load(path).summary());
}

TEST_F(Browser, ASelectionOutlivesWhatIsReadAnewAndPlaysNothing) {
    model.settings().change([](AppSettings& settings) { settings.autoPlay = true; });
    const auto path = sound("b.wav", "kept");
    ASSERT_TRUE(index());
    ASSERT_TRUE(table.mark(path));
    sound("a.wav", "new");
    ASSERT_TRUE(settle([&] { return table.rows().rowCount() == 3; })) << "another program's file appears";
    ASSERT_EQ(table.selectedEntries().size(), 1);
    EXPECT_EQ(table.selectedEntries()[0].url, path);
    EXPECT_FALSE(player.info());
    window.browser().actions().copyPath({path, root / "a.wav"});
    EXPECT_EQ(QGuiApplication::clipboard()->text().toStdString(), path.string() + "\n" + (root / "a.wav").string());
}

TEST_F(Browser, TheInspectorEditsManyFilesAndLeavesTheRestAlone) {
    const auto one = sound("one.wav", "Rain", "Storms");
    const auto two = sound("two.wav", "Rain", "Weather");
    ASSERT_TRUE(index());
    table.mark(one);
    QTest::keyClick(&table, Qt::Key_Down, Qt::ShiftModifier);
    ASSERT_TRUE(idle());
    EXPECT_TRUE(named(window, "2 files"));
    EXPECT_EQ(inspector.field("DESCRIPTION").text(), "Rain");
    EXPECT_EQ(inspector.field("LIBRARY").text(), "");
    auto* libraryField = qobject_cast<QLineEdit*>(&inspector.field("LIBRARY").editor());
    EXPECT_EQ(libraryField->placeholderText(), "Mixed");
    auto* saveButton = [&]() -> QPushButton* {
        for (auto* button : inspector.findChildren<QPushButton*>()) {
            if (button->shortcut() == QKeySequence("Ctrl+S")) { return button; }
        }
        return nullptr;
    }();
    ASSERT_TRUE(saveButton);
    EXPECT_FALSE(saveButton->isEnabled());
    auto* description = qobject_cast<QPlainTextEdit*>(&inspector.field("DESCRIPTION").editor());
    description->setPlainText("Rain on tin");
    auto* stars = inspector.findChild<StarRow*>();
    QTest::mouseClick(stars, Qt::LeftButton, {}, stars->starRect(4).center());
    EXPECT_EQ(stars->accessibleName(), "Rating: 4 of 5");
    saveButton->click();
    EXPECT_FALSE(saveButton->isEnabled());
    ASSERT_TRUE(idle());
    const SoundMeta first = MetaIO::read(one);
    const SoundMeta second = MetaIO::read(two);
    for (const auto* meta : {&first, &second}) {
        EXPECT_EQ(meta->description, "Rain on tin");
        EXPECT_EQ(meta->rating, 4);
    }
    EXPECT_EQ(first.library, "Storms");
    EXPECT_EQ(second.library, "Weather");
    EXPECT_TRUE(visibleText().contains("Saved metadata to 2 file(s)"));
    QTest::keyClick(stars, Qt::Key_0);
    EXPECT_EQ(inspector.fields().rating(), 0);
    inspector.revert();
    ASSERT_TRUE(idle());
    EXPECT_EQ(inspector.fields().rating(), 4);
}

TEST_F(Browser, UnsavedEditsOutliveAChangeOfTheSelection) {
    const auto one = sound("one.wav", "First");
    const auto two = sound("two.wav", "Second");
    ASSERT_TRUE(index());
    const auto edit = [&](const std::filesystem::path& path, const QString& text) {
        table.mark(path);
        ASSERT_TRUE(idle());
        qobject_cast<QPlainTextEdit*>(&inspector.field("DESCRIPTION").editor())->setPlainText(text);
    };
    const auto button = [&](const QString& name) { return named<QPushButton>(window, name); };
    edit(one, "Changed");
    EXPECT_FALSE(button("Discard the edits and go on")->isVisible());
    table.mark(two);
    ASSERT_TRUE(idle());
    EXPECT_EQ(inspector.urls(), std::vector{one}) << "the form stays with its file";
    EXPECT_EQ(inspector.field("DESCRIPTION").text(), "Changed");
    EXPECT_TRUE(button("Discard the edits and go on")->isVisible());
    button("Save the edits and go on")->click();
    ASSERT_TRUE(idle());
    EXPECT_EQ(MetaIO::read(one).description, "Changed");
    EXPECT_EQ(inspector.urls(), std::vector{two});
    EXPECT_EQ(inspector.field("DESCRIPTION").text(), "Second");
    EXPECT_TRUE(inspector.settleEdits()) << "nothing to ask";
    edit(two, "Never");
    inspector.askUnsaved = [] { return InspectorView::Unsaved::keep; };
    EXPECT_FALSE(inspector.settleEdits()) << "the application stays";
    table.mark(one);
    button("Discard the edits and go on")->click();
    ASSERT_TRUE(idle());
    EXPECT_EQ(inspector.urls(), std::vector{one});
    EXPECT_EQ(inspector.field("DESCRIPTION").text(), "Changed");
    EXPECT_EQ(MetaIO::read(two).description, "Second");
}

TEST_F(Browser, RenamingAsksFirstAndIsForExpertsAndTheFileStaysChosenAndLoaded) {
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
    QPushButton* rename = nullptr;
    for (auto* candidate : inspector.findChildren<QPushButton*>()) {
        if (candidate->text() == "Rename to UCS") { rename = candidate; }
    }
    ASSERT_TRUE(rename);
    EXPECT_FALSE(rename->isVisible());
    model.settings().change([](AppSettings& settings) { settings.expertMode = true; });
    EXPECT_TRUE(rename->isVisible());
    size_t asked = 0;
    bool answer = false;
    inspector.confirmRename = [&](size_t count) {
        asked += count;
        return answer;
    };
    rename->click();
    ASSERT_TRUE(idle());
    EXPECT_EQ(asked, 1);
    EXPECT_TRUE(std::filesystem::exists(path));
    answer = true;
    rename->click();
    EXPECT_TRUE(settle([&] { return !std::filesystem::exists(path); }));
    ASSERT_TRUE(idle());
    const auto renamed = root / "WTHRain_Rain On Tin.wav";
    EXPECT_TRUE(settle([&] { return player.info() && player.info()->url == renamed; }));
    EXPECT_TRUE(library.isSearching()) << "the results stay";
    library.clearFilters();
    ASSERT_TRUE(idle());
    EXPECT_EQ(inspector.urls(), std::vector{renamed});
}

}  // namespace
}  // namespace brindlehum
