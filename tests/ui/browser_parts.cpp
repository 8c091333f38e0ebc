// Decisions of browser, sidebar and inspector that need no window: texts, orders, widths, rows and fields.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QMenu>
#include <QMimeData>
#include <numeric>

#include "ui/browser/browser_columns.h"
#include "ui/browser/browser_menu.h"
#include "ui/browser/browser_sort.h"
#include "ui/browser/browser_state.h"
#include "ui/browser/browser_table_model.h"
#include "ui/browser/info_text.h"
#include "ui/inspector/inspector_fields.h"
#include "ui/look/file_drag.h"
#include "ui/sidebar/sidebar_rows.h"

namespace brindlehum {
namespace {

using testing::ElementsAre;

BrowserEntry sound(const std::string& path, double seconds = 0, SoundMeta meta = {}) {
    Catalog::Row row;
    row.path = path;
    row.duration = seconds;
    row.sampleRate = 48000;
    row.bits = 24;
    row.channels = 2;
    row.meta = std::move(meta);
    return {path, false, row};
}

TEST(InfoText, TheRowCountsElseTheProbe) {
    EXPECT_EQ(InfoText::duration(sound("/a.wav", 61.5), nullptr), "1:01.500");
    EXPECT_EQ(InfoText::duration(sound("/a.wav", 0), nullptr), "");
    AudioFileInfo info;
    info.sampleRate = 44100;
    info.frames = 441000;
    info.channels = 1;
    const BrowserEntry bare{"/a.wav", false, std::nullopt};
    EXPECT_EQ(InfoText::duration(bare, &info), "0:10.000");
    EXPECT_EQ(InfoText::format(bare, &info).toStdString(), info.summary());
    EXPECT_EQ(InfoText::format(bare, nullptr), "");
    EXPECT_EQ(InfoText::format(sound("/a.wav", 2), &info).toStdString(), sound("/a.wav", 2).row->formatSummary());
}

TEST(BrowserSort, FoldersComeFirstAndEmptyKeysLast) {
    using BrowserSort::Key;
    const std::vector<Key> keys = {{false, "take10", 3}, {true, "Zeta"},      {false, "", 0},
                                   {false, "Take2", 1},  {false, "take1", 3}, {true, "alpha"}};
    EXPECT_THAT(BrowserSort::order(keys, false, true), ElementsAre(5, 1, 4, 3, 0, 2));
    EXPECT_THAT(BrowserSort::order(keys, false, false), ElementsAre(1, 5, 0, 3, 4, 2));
    EXPECT_THAT(BrowserSort::order(keys, true, true), ElementsAre(1, 5, 3, 0, 4, 2)) << "equals as they came";
    EXPECT_THAT(BrowserSort::order(keys, true, false), ElementsAre(1, 5, 0, 4, 3, 2));
}

TEST(BrowserTableModel, SortsByAColumnAndReturnsToTheGivenOrder) {
    BrowserTableModel model;
    SoundMeta meta;
    meta.description = "Wind,\nhowling";
    meta.category = "WIND";
    meta.subCategory = "GUST";
    model.setEntries({sound("/s/c.wav", 3), sound("/s/a.wav", 9, meta), sound("/s/b.wav", 1)});
    const auto names = [&] {
        std::string all;
        for (int row = 0; row < model.rowCount(); ++row) { all += model.entry(row).url.stem().string(); }
        return all;
    };
    EXPECT_EQ(names(), "cab");
    const QPersistentModelIndex held(model.index(0, 0));
    model.sort(BrowserTableModel::Name, Qt::AscendingOrder);
    EXPECT_EQ(names(), "abc");
    EXPECT_EQ(held.row(), 2) << "a selection stays with its file";
    model.sort(BrowserTableModel::Length, Qt::DescendingOrder);
    EXPECT_EQ(names(), "acb");
    EXPECT_EQ(model.index(0, BrowserTableModel::Description).data(), "Wind, howling") << "one line";
    EXPECT_EQ(model.index(0, BrowserTableModel::Category).data(), "WIND · GUST");
    // The same files with other rows: no reset, no move.
    bool reset = false;
    QObject::connect(&model, &QAbstractItemModel::modelReset, [&] { reset = true; });
    model.setEntries({sound("/s/c.wav", 30), sound("/s/a.wav", 9), sound("/s/b.wav", 1)});
    EXPECT_FALSE(reset);
    EXPECT_EQ(names(), "acb");
    EXPECT_EQ(model.index(1, BrowserTableModel::Length).data(), "0:30.000");
    model.sort(BrowserTableModel::unsorted, Qt::AscendingOrder);
    EXPECT_EQ(names(), "cab");
    model.setEntries({sound("/s/c.wav")});
    EXPECT_TRUE(reset);
}

TEST(BrowserTableModel, AsksOnceForAnUnknownLength) {
    BrowserTableModel model;
    std::vector<std::string> asked;
    model.askInfo = [&](const std::filesystem::path& url) -> const AudioFileInfo* {
        asked.push_back(url.filename());
        return nullptr;
    };
    model.setEntries({{"/s/dir", true, std::nullopt}, sound("/s/known.wav", 2), {"/s/new.wav", false, std::nullopt}});
    for (int pass = 0; pass < 2; ++pass) {
        for (int row = 0; row < 3; ++row) { model.index(row, BrowserTableModel::Length).data(); }
    }
    EXPECT_THAT(asked, ElementsAre("new.wav"));
    AudioFileInfo info;
    info.sampleRate = 1000;
    info.frames = 2500;
    model.setInfo("/s/new.wav", info);
    EXPECT_EQ(model.index(2, BrowserTableModel::Length).data(), "0:02.500");
}

TEST(BrowserTableModel, RowsDragOutAsFilesInTheirOrder) {
    BrowserTableModel model;
    const std::string latin1 = "/s/100%20 \xE9.wav";
    model.setEntries(
        {sound("/s/b #1.wav"), {"/s/dir", true, std::nullopt}, sound("/s/ü.wav"), {latin1, false, std::nullopt}});
    const std::unique_ptr<QMimeData> data(model.mimeData(
        {model.index(2, 0), model.index(2, 3), model.index(3, 0), model.index(0, 0), model.index(1, 0)}));
    EXPECT_THAT(FileDrag::localPaths(*data), ElementsAre("/s/b #1.wav", "/s/dir", "/s/ü.wav", latin1));
    EXPECT_TRUE(data->data("text/uri-list").contains("file:///s/100%2520%20%E9.wav"));
}

TEST(BrowserColumns, FillTheRoomAndKeepTheirMinimum) {
    for (const int room : {0, 500, 670, 720, 1000, 1069, 1071, 2400}) {
        const auto widths = BrowserColumns::fit(room, 164);
        const int all = std::accumulate(widths.begin(), widths.end(), 0);
        EXPECT_LE(all, std::max(room, 670)) << "no bar below the table";
        EXPECT_GE(all, room - 6);
        for (size_t column = 0; column < widths.size(); ++column) {
            EXPECT_GE(widths[column], BrowserColumns::minimum[column]) << room;
        }
        EXPECT_LE(widths[0], std::max(BrowserColumns::ideal[0], BrowserColumns::ideal[0] + room - 1070)) << room;
    }
}

TEST(BrowserState, SaysWhatToDoNext) {
    using State = BrowserState;
    State::Snapshot base;
    base.folder = "/music";
    base.limit = 2000;
    struct Case {
        const char* what;
        std::function<void(State::Snapshot&)> change;
        QString title;
        State::Action action;
        QString count;
    };
    const std::vector<Case> cases = {
        {"sounds", [](auto& s) { s.sounds = 1204, s.folders = 1; }, "", State::Action::none, "1 folder, 1,204 sounds"},
        {"an empty folder", [](auto&) {}, "No sounds in this folder", State::Action::goUp, ""},
        {"a folder on its way", [](auto& s) { s.listing = true; }, "", State::Action::none, ""},
        {"a lost folder", [](auto& s) { s.folderReadable = false; }, "This folder can't be opened", State::Action::goUp,
         ""},
        {"no library", [](auto& s) { s.hasRoots = false; }, "No sounds in this folder", State::Action::addFolder, ""},
        {"results", [](auto& s) { s.searching = true, s.sounds = 2000; }, "", State::Action::none, "2,000 results"},
        {"a running search", [](auto& s) { s.searching = s.searchRunning = true; }, "", State::Action::none,
         "Searching…"},
        {"no result", [](auto& s) { s.searching = true, s.query = " rain "; }, "No results for “rain”",
         State::Action::clearFilters, "0 results"},
        {"no result in a facet",
         [](auto& s) { s.searching = true, s.query = "rain", s.category = "WIND", s.library = "Lib"; },
         "No results for “rain” in WIND, Lib", State::Action::clearFilters, "0 results"},
        {"an empty facet", [](auto& s) { s.searching = true, s.category = "WIND"; }, "No results in WIND",
         State::Action::clearFilters, "0 results"},
        {"no catalog", [](auto& s) { s.searching = true, s.hasCatalog = false; }, "Search isn't available",
         State::Action::clearFilters, "0 results"},
        {"nothing indexed", [](auto& s) { s.searching = true, s.hasRoots = false; }, "Nothing to search yet",
         State::Action::addFolder, "0 results"},
    };
    for (const auto& item : cases) {
        SCOPED_TRACE(item.what);
        State::Snapshot now = base;
        item.change(now);
        const State state = State::of(now);
        EXPECT_EQ(state.title.toStdString(), item.title.toStdString());
        EXPECT_EQ(state.action, item.action);
        EXPECT_EQ(state.actionText.isEmpty(), item.action == State::Action::none);
        EXPECT_EQ(state.count, item.count);
        EXPECT_EQ(state.countHint.isEmpty(), now.sounds < 2000);
    }
}

TEST(SidebarRows, ShowRootsFacetsAndPlaces) {
    SidebarRows::Snapshot now;
    now.roots = {"/media/me/Disk/SFX", "/home/me/Sounds/"};
    now.indexing = {"/home/me/Sounds/"};
    now.problems = {{"/media/me/Disk/SFX", "gone"}};
    now.places = {"/home/me/Music", "/run/media/me/CARD"};
    now.categories = {{"WIND", 1200}, {"RAIN", 3}};
    now.category = "RAIN";
    now.folder = "/home/me/Music";
    const auto rows = SidebarRows::build(now);
    std::vector<std::string> lines;
    for (const auto& section : rows) {
        for (const auto& row : section) {
            lines.push_back((row.text + '|' + row.icon + '|' + (row.count ? QString::number(*row.count) : "") +
                             (row.selected ? " selected" : "") + (row.busy ? " busy" : "") + row.problem)
                                .toStdString());
        }
    }
    EXPECT_THAT(lines, ElementsAre("SFX|drive|gone", "Sounds|library| busy", "Add Folder…|plus|", "WIND||1200",
                                   "RAIN||3 selected", "Music|folder| selected", "CARD|drive|"));
    EXPECT_EQ(SidebarRows::footer(true, 7), "Indexing…");
    EXPECT_EQ(SidebarRows::footer(false, 12345), "12,345 files indexed");
    EXPECT_EQ(SidebarRows::footer(false, 0), "");
    EXPECT_EQ(SidebarRows::progress(true, 1204, 5310), "1,204 of 5,310 files");
    EXPECT_EQ(SidebarRows::progress(false, 0, 5310), "5,310 files found") << "there may be more";
    EXPECT_EQ(SidebarRows::progress(false, 0, 0), "");
}

TEST(BrowserMenu, LeavesOutWhatIsNotThere) {
    BrowserActions actions;
    BrowserActions::Files done;
    const auto take = [&](const BrowserActions::Files& files) { done = files; };
    actions.reveal = actions.copyPath = take;
    const auto texts = [&](const BrowserActions::Files& files) {
        QMenu menu;
        fillBrowserMenu(menu, files, actions);
        QStringList all;
        for (const auto* action : menu.actions()) { all << action->text() + (action->isEnabled() ? "" : " (off)"); }
        menu.actions().last()->trigger();
        return all;
    };
    EXPECT_EQ(texts({"/a", "/b"}), (QStringList{"Show in File Manager", "Copy Path"}));
    EXPECT_THAT(done, ElementsAre("/a", "/b"));
    actions.makeTempEdits = take;
    actions.openInEditor = [](const auto&) {};
    EXPECT_EQ(texts({"/a.wav"}),
              (QStringList{"Open in Editor", "Make Temp Edits", "Show in File Manager", "Copy Path"}));
    EXPECT_EQ(texts({"/folder", "/b.WAV"})[1], "Make Temp Edits (2 files)");
    EXPECT_EQ(texts({"/folder", "/b"})[1], "Make Temp Edits (2 files) (off)") << "none of them is a sound";
}

TEST(InspectorFields, KeepWhatIsMixedAndSaveWhatIsEdited) {
    SoundMeta one;
    one.description = "Rain";
    one.library = "Storms";
    one.rating = 3;
    SoundMeta two = one;
    two.library = "Weather";
    InspectorFields fields;
    fields.load({one, two});
    EXPECT_EQ(fields.text("DESCRIPTION"), "Rain");
    EXPECT_EQ(fields.text("LIBRARY"), "");
    EXPECT_TRUE(fields.isMixed("LIBRARY"));
    EXPECT_FALSE(fields.isMixed("DESCRIPTION"));
    EXPECT_EQ(fields.rating(), 3);
    EXPECT_TRUE(fields.changes().isEmpty());
    fields.setText("DESCRIPTION", "");
    EXPECT_THAT(fields.changes().fields, ElementsAre(std::pair("DESCRIPTION", ""))) << "nothing is a value, too";
    EXPECT_FALSE(fields.changes().rating);
    fields.clickStar(3);
    EXPECT_EQ(fields.changes().rating, 0) << "the star of the rating takes it away";
    fields.clickStar(5);
    EXPECT_EQ(fields.rating(), 5);
    fields.setText("LIBRARY", "Both");
    fields.saved();
    EXPECT_FALSE(fields.hasEdits());
    EXPECT_FALSE(fields.isMixed("LIBRARY"));
    two.rating = 1;
    fields.load({one, two});
    EXPECT_EQ(fields.rating(), 0);
    for (const auto& tag : SoundMeta::ixmlTags) {
        EXPECT_TRUE(std::ranges::count(InspectorFields::fields, tag.name, &InspectorFields::Field::tag)) << tag.name;
    }
}

}  // namespace
}  // namespace brindlehum
