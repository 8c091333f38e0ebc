// Decisions of browser, sidebar and inspector that need no window: states, orders, rows and fields.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QDateTime>
#include <QLocale>
#include <QMimeData>

#include "ui/browser/browser_columns.h"
#include "ui/browser/browser_state.h"
#include "ui/browser/browser_table_model.h"
#include "ui/inspector/inspector_fields.h"
#include "ui/inspector/keeping_text.h"
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

TEST(BrowserTableModel, SortsByAColumnAndReturnsToTheGivenOrder) {
    BrowserTableModel model;
    SoundMeta meta;
    meta.description = "Wind,\nhowling";
    meta.category = "WIND";
    meta.subCategory = "GUST";
    meta.rating = 4;
    const BrowserEntry inner{"/s/z", true, std::nullopt, 86400};
    const auto dated = [](BrowserEntry entry, double modified) { return entry.row->modified = modified, entry; };
    model.setEntries(
        {dated(sound("/s/c.wav", 3), 1.7e9), dated(sound("/s/a.wav", 9, meta), 1.6e9), sound("/s/b.wav"), inner});
    const auto names = [&] {
        std::string all;
        for (int row = 0; row < model.rowCount(); ++row) { all += model.entry(row).url.stem().string(); }
        return all;
    };
    EXPECT_EQ(names(), "cabz");
    const QPersistentModelIndex held(model.index(0, 0));
    model.sort(BrowserTableModel::Name, Qt::AscendingOrder);
    EXPECT_EQ(names(), "zabc") << "folders come first";
    EXPECT_EQ(held.row(), 3) << "a selection stays with its file";
    model.sort(BrowserTableModel::Length, Qt::AscendingOrder);
    EXPECT_EQ(names(), "zcab") << "unknown lengths come last";
    EXPECT_EQ(model.index(2, BrowserTableModel::Description).data(), "Wind, howling") << "one line";
    EXPECT_EQ(model.index(2, BrowserTableModel::Category).data(), "WIND · GUST");
    model.sort(BrowserTableModel::Rating, Qt::DescendingOrder);
    EXPECT_EQ(names(), "zacb") << "unrated sounds come last";
    EXPECT_EQ(model.index(1, BrowserTableModel::Rating).data(Qt::AccessibleTextRole), "4 of 5");
    model.sort(BrowserTableModel::Modified, Qt::AscendingOrder);
    EXPECT_EQ(names(), "zacb");
    const auto date = model.index(0, BrowserTableModel::Modified).data().toString();
    EXPECT_EQ(QLocale().toDateTime(date, QLocale::ShortFormat).toSecsSinceEpoch() % 86400, 0) << date.toStdString();
    model.sort(BrowserTableModel::Length, Qt::AscendingOrder);
    // The same files with other rows: no reset, no move.
    bool reset = false;
    QObject::connect(&model, &QAbstractItemModel::modelReset, [&] { reset = true; });
    model.setEntries({sound("/s/c.wav", 30), sound("/s/a.wav", 9), sound("/s/b.wav"), inner});
    EXPECT_FALSE(reset);
    EXPECT_EQ(names(), "zcab");
    EXPECT_EQ(model.index(1, BrowserTableModel::Length).data(), "0:30.000");
    model.sort(BrowserTableModel::unsorted, Qt::AscendingOrder);
    EXPECT_EQ(names(), "cabz");
    model.setEntries({sound("/s/c.wav")});
    EXPECT_TRUE(reset);
}

TEST(BrowserColumns, LibraryCategoryAndDescriptionGiveWayFirst) {
    using Model = BrowserTableModel;
    std::array<bool, Model::ColumnCount> hidden{};
    std::fill(hidden.begin() + Model::firstExtra, hidden.end(), true);
    struct Case {
        int room;
        std::array<int, 6> widths;  // name to format; the format wants 170
    };
    const Case cases[] = {
        {1286, {405, 385, 130, 120, 76, 170}}, {1076, {300, 280, 130, 120, 76, 170}},
        {796, {300, 120, 70, 60, 76, 170}},    {676, {180, 120, 70, 60, 76, 170}},
        {616, {180, 120, 70, 0, 76, 170}},     {546, {180, 120, 0, 0, 76, 170}},
        {500, {254, 0, 0, 0, 76, 170}},        {396, {180, 0, 0, 0, 76, 140}},
        {300, {144, 0, 0, 0, 76, 80}},         {100, {120, 0, 0, 0, 76, 80}},
    };
    BrowserColumns::Widths texts{};
    texts[Model::Format] = 170;
    for (const auto& item : cases) {
        const auto widths = BrowserColumns::fit(item.room, texts, hidden);
        EXPECT_TRUE(std::equal(item.widths.begin(), item.widths.end(), widths.begin()))
            << item.room << ": " << testing::PrintToString(widths);
        EXPECT_EQ(widths[Model::Keywords], BrowserColumns::ideal[Model::Keywords]) << "as it will be when it is shown";
    }
    texts[Model::Library] = 90;  // its head
    EXPECT_EQ(BrowserColumns::fit(706, texts, hidden)[Model::Library], 90);
}

TEST(BrowserTableModel, FolderColumnBeginsAtTheLibraryFolder) {
    BrowserTableModel model;
    const auto under = [](const std::string& root, const std::string& path) {
        BrowserEntry entry = sound(path);
        entry.row->root = root;
        return entry;
    };
    model.setEntries({under("/lib/FX", "/lib/FX/Doors/Wood/a.wav"),
                      under("/lib/FX", "/lib/FX/b.wav"),
                      under("/lib/FX", "/lib/FXelse/c.wav"),
                      {"/x/y/d.wav", false, std::nullopt}});
    QStringList folders;
    for (int row = 0; row < model.rowCount(); ++row) {
        folders << model.index(row, BrowserTableModel::Folder).data().toString();
    }
    EXPECT_EQ(folders, (QStringList{"FX/Doors/Wood", "FX", "/lib/FXelse", "y"}));
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

TEST(BrowserState, SaysWhatToDoNext) {
    using State = BrowserState;
    using enum State::Action;
    struct Case {
        const char *what, *title;
        State::Action action;
        const char* count;
        std::function<void(State::Snapshot&)> change;
    };
    const std::vector<Case> cases = {
        {"sounds", "", none, "1 folder, 1,204 sounds", [](auto& s) { s.sounds = 1204, s.folders = 1; }},
        {"an empty folder", "No sounds in this folder", goUp, "", [](auto&) {}},
        {"a folder on its way", "", none, "", [](auto& s) { s.listing = true; }},
        {"a lost folder", "This folder can't be opened", goUp, "", [](auto& s) { s.folderReadable = false; }},
        {"a lost folder and no library", "This folder can't be opened", addFolder, "",
         [](auto& s) { s.folderReadable = s.hasRoots = false; }},
        {"the first start", "No sounds yet", addFolder, "",
         [](auto& s) { s.folderReadable = s.folderChosen = s.hasRoots = false; }},
        {"no library", "No sounds in this folder", addFolder, "", [](auto& s) { s.hasRoots = false; }},
        {"results", "", none, "2,000 results", [](auto& s) { s.searching = true, s.sounds = 2000; }},
        {"one result", "", none, "1 result", [](auto& s) { s.searching = true, s.sounds = 1; }},
        {"a running search", "", none, "Searching…", [](auto& s) { s.searching = s.searchRunning = true; }},
        {"no result in a facet", "No results for “rain” in WIND, Lib", clearFilters, "0 results",
         [](auto& s) { s.searching = true, s.query = " rain ", s.category = "WIND", s.library = "Lib"; }},
        {"no catalog", "Search isn't available", clearFilters, "0 results",
         [](auto& s) { s.searching = true, s.hasCatalog = false; }},
        {"nothing indexed", "Nothing to search yet", addFolder, "0 results",
         [](auto& s) { s.searching = true, s.hasRoots = false; }},
    };
    for (const auto& item : cases) {
        SCOPED_TRACE(item.what);
        State::Snapshot now;
        now.folder = "/music";
        now.limit = 2000;
        item.change(now);
        const State state = State::of(now);
        EXPECT_EQ(state.title.toStdString(), item.title);
        EXPECT_EQ(state.action, item.action);
        EXPECT_EQ(state.count, item.count);
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
}

TEST(KeepingText, SaysWhereTheWordsOfASelectionGo) {
    const std::pair<std::vector<std::filesystem::path>, const char*> cases[] = {
        {{"a.wav", "b.BWF"}, "Saved into the files (iXML + BWF) and shared with everyone on this library."},
        {{"a.wav", "b.flac"}, "Saved into the files and shared with everyone on this library."},
        {{"a.wav", "b.caf"},
         "Saved into the files that can hold metadata, for the others in the catalog and the library's log."},
        {{"a.aac"}, "Saved in the catalog and the library's log: these files can't hold metadata."}};
    for (const auto& [files, text] : cases) { EXPECT_EQ(keepingText(files), text); }
}

TEST(InspectorFields, CatIDAndItsCategoriesFollowEachOther) {
    struct Case {
        const char* before;  // CatID|category|subcategory, as the others
        std::vector<std::pair<const char*, const char*>> typed;
        const char* after;
        const char* note;
    };
    const Case cases[] = {
        {"||", {{"CATID", "ambbird"}}, "AMBBird|AMBIENCE|BIRDSONG", ""},
        {"|Ambience|Mine", {{"CATID", "WIND"}, {"CATID", "WINDX"}}, "WINDX|Ambience|Mine", "Not in the UCS list"},
        {"|Ambience|", {{"CATID", "WIND"}, {"CATID", "WINDGust"}}, "WINDGust|WIND|GUST", ""},
        {"||", {{"CATEGORY", "doors"}, {"SUBCATEGORY", "Wood"}}, "DOORWood|DOORS|WOOD", ""},
        {"AMBBird|AMBIENCE|BIRDSONG",
         {{"CATEGORY", "WATER"}},
         "AMBBird|WATER|BIRDSONG",
         "Stands for AMBIENCE / BIRDSONG in the UCS list"},
        {"AMBBird|AMBIENCE|BIRDSONG", {{"SUBCATEGORY", "TRAFFIC"}}, "AMBTraf|AMBIENCE|TRAFFIC", ""},
        {"OWNDoor|DOORS|", {{"SUBCATEGORY", "WOOD"}}, "OWNDoor|DOORS|WOOD", "Not in the UCS list"},
        {"||", {{"CATID", "WIND"}, {"SUBCATEGORY", "Mine"}, {"CATID", ""}}, "|WIND|Mine", ""},
    };
    const std::array tags = {"CATID", "CATEGORY", "SUBCATEGORY"};
    for (const auto& item : cases) {
        const QStringList before = QString(item.before).split('|');
        SoundMeta meta;
        meta.catID = before[0].toStdString();
        meta.category = before[1].toStdString();
        meta.subCategory = before[2].toStdString();
        InspectorFields fields;
        fields.load({meta});
        for (const auto& [tag, text] : item.typed) { fields.setText(tag, text); }
        QStringList after;
        for (const char* tag : tags) {
            after << fields.text(tag);
            EXPECT_TRUE(fields.isEdited(tag) || after.back() == before[after.size() - 1]) << item.after << " " << tag;
        }
        EXPECT_EQ(after.join('|'), item.after);
        EXPECT_EQ(fields.catIDNote(), item.note) << item.after;
    }
    InspectorFields mixed;
    SoundMeta water;
    water.category = "WATER";
    mixed.load({SoundMeta(), water});
    mixed.setText("CATID", "WIND");
    EXPECT_EQ(mixed.changes().fields.at("CATEGORY"), "WIND");
    mixed.setText("CATID", "");
    EXPECT_TRUE(mixed.isMixed("CATEGORY")) << "the edit has taken its companions back";
}

TEST(InspectorFields, EmptyTextAndNoStarAreEditsAndEveryTagHasAField) {
    SoundMeta one;
    one.description = "Rain";
    one.rating = 3;
    InspectorFields fields;
    fields.load({one});
    fields.setText("DESCRIPTION", "");
    EXPECT_THAT(fields.changes().fields, ElementsAre(std::pair("DESCRIPTION", ""))) << "nothing is a value, too";
    EXPECT_FALSE(fields.changes().rating);
    fields.clickStar(3);
    EXPECT_EQ(fields.changes().rating, 0) << "the star of the rating takes it away";
    for (const auto& tag : SoundMeta::ixmlTags) {
        EXPECT_TRUE(std::ranges::count(InspectorFields::fields, tag.name, &InspectorFields::Field::tag)) << tag.name;
    }
}

}  // namespace
}  // namespace brindlehum
