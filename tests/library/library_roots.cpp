// LibraryRoots: scans, their progress and problems, rows of removed roots, and the team's edits.
#include "library/model/library_roots.h"

#include "library/team/change_log.h"
#include "model_fixture.h"

namespace brindlehum {
namespace {

using namespace test;
using testing::ElementsAre;
using testing::HasSubstr;

class Roots : public LibraryPart {
protected:
    LibraryRoots library{store, loop, &catalog, realPaths, editQueue};
    std::vector<std::string> said;

    void SetUp() override {
        LibraryPart::SetUp();
        QObject::connect(&library, &LibraryRoots::said, [this](const std::string& text) { said.push_back(text); });
    }
    void settle() {
        settleWhile([this] { return library.isScanning() || editQueue.pending() > 0; });
    }
    void rescan() {
        library.rescanAll();
        settle();
    }
};

TEST_F(Roots, EachIsScannedOnceAndAnnouncesItsProgress) {
    for (size_t i = 0; i < 20; ++i) { add(numbered("a/", i)); }
    std::vector<LibraryScanner::Progress> progress;
    QObject::connect(&library, &LibraryRoots::indexingChanged, [&] {
        if (const auto now = library.scanProgress(root)) { progress.push_back(*now); }
    });
    library.add(root.string() + "/");
    fs::create_directory_symlink(root, home / "alias");
    library.add(home / "alias");
    EXPECT_THAT(roots(), ElementsAre(root.string()));
    settle();
    EXPECT_TRUE(library.indexing().empty());
    EXPECT_FALSE(progress.empty());
    EXPECT_EQ(rowCount(), 20);
    // Removed and added again while the rows are still going.
    library.remove(root);
    library.add(root);
    settle();
    EXPECT_EQ(rowCount(), 20);
    // And removed in the middle of a scan.
    library.rescanAll();
    library.remove(root);
    settle();
    EXPECT_EQ(rowCount(), 0);
}

TEST_F(Roots, AnUnreachableOneIsReportedOnceAndUnsaidWhenItIsBack) {
    add("a.wav");
    setRoots({root});
    rescan();
    std::vector<std::string> unsaid;
    QObject::connect(&library, &LibraryRoots::unsaid, [&](const std::string& text) { unsaid.push_back(text); });
    fs::rename(root, home / "away");
    rescan();
    rescan();
    EXPECT_THAT(said, ElementsAre(HasSubstr("“sounds” can't be reached")));
    EXPECT_EQ(library.problems().at(root), said[0]);
    fs::rename(home / "away", root);
    rescan();
    EXPECT_EQ(unsaid, said);
    EXPECT_TRUE(library.problems().empty());
}

TEST_F(Roots, ANestedOneReturnsToTheRootAroundItWhenRemoved) {
    add("a.wav");
    const fs::path inner = add("inner/b.wav").parent_path();
    setRoots({root, inner});
    rescan();
    EXPECT_EQ(catalogRow(inner / "b.wav").root, inner);
    library.remove(inner);
    settle();
    EXPECT_EQ(catalogRow(inner / "b.wav").root, root);
}

TEST_F(Roots, TheTeamsEditsWaitForTheirFilesAndAreAppliedEveryMinute) {
    const fs::path file = add("a.caf");
    setRoots({root});
    ChangeLog::Entry entry;
    entry.path = "a.caf";
    entry.user = "ann@one";
    entry.time = std::chrono::sys_days(std::chrono::year(2024) / 5 / 1);
    entry.changes.fields["KEYWORDS"] = "before the first scan";
    ChangeLog::append(root, entry);
    library.pull();
    settle();
    rescan();
    EXPECT_EQ(catalogRow(file).meta.keywords, "before the first scan");
    entry.changes.fields.clear();
    for (const char* text : {"storm", "gale"}) {
        entry.changes.fields["DESCRIPTION"] = text;
        ChangeLog::append(root, entry);
    }
    loop.advance(LibraryRoots::pullSeconds);
    settle();
    EXPECT_EQ(catalogRow(file).meta.description, "gale");
    loop.advance(LibraryRoots::pullSeconds);
    settle();
    EXPECT_THAT(said, ElementsAre("2 metadata changes from your team"));
}

}  // namespace
}  // namespace brindlehum
