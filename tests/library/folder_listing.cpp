// FolderListing: the order of the entries, the way up, and folders that can't be read.
#include "library/model/folder_listing.h"

#include "model_fixture.h"

namespace brindlehum {
namespace {

using namespace test;
using testing::ElementsAre;

class Listing : public LibraryPart {
protected:
    FolderListing listing{loop, &catalog};
    void settle() {
        settleWhile([this] { return listing.isBusy(); });
    }
};

TEST_F(Listing, FoldersThenSoundsInNaturalOrder) {
    for (const char* name : {"Take 10.wav", "take 2.flac", "Take 1.wav", "b 1/x.wav", "A 12/y.wav", "a 3/z.wav"}) {
        add(name);
    }
    add(".hidden/h.wav");
    writeBytes(root / "notes.txt", "x");
    fs::create_directory_symlink(root / "b 1", root / "link to b");
    fs::create_symlink(root / "gone", root / "broken.wav");
    scan();
    listing.open(root);
    settle();
    EXPECT_THAT(names(listing.entries()),
                ElementsAre("a 3/", "A 12/", "b 1/", "link to b/", "Take 1.wav", "take 2.flac", "Take 10.wav"));
    EXPECT_EQ(listing.entries()[4].row->channels, 2);
    listing.open(root / "link to b/");
    settle();
    ASSERT_THAT(names(listing.entries()), ElementsAre("x.wav"));
    EXPECT_EQ(listing.entries()[0].row->path, root / "b 1" / "x.wav");
    listing.goUp();
    settle();
    EXPECT_EQ(listing.entries().size(), 7U);
    listing.open(root / "nowhere");
    settle();
    EXPECT_EQ(listing.error(), std::errc::no_such_file_or_directory);
}

TEST_F(Listing, ARefreshAnnouncesOnlyWhatIsNew) {
    add("a.wav");
    int announced = 0;
    QObject::connect(&listing, &FolderListing::entriesChanged, [&] { ++announced; });
    listing.open(root);
    listing.refresh();  // takes the place of the listing, and must be announced in its stead
    settle();
    EXPECT_EQ(announced, 2);
    listing.refresh();
    settle();
    EXPECT_EQ(announced, 2);
    add("b.wav");
    listing.refresh();
    settle();
    EXPECT_EQ(announced, 3);
}

}  // namespace
}  // namespace brindlehum
