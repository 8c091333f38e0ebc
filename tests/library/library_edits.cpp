// LibraryModel's edits: into files, the catalog and the change log, and names that follow the metadata.
#include "library/team/metadata_save.h"
#include "model_fixture.h"

namespace brindlehum {
namespace {

using namespace test;
using testing::ElementsAre;

class Edits : public Model {
protected:
    void save(const MetadataChanges& changes, const std::vector<fs::path>& urls) {
        model->save(changes, urls);
        settle();
    }
    std::vector<ChangeLog::Entry> logged(const fs::path& at) {
        std::vector<ChangeLog::Entry> entries;
        const fs::path file = ChangeLog::logFile(at, ChangeLog::owner());
        std::string text = fs::exists(file) ? readBytes(file) : "";
        for (size_t end; (end = text.find('\n')) != std::string::npos; text.erase(0, end + 1)) {
            entries.push_back(ChangeLog::Entry::decode(text.substr(0, end)).value());
        }
        return entries;
    }
};

TEST_F(Edits, ReachFileCatalogAndLog) {
    const fs::path wave = add("a.wav");
    const fs::path flac = add("b/c.flac");
    make({root});
    const std::string flacBefore = readBytes(flac);
    std::vector<std::string> said;
    QObject::connect(model.get(), &LibraryModel::messageChanged, [&] { said.push_back(*model->message()); });
    const MetadataChanges first{{{"DESCRIPTION", "wind"}, {"UNKNOWN", "x"}}, 4};
    save(first, {wave, flac});
    EXPECT_THAT(said, ElementsAre("Saving metadata to file 1 of 2", "Saving metadata to file 2 of 2",
                                  "Saved metadata to 2 file(s)"));
    EXPECT_EQ(MetaIO::read(wave).description, "wind");
    EXPECT_EQ(readBytes(flac), flacBefore);
    for (const fs::path& file : {wave, flac}) {
        EXPECT_EQ(catalogRow(file).meta.description, "wind");
        EXPECT_EQ(catalogRow(file).meta.rating, 4);
        EXPECT_EQ(catalogRow(file).root, root);
    }
    EXPECT_EQ(model->entries()[1].row->meta.rating, 4) << "the folder shows it";
    ASSERT_EQ(logged(root).size(), 2U);
    EXPECT_EQ(logged(root)[1].path, "b/c.flac");
    EXPECT_EQ(logged(root)[1].changes, first);
    EXPECT_EQ(logged(root)[1].user, ChangeLog::owner());

    // Clearing a rating is an edit; what the FLAC was told before isn't lost over it.
    save({{}, 0}, {wave, flac});
    EXPECT_EQ(MetaIO::read(wave).rating, 0);
    EXPECT_EQ(catalogRow(flac).meta.rating, 0);
    EXPECT_EQ(catalogRow(flac).meta.description, "wind");
    const LibraryScanner::Result scan = LibraryScanner::scan(root, *model->catalog());
    EXPECT_EQ(scan.read, 0) << "the rows have the files' new stamps";

    const size_t before = said.size();
    save({}, {wave});
    EXPECT_EQ(said.size(), before);
    std::vector<SoundMeta> read;
    model->readMeta({wave, flac}, [](const auto&) { FAIL() << "a newer request has taken its place"; });
    model->readMeta({flac, wave}, [&](const auto& metas) { read = metas; });
    settle();
    ASSERT_EQ(read.size(), 2U);
    EXPECT_EQ(read[0].fxName, "c");
}

TEST_F(Edits, ThatFailLeaveCatalogAndLogAlone) {
    const fs::path good = add("a.wav");
    const fs::path last = add("z.wav");
    writeBytes(root / "x.wav", "RIFX no wave");
    make({root});
    save({{{"DESCRIPTION", "wind"}}, std::nullopt}, {good, root / "x.wav", last});
    EXPECT_EQ(model->message(), "Couldn't write 1 file(s): x.wav");
    EXPECT_EQ(MetaIO::read(last).description, "wind");
    EXPECT_EQ(catalogRow(root / "x.wav").meta.description, "");
    EXPECT_EQ(logged(root).size(), 2U);
    save({{}, 3}, {root / "gone.flac", root / "x.wav", root / "g2.wav", root / "g3.mp3"});
    EXPECT_EQ(model->message(), "Couldn't write 4 file(s): gone.flac, x.wav, g2.wav");
    EXPECT_FALSE(model->catalog()->row(root / "gone.flac"));
}

TEST_F(Edits, BelongToTheInnermostRoot) {
    add("a/b/c.wav");
    const fs::path outside = addTo(home / "elsewhere", "o.wav");
    const fs::path near = addTo(home / "sounds like", "n.wav");
    make({root, root / "a"});
    save({{}, 5}, {root / "a" / "b" / "c.wav", outside, near});
    EXPECT_TRUE(logged(root).empty());
    ASSERT_EQ(logged(root / "a").size(), 1U);
    EXPECT_EQ(logged(root / "a")[0].path, "b/c.wav");
    EXPECT_EQ(catalogRow(outside).root, outside.parent_path());
    EXPECT_FALSE(fs::exists(outside.parent_path() / ".brindlehum"));
    EXPECT_EQ(MetadataSave::rootOf("/x/y", {"/"}), "/");
}

TEST_F(Edits, RenameWithoutEverReplacingAFile) {
    add("one.wav");
    add("two.wav");
    add("three.flac");
    add("plain.wav");
    writeBytes(root / "no name.wav", "RIFX");
    make({root});
    save({{{"CATID", "DOORWood"}, {"FXNAME", "Slam"}}, std::nullopt}, {root / "one.wav", root / "two.wav"});
    save({{{"CATID", "DOGBark"}, {"FXNAME", "A_B/C"}, {"DESIGNER", "JD"}}, 2}, {root / "three.flac"});
    save({{{"CATID", "AMBCity"}, {"FXNAME", ""}}, std::nullopt}, {root / "plain.wav"});
    const std::string taken = readBytes(root / "two.wav");
    const std::vector<fs::path> all = {root / "one.wav", root / "two.wav", root / "three.flac", root / "plain.wav",
                                       root / "gone.wav"};
    model->renameToUCS(all);
    settle();
    EXPECT_EQ(model->message(), "Renamed 2 file(s)");
    EXPECT_THAT(names(model->entries()),
                ElementsAre("DOGBark_A B-C_JD.flac", "DOORWood_Slam.wav", "no name.wav", "plain.wav", "two.wav"));
    EXPECT_EQ(readBytes(root / "two.wav"), taken);
    EXPECT_EQ(catalogRow(root / "DOGBark_A B-C_JD.flac").meta.rating, 2) << "what only the catalog knew went along";
    EXPECT_FALSE(model->catalog()->row(root / "three.flac"));
    EXPECT_EQ(model->indexedCount(), 5);
    model->renameToUCS({root / "DOORWood_Slam.wav"});
    settle();
    EXPECT_EQ(model->message(), "Renamed 0 file(s)");
    EXPECT_FALSE(model->canUndoRename());
}

TEST_F(Edits, GiveBackTheOldNames) {
    add("three.flac");
    add("four.wav");
    make({root});
    save({{{"CATID", "DOGBark"}, {"FXNAME", "Woof"}}, 2}, {root / "three.flac", root / "four.wav"});
    model->renameToUCS({root / "three.flac", root / "four.wav"});
    settle();
    ASSERT_TRUE(model->canUndoRename());
    add("four.wav");
    model->undoRename();
    settle();
    EXPECT_FALSE(model->canUndoRename());
    EXPECT_THAT(names(model->entries()), ElementsAre("DOGBark_Woof.wav", "four.wav", "three.flac"));
    EXPECT_EQ(catalogRow(root / "three.flac").meta.rating, 2);
}

}  // namespace
}  // namespace brindlehum
