// MetadataEdits: into files, the catalog and the change log, and names that follow the metadata.
#include "library/model/metadata_edits.h"

#include <set>

#include "catalog_test.h"
#include "library/meta/meta_io.h"
#include "library/team/change_log.h"
#include "model_fixture.h"

namespace brindlehum {
namespace {

using namespace test;
using testing::ElementsAre;

class Edits : public LibraryPart {
protected:
    MetadataEdits edits{store, loop, &catalog, realPaths, editQueue};
    std::vector<std::string> said;

    void SetUp() override {
        LibraryPart::SetUp();
        QObject::connect(&edits, &MetadataEdits::said, [this](const std::string& text) { said.push_back(text); });
    }
    void scanAll(const std::vector<std::string>& roots) {
        setRoots(roots);
        for (const std::string& each : roots) { LibraryScanner::scan(each, catalog, {.otherRoots = roots}); }
    }
    void settle() {
        settleWhile([this] { return editQueue.pending() > 0 || edits.isReading(); });
    }
    void save(const MetadataChanges& changes, const std::vector<fs::path>& files) {
        edits.save(changes, files);
        settle();
    }
    std::vector<ChangeLog::Entry> logged(const fs::path& at) {
        std::vector<ChangeLog::Entry> entries;
        std::ifstream log(ChangeLog::logFile(at, ChangeLog::owner()));
        for (std::string line; std::getline(log, line);) { entries.push_back(ChangeLog::Entry::decode(line).value()); }
        return entries;
    }
};

TEST_F(Edits, CatalogThatCannotBeWrittenIsReportedAndNoNameChangesWithoutIt) {
    const fs::path wave = add("a.wav");
    scanAll({root});
    save({{{"CATEGORY", "WIND"}, {"CATID", "WINDGust"}, {"FXNAME", "Gale"}}, {}}, {wave});
    PlainDatabase other(catalogFile);
    other.exec("CREATE TRIGGER full BEFORE INSERT ON files BEGIN SELECT RAISE(ABORT, 'disk full'); END");
    save({{{"DESCRIPTION", "wind"}}, {}}, {wave});
    EXPECT_EQ(said.back(), "Saved metadata to 1 file, but the library catalog can't be written: disk full");
    EXPECT_EQ(MetaIO::read(wave).description, "wind");
    EXPECT_EQ(logged(root).back().changes.fields.at("DESCRIPTION"), "wind");
    edits.renameToUCS({wave});
    settle();
    EXPECT_EQ(said.back(), "Renamed 0 files, 1 couldn't be renamed");
    EXPECT_TRUE(fs::exists(wave));
}

TEST_F(Edits, ReachFileCatalogAndLog) {
    const fs::path wave = add("a.wav");
    const fs::path flac = add("b/c.flac");
    scanAll({root});
    const MetadataChanges first{{{"DESCRIPTION", "wind"}, {"UNKNOWN", "x"}}, 4};
    save(first, {wave, flac});
    EXPECT_EQ(said.back(), "Saved metadata to 2 files");
    EXPECT_EQ(MetaIO::read(wave).description, "wind");
    EXPECT_EQ(MetaIO::read(flac).rating, 4);
    for (const fs::path& file : {wave, flac}) {
        EXPECT_EQ(catalogRow(file).meta.description, "wind");
        EXPECT_EQ(catalogRow(file).meta.rating, 4);
    }
    ASSERT_EQ(logged(root).size(), 2U);
    EXPECT_EQ(logged(root)[1].path, "b/c.flac");
    EXPECT_EQ(logged(root)[1].changes, (MetadataChanges{{{"DESCRIPTION", "wind"}}, 4}));
    EXPECT_EQ(logged(root)[1].embedded, true);

    // Clearing a rating is an edit; the FLAC keeps its description.
    save({{}, 0}, {wave, flac});
    EXPECT_EQ(MetaIO::read(wave).rating, 0);
    EXPECT_EQ(catalogRow(flac).meta.rating, 0);
    EXPECT_EQ(catalogRow(flac).meta.description, "wind");
    EXPECT_EQ(scan().read, 0) << "the rows have the files' new stamps";

    std::vector<SoundMeta> read;
    edits.read({wave, flac}, [](const auto&) { FAIL() << "a newer request has taken its place"; });
    edits.read({flac, wave}, [&](const auto& metas) { read = metas; });
    settle();
    ASSERT_EQ(read.size(), 2U);
    EXPECT_EQ(read[0].fxName, "c");
}

TEST_F(Edits, ThatFailLeaveCatalogAndLogAlone) {
    const fs::path good = add("a.wav");
    const fs::path last = add("z.wav");
    writeBytes(root / "x.wav", "RIFX no wave");
    scanAll({root});
    save({{{"DESCRIPTION", "wind"}}, std::nullopt}, {good, root / "x.wav", last});
    EXPECT_EQ(said.back(), "Couldn't write 1 file: x.wav");
    EXPECT_EQ(MetaIO::read(last).description, "wind");
    EXPECT_EQ(catalogRow(root / "x.wav").meta.description, "");
    EXPECT_EQ(logged(root).size(), 2U);

    const std::ofstream recording(last, std::ios::app);
    save({{{"DESCRIPTION", "rain"}}, std::nullopt}, {last});
    EXPECT_EQ(said.back(), "Couldn't write 1 file: z.wav");
    EXPECT_EQ(MetaIO::read(last).description, "wind");
    EXPECT_EQ(logged(root).size(), 2U);
}

TEST_F(Edits, ThatTheLogLacksAreToldAndSentLater) {
    const fs::path file = add("a.caf");
    scanAll({root});
    save({{}, 1}, {file});
    const fs::path log = ChangeLog::logFile(root, ChangeLog::owner());
    fs::create_hard_link(log, home / "second name");
    save({{}, 2}, {file});
    EXPECT_EQ(said.back(),
              "Saved metadata to 1 file, 1 of them in the catalog only, but the team's log can't be written: "
              "the file has a second name");
    EXPECT_EQ(logged(root).size(), 1U);
    fs::remove(home / "second name");
    ChangeLog::pull(root, catalog);
    ASSERT_EQ(logged(root).size(), 2U);
    EXPECT_EQ(logged(root)[1].changes.rating, 2);
    EXPECT_GT(logged(root)[1].time, logged(root)[0].time);
    ChangeLog::pull(root, catalog);
    EXPECT_EQ(logged(root).size(), 2U);
}

// What only the catalog knew of a file goes into the file with the first edit; what can't hold it stays with the row.
TEST_F(Edits, WordsOfTheRowGoIntoTheFileOrStayWithTheRow) {
    const fs::path flac = add("a.flac");
    const fs::path aac = root / "b.aac";
    run("ffmpeg -y -f lavfi -i sine=d=0.1 '" + aac.string() + "'");
    const fs::path other = root / "c.flac";
    run("ffmpeg -y -f lavfi -i sine=d=0.1 -f wav '" + other.string() + "'");
    scanAll({root});
    for (const fs::path& file : {flac, aac, other}) {
        Catalog::Row row = catalogRow(file);
        row.meta.notes = "only here";
        catalog.write([&] { catalog.upsert(row.path, row.root, {1, 1}, std::nullopt, row.meta); });
    }
    save({{{"DESCRIPTION", "wind"}}, std::nullopt}, {flac, aac, other});
    EXPECT_EQ(said.back(), "Saved metadata to 3 files, 2 of them in the catalog only");
    EXPECT_EQ(MetaIO::read(flac).notes + MetaIO::read(flac).description, "only herewind");
    for (const fs::path& file : {flac, aac, other}) {
        EXPECT_EQ(catalogRow(file).meta.notes + catalogRow(file).meta.description, "only herewind") << file;
    }
}

TEST_F(Edits, BelongToTheInnermostRoot) {
    add("a/b/c.wav");
    const fs::path outside = addTo(home / "elsewhere", "o.wav");
    const fs::path near = addTo(home / "sounds like", "n.wav");
    scanAll({root, root / "a"});
    save({{}, 5}, {root / "a" / "b" / "c.wav", outside, near});
    EXPECT_TRUE(logged(root).empty());
    ASSERT_EQ(logged(root / "a").size(), 1U);
    EXPECT_EQ(logged(root / "a")[0].path, "b/c.wav");
    EXPECT_EQ(catalogRow(outside).root, outside.parent_path());
    EXPECT_FALSE(fs::exists(outside.parent_path() / ".brindlehum"));
}

TEST_F(Edits, RenamesNeverReplaceAFileAndCanBeUndone) {
    for (const char* name : {"one.wav", "two.wav", "three.flac", "plain.wav", "long.wav"}) { add(name); }
    writeBytes(root / "no name.wav", "RIFX");
    scanAll({root});
    save({{{"CATID", "DOORWood"}, {"FXNAME", "Slam"}}, std::nullopt}, {root / "one.wav", root / "two.wav"});
    save({{{"CATID", "DOGBark"}, {"FXNAME", "A_B/C"}, {"DESIGNER", "JD"}}, 2}, {root / "three.flac"});
    save({{{"CATID", "AMBCity"}, {"FXNAME", ""}}, std::nullopt}, {root / "plain.wav"});
    const std::string taken = readBytes(root / "two.wav");
    const auto entries = [this] {
        std::set<std::string> all;
        for (const auto& item : fs::directory_iterator(root)) { all.insert(item.path().filename()); }
        all.erase(".brindlehum");
        return all;
    };
    save({{{"FXNAME", std::string(250, 'x')}, {"CATID", "WIND"}}, std::nullopt}, {root / "long.wav"});
    const std::vector<fs::path> files = {root / "one.wav",  root / "two.wav", root / "three.flac", root / "plain.wav",
                                         root / "long.wav", root / "new.wav", root / "gone.wav"};
    add("new.wav");
    UCSRenames shown;
    edits.previewUCS(files, [&](const UCSRenames& renames) { shown = renames; });
    settle();
    std::vector<UCSRename::Verdict> verdicts;
    for (const auto& each : shown) { verdicts.push_back(each.verdict); }
    using enum UCSRename::Verdict;
    EXPECT_THAT(verdicts, ElementsAre(renames, nameTwice, renames, noFXName, nameTooLong, notInLibrary, gone));
    ASSERT_TRUE(fs::exists(root / "one.wav")) << "a preview renames nothing";
    EXPECT_EQ(shown[2].to, root / "DOGBark_A B-C_JD.flac");
    fs::remove(root / "new.wav");
    fs::remove(root / "long.wav");
    edits.renameToUCS(files);
    settle();
    EXPECT_EQ(said.back(), "Renamed 2 files");
    EXPECT_THAT(entries(),
                ElementsAre("DOGBark_A B-C_JD.flac", "DOORWood_Slam.wav", "no name.wav", "plain.wav", "two.wav"));
    EXPECT_EQ(readBytes(root / "two.wav"), taken);
    EXPECT_EQ(catalogRow(root / "DOGBark_A B-C_JD.flac").meta.rating, 2) << "the rating that only the catalog knew";
    EXPECT_FALSE(catalog.row(root / "three.flac"));
    edits.previewUCS({root / "DOORWood_Slam.wav", root / "two.wav"}, [&](const UCSRenames& now) { shown = now; });
    settle();
    EXPECT_EQ(shown[0].verdict, alreadyNamed);
    EXPECT_EQ(shown[1].verdict, nameTaken);
    ASSERT_TRUE(edits.canUndoRename());
    add("one.wav");
    edits.undoRename();
    settle();
    EXPECT_EQ(said.back(), "Gave 1 file the old name again, 1 couldn't be renamed");
    EXPECT_FALSE(edits.canUndoRename());
    EXPECT_THAT(entries(),
                ElementsAre("DOORWood_Slam.wav", "no name.wav", "one.wav", "plain.wav", "three.flac", "two.wav"));
    EXPECT_EQ(catalogRow(root / "three.flac").meta.rating, 2);
}

}  // namespace
}  // namespace brindlehum
