// LibraryModel: how a change in one part reaches the others, life without a catalog, and the end of the process.
#include "library/model/library_model.h"

#include "catalog_test.h"
#include "library/meta/meta_io.h"
#include "model_fixture.h"

namespace brindlehum {
namespace {

using namespace test;
using testing::ElementsAre;
using testing::HasSubstr;

class Library : public LibraryPart {
protected:
    void make(const std::vector<std::string>& roots) {
        setRoots(roots);
        model = std::make_unique<LibraryModel>(store, loop, catalogPath);
        settle();
    }
    void settle() {
        settleWhile([this] { return model->isBusy(); });
    }
    fs::path catalogPath = home / "data" / "Catalog.sqlite";
    std::unique_ptr<LibraryModel> model;
};

TEST_F(Library, AnEditReachesListingSearchFacetsAndStatusLine) {
    const fs::path file = add("a.wav");
    make({root});
    model->search().setQuery("gale");
    loop.advance(LibrarySearch::debounceSeconds);
    settle();
    EXPECT_TRUE(model->search().results().empty());
    model->edits().save({{{"CATEGORY", "WIND"}, {"CATID", "WINDGust"}, {"FXNAME", "Gale"}}, std::nullopt}, {file});
    settle();
    EXPECT_EQ(model->message(), "Saved metadata to 1 file");
    loop.advance(LibraryModel::readingSeconds);
    EXPECT_EQ(model->message(), "") << "there was time to read it";
    EXPECT_EQ(model->listing().entries()[0].row->meta.fxName, "Gale");
    EXPECT_EQ(model->search().categories().size(), 1U);
    loop.advance(LibrarySearch::debounceSeconds);
    settle();
    ASSERT_EQ(model->search().results().size(), 1U);
    model->edits().renameToUCS({file});
    settle();
    EXPECT_THAT(names(model->listing().entries()), ElementsAre("WINDGust_Gale.wav"));
    EXPECT_EQ(model->search().indexedCount(), 1);
}

TEST_F(Library, FoldersAreShownAndFilesEditedWithoutACatalog) {
    const fs::path wave = add("a.wav");
    add("b.flac");
    catalogPath = root / "a.wav" / "Catalog.sqlite";
    make({root});
    EXPECT_EQ(model->catalog(), nullptr);
    EXPECT_THAT(model->message().value_or(""), HasSubstr("Folders can still be browsed"));
    EXPECT_THAT(names(model->listing().entries()), ElementsAre("a.wav", "b.flac"));
    model->search().setQuery("a");
    loop.advance(LibraryRoots::pullSeconds);
    EXPECT_FALSE(model->search().isRunning());
    model->edits().renameToUCS({wave});
    model->edits().save({{{"DESCRIPTION", "embedded all the same"}}, std::nullopt}, {wave});
    settle();
    EXPECT_EQ(MetaIO::read(wave).description, "embedded all the same");

    std::vector<fs::path> loaded;
    InfoCache& cache = model->infoCache();
    QObject::connect(&cache, &InfoCache::loaded, [&](const fs::path& path) { loaded.push_back(path); });
    EXPECT_EQ(cache.info(wave), nullptr);
    EXPECT_EQ(cache.info(root / "no.wav"), nullptr);
    settleWhile([&] { return cache.isBusy(); });
    EXPECT_THAT(loaded, ElementsAre(wave));
    EXPECT_EQ(cache.info(wave)->frames, 480);
}

TEST_F(Library, CatalogThatIsLockedAtTheStartIsTriedAgain) {
    const fs::path file = add("a.wav");
    fs::create_directories(catalogPath.parent_path());
    Catalog{catalogPath};
    std::optional<PlainDatabase> other(catalogPath);
    other->exec("PRAGMA locking_mode=EXCLUSIVE");
    other->exec("BEGIN IMMEDIATE");
    setRoots({root});
    model = std::make_unique<LibraryModel>(store, loop, catalogPath);
    EXPECT_TRUE(model->isBusy()) << "the main thread doesn't wait";
    settle();
    EXPECT_EQ(model->catalog(), nullptr);
    EXPECT_EQ(
        model->message(),
        "The library catalog can't be opened: another program has locked it. Brindlehum keeps trying; folders can "
        "still be browsed.");
    EXPECT_THAT(names(model->listing().entries()), ElementsAre("a.wav"));
    other.reset();
    loop.advance(LibraryModel::retrySeconds);
    settle();
    ASSERT_NE(model->catalog(), nullptr);
    EXPECT_EQ(model->catalogError(), "");
    EXPECT_EQ(model->message(), "");
    EXPECT_EQ(model->search().indexedCount(), 1);
    EXPECT_TRUE(model->listing().entries()[0].row.has_value());
}

TEST_F(Library, EndsInTheMiddleOfEverythingWithItsEditsDone) {
    for (size_t i = 0; i < 300; ++i) { add(numbered("", i)); }
    const fs::path wave = root / "7.wav";
    setRoots({root});
    model = std::make_unique<LibraryModel>(store, loop, catalogPath);
    model->search().setQuery("1");
    loop.advance(LibrarySearch::debounceSeconds);
    model->edits().save({{{"DESCRIPTION", "the last word"}}, std::nullopt}, {wave});
    EXPECT_TRUE(model->edits().finish(60)) << "though the main thread runs nothing meanwhile";
    EXPECT_EQ(MetaIO::read(wave).description, "the last word");
    model->edits().save({{{"DESCRIPTION", "after that"}}, std::nullopt}, {wave});
    model.reset();
    EXPECT_EQ(MetaIO::read(wave).description, "after that");
    loop.drain();
}

}  // namespace
}  // namespace brindlehum
