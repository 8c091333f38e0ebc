// LibrarySearch: when the catalog is asked, which answer is shown, and how facets narrow it.
#include "library/model/library_search.h"

#include "model_fixture.h"

namespace brindlehum {
namespace {

using namespace test;
using testing::ElementsAre;

class Search : public LibraryPart {
protected:
    LibrarySearch search{store, loop, &catalog, realPaths};
    void settle() {
        settleWhile([this] { return search.isBusy(); });
    }
    void answer() {
        loop.advance(LibrarySearch::debounceSeconds);
        settle();
    }
};

TEST_F(Search, OneQuestionForAWordTypedQuickly) {
    for (const char* name : {"door slam.wav", "dog.wav", "rain.wav"}) { add(name); }
    scan();
    int answers = 0;
    QObject::connect(&search, &LibrarySearch::resultsChanged, [&] { ++answers; });
    for (const char* typed : {"d", "do", "doo", "door", "door "}) {
        search.setQuery(typed);
        loop.advance(0.05);
    }
    answer();
    EXPECT_EQ(answers, 1);
    EXPECT_THAT(names(search.results()), ElementsAre("door slam.wav"));
    search.setQuery(" \t ");
    EXPECT_TRUE(search.results().empty());
}

TEST_F(Search, TheAnswerToAnOlderQuestionIsNeverShown) {
    for (const char* name : {"door.wav", "dog.wav", "rain.wav"}) { add(name); }
    scan();
    int shown = 0;
    QObject::connect(&search, &LibrarySearch::resultsChanged, [&] {
        for (const auto& name : names(search.results())) { EXPECT_TRUE(name.starts_with(search.query())) << name; }
        shown += search.query() == "rain" ? 1 : 0;
    });
    for (int i = 0; i < 50; ++i) {
        // The first one runs, or its answer waits to be shown, when the second is asked.
        search.setQuery("do");
        loop.advance(LibrarySearch::debounceSeconds);
        search.setQuery("rain");
        settle();
        EXPECT_TRUE(search.isRunning());
        answer();
        EXPECT_FALSE(search.isRunning());
    }
    EXPECT_EQ(shown, 50);
}

TEST_F(Search, FacetsOfTheRootsNarrowIt) {
    const fs::path door = add("DOORWood_Slam_JD_Big.wav");
    add("RAINVege_Soft_JD_Big.wav");
    addTo(home / "other", "DOGBark_Woof.wav");
    scan();
    LibraryScanner::scan(home / "other", catalog);
    setRoots({root, home / "other"});
    search.refresh();
    settle();
    EXPECT_EQ(search.categories().size(), 3U);
    search.setCategory(catalogRow(door).meta.category);
    answer();
    EXPECT_THAT(names(search.results()), ElementsAre("DOORWood_Slam_JD_Big.wav"));
    search.setLibraryFilter("No such library");
    answer();
    EXPECT_TRUE(search.results().empty());
    search.clearFilters();
    search.setQuery("woof");
    setRoots({root});
    search.refresh();
    answer();
    EXPECT_TRUE(search.results().empty());
    EXPECT_EQ(search.indexedCount(), 2);
}

}  // namespace
}  // namespace brindlehum
