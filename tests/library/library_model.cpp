// LibraryModel on a clock of the test's own: folders, searches, facets, roots and the team's edits.
#include "model_fixture.h"

namespace brindlehum {
namespace {

using namespace test;
using testing::ElementsAre;
using testing::HasSubstr;

TEST_F(Model, ShowsAFolderInNaturalOrder) {
    for (const char* name : {"Take 10.wav", "take 2.flac", "Take 1.wav", "b 1/x.wav", "A 12/y.wav", "a 3/z.wav"}) {
        add(name);
    }
    add(".hidden/h.wav");
    writeBytes(root / "notes.txt", "x");
    fs::create_directory_symlink(root / "b 1", root / "link to b");
    fs::create_symlink(root / "gone", root / "broken.wav");
    make({root});
    EXPECT_EQ(model->folder(), root);
    EXPECT_THAT(names(model->entries()),
                ElementsAre("a 3/", "A 12/", "b 1/", "link to b/", "Take 1.wav", "take 2.flac", "Take 10.wav"));
    EXPECT_EQ(model->entries()[4].row->channels, 2);
    model->open(root / "link to b/");
    EXPECT_TRUE(model->isListing());
    EXPECT_TRUE(model->entries().empty());
    settle();
    ASSERT_THAT(names(model->entries()), ElementsAre("x.wav"));
    EXPECT_EQ(model->entries()[0].row->path, root / "b 1" / "x.wav");
    model->goUp();
    settle();
    EXPECT_EQ(model->entries().size(), 7U);
    model->open(root / "nowhere");
    settle();
    EXPECT_TRUE(model->entries().empty());
    EXPECT_EQ(model->folderError(), std::errc::no_such_file_or_directory);
    model->open("/");
    settle();
    EXPECT_FALSE(model->folderError());
    model->goUp();
    EXPECT_EQ(model->folder(), "/");
}

TEST_F(Model, OpensTheMusicFolderWhenThereIsNoRoot) {
    make({});
    EXPECT_EQ(model->folder(), home / "home" / "Music");
    EXPECT_EQ(model->places().at(0), home / "home" / "Music");
    EXPECT_EQ(model->places().at(3), store.value().pullsFolder);
}

TEST_F(Model, RunsOneQueryForAWordTypedQuickly) {
    for (const char* name : {"door slam.wav", "dog.wav", "rain.wav"}) { add(name); }
    make({root});
    int answers = 0;
    QObject::connect(model.get(), &LibraryModel::resultsChanged, [&] { ++answers; });
    for (const char* typed : {"d", "do", "doo", "door", "door "}) {
        model->setQuery(typed);
        loop.advance(0.05);
    }
    model->setQuery("door ");
    loop.advance(0.05);
    settle();
    EXPECT_EQ(answers, 1);
    EXPECT_THAT(names(model->results()), ElementsAre("door slam.wav"));
    model->setQuery(" \t ");
    EXPECT_FALSE(model->isSearching());
    EXPECT_TRUE(model->results().empty());
    EXPECT_FALSE(model->isSearchRunning());
}

TEST_F(Model, NeverShowsTheAnswerToAnOlderQuestion) {
    for (const char* name : {"door.wav", "dog.wav", "rain.wav"}) { add(name); }
    make({root});
    int shown = 0;
    QObject::connect(model.get(), &LibraryModel::resultsChanged, [&] {
        for (const auto& name : names(model->results())) { EXPECT_TRUE(name.starts_with(model->query())) << name; }
        shown += model->query() == "rain" ? 1 : 0;
    });
    for (int i = 0; i < 50; ++i) {
        // The first one runs, or its answer waits to be shown, when the second is asked for.
        model->setQuery("do");
        loop.advance(LibraryModel::debounceSeconds);
        model->setQuery("rain");
        settle();
        EXPECT_TRUE(model->isSearchRunning());
        loop.advance(LibraryModel::debounceSeconds);
        settle();
        EXPECT_FALSE(model->isSearchRunning());
    }
    EXPECT_EQ(shown, 50);
}

TEST_F(Model, FiltersByTheFacetsOfItsRoots) {
    add("DOORWood_Slam_JD_Big.wav");
    add("RAINVege_Soft_JD_Big.wav");
    addTo(home / "other", "DOGBark_Woof.wav");
    make({root, home / "other"});
    EXPECT_EQ(model->indexedCount(), 3);
    ASSERT_FALSE(model->categories().empty());
    const std::string category = catalogRow(root / "DOORWood_Slam_JD_Big.wav").meta.category;
    model->setCategory(category);
    search();
    EXPECT_THAT(names(model->results()), ElementsAre("DOORWood_Slam_JD_Big.wav"));
    model->setLibraryFilter("No such library");
    search();
    EXPECT_TRUE(model->results().empty());
    model->clearFilters();
    EXPECT_FALSE(model->isSearching());
    model->setQuery("woof");
    search();
    EXPECT_EQ(model->results().size(), 1U);
    model->removeRoot(home / "other");
    settle();
    search();
    EXPECT_TRUE(model->results().empty());
    EXPECT_EQ(model->indexedCount(), 2);
    EXPECT_EQ(model->catalog()->facets({}).total, 2);
    EXPECT_THAT(store.value().libraryRoots, ElementsAre(root.string()));
}

TEST_F(Model, ScansEachRootOnceAndTellsHowFarItIs) {
    for (size_t i = 0; i < 20; ++i) { add(numbered("a/", i)); }
    make({});
    std::vector<LibraryScanner::Progress> progress;
    QObject::connect(model.get(), &LibraryModel::indexingChanged, [&] {
        if (const auto now = model->scanProgress(root)) { progress.push_back(*now); }
    });
    model->addRoot(root.string() + "/");
    model->addRoot(root);
    fs::create_directory_symlink(root, home / "alias");
    model->addRoot(home / "alias");
    EXPECT_THAT(store.value().libraryRoots, ElementsAre(root.string()));
    EXPECT_THAT(model->indexing(), ElementsAre(root.string()));
    settle();
    EXPECT_TRUE(model->indexing().empty());
    EXPECT_FALSE(progress.empty());
    EXPECT_EQ(model->indexedCount(), 20);
    EXPECT_EQ(model->scanProgress(root), std::nullopt);
    // Removed and added again while the rows are still going.
    model->removeRoot(root);
    model->addRoot(root);
    settle();
    EXPECT_EQ(model->indexedCount(), 20);
    // And removed in the middle of a scan.
    model->rescanAll();
    model->removeRoot(root);
    settle();
    EXPECT_EQ(model->catalog()->facets({}).total, 0);
}

TEST_F(Model, SaysOnceThatARootIsUnreachable) {
    add("a.wav");
    make({root});
    fs::rename(root, home / "away");
    int said = 0;
    QObject::connect(model.get(), &LibraryModel::messageChanged, [&] { ++said; });
    for (int i = 0; i < 3; ++i) {
        model->rescanAll();
        settle();
    }
    EXPECT_EQ(said, 1);
    EXPECT_THAT(model->message().value_or(""), HasSubstr("“sounds” can't be reached"));
    EXPECT_EQ(model->indexedCount(), 1);
}

TEST_F(Model, HandsANestedRootBackToTheRootAroundIt) {
    add("a.wav");
    const fs::path inner = add("inner/b.wav").parent_path();
    make({root, inner});
    EXPECT_EQ(catalogRow(inner / "b.wav").root, inner);
    EXPECT_EQ(model->indexedCount(), 2);
    model->removeRoot(inner);
    settle();
    EXPECT_EQ(catalogRow(inner / "b.wav").root, root);
}

TEST_F(Model, AppliesTheTeamsEditsEveryMinute) {
    add("a.wav");
    make({root});
    model->setQuery("gale");
    search();
    EXPECT_TRUE(model->results().empty());
    ChangeLog::Entry entry;
    entry.path = "a.wav";
    entry.user = "ann@one";
    for (const char* text : {"storm", "gale"}) {
        entry.changes.fields["DESCRIPTION"] = text;
        ChangeLog::append(root, entry);
    }
    loop.advance(LibraryModel::pullSeconds - 1);
    settle();
    EXPECT_EQ(model->message(), std::nullopt);
    loop.advance(1);
    settle();
    EXPECT_EQ(model->message(), "2 metadata changes from your team");
    search();
    ASSERT_EQ(model->results().size(), 1U);
    EXPECT_EQ(model->entries()[0].row->meta.description, "gale");
    loop.advance(LibraryModel::pullSeconds);
    settle();
    EXPECT_EQ(model->message(), "2 metadata changes from your team");
}

TEST_F(Model, ShowsFoldersWithoutACatalog) {
    const fs::path wave = add("a.wav");
    add("b.flac");
    catalogPath = root / "a.wav" / "Catalog.sqlite";
    make({root});
    EXPECT_EQ(model->catalog(), nullptr);
    EXPECT_THAT(model->message().value_or(""), HasSubstr("Folders can still be browsed"));
    EXPECT_THAT(names(model->entries()), ElementsAre("a.wav", "b.flac"));
    model->setQuery("a");
    search();
    EXPECT_TRUE(model->isSearching());
    EXPECT_TRUE(model->results().empty());
    EXPECT_TRUE(model->indexing().empty());
    loop.advance(LibraryModel::pullSeconds);
    model->renameToUCS({wave});
    model->save({{{"DESCRIPTION", "embedded all the same"}}, std::nullopt}, {wave});
    settle();
    EXPECT_EQ(MetaIO::read(wave).description, "embedded all the same");
    EXPECT_EQ(model->message(), "Saved metadata to 1 file(s)");

    std::optional<AudioFileInfo> info;
    InfoCache& cache = model->infoCache();
    QObject::connect(&cache, &InfoCache::loaded, [&](const fs::path& url) { info = *cache.info(url); });
    EXPECT_EQ(cache.info(wave), nullptr);
    EXPECT_EQ(cache.info(root / "no.wav"), nullptr);
    cache.queue().drain();
    loop.drain();
    ASSERT_TRUE(info);
    EXPECT_EQ(info->url, wave);
    EXPECT_EQ(info->frames, 480);
}

TEST_F(Model, EndsInTheMiddleOfEverything) {
    for (size_t i = 0; i < 300; ++i) { add(numbered("", i)); }
    const fs::path wave = root / "7.wav";
    model = std::make_unique<LibraryModel>(settingsWith({root}), loop, catalogPath);
    model->setQuery("1");
    loop.advance(LibraryModel::debounceSeconds);
    model->save({{{"DESCRIPTION", "the last word"}}, std::nullopt}, {wave});
    EXPECT_TRUE(model->finishEdits(60)) << "though the main thread runs nothing meanwhile";
    EXPECT_EQ(MetaIO::read(wave).description, "the last word");
    model->save({{{"DESCRIPTION", "after that"}}, std::nullopt}, {wave});
    model.reset();
    EXPECT_EQ(MetaIO::read(wave).description, "after that");
    loop.drain();
}

}  // namespace
}  // namespace brindlehum
