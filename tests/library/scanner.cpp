// LibraryScanner: the files it finds, reads again, removes and leaves alone.
#include <sys/stat.h>

#include <chrono>
#include <set>

#include "library/team/metadata_save.h"
#include "sound_folder.h"

namespace brindlehum {
namespace {

using namespace test;
using namespace std::chrono_literals;
using LibraryScanner::Progress;
using LibraryScanner::Result;
using testing::HasSubstr;
using Outcome = Result::Outcome;

using Scanner = SoundFolder;

// Links to one file, which are faster to make.
void addMany(const fs::path& first, size_t count) {
    for (size_t i = 1; i < count; ++i) { fs::create_hard_link(first, first.parent_path() / numbered("take ", i)); }
}

TEST_F(Scanner, CataloguesEverySoundAndNothingElse) {
    const std::set<std::string> sounds = {add("a.wav"), add("deep/er/b.WAV"), add("c.flac"),
                                          add("DOORWood_Slam Heavy_JD_Take 3_b.wav"), root / "broken.mp3"};
    writeBytes(root / "broken.mp3", "no sound at all");
    writeBytes(root / "notes.txt", "hello");
    add(".hidden/d.wav");
    add(".e.wav");
    fs::create_symlink(root / "a.wav", root / "link.wav");
    fs::create_directory_symlink(root, root / "deep" / "circle");
    ASSERT_EQ(::mkfifo((root / "pipe.wav").c_str(), 0600), 0);
    std::vector<Progress> seen;
    const Result result = scan({.progress = [&](const Progress& now) { seen.push_back(now); }});
    EXPECT_EQ(result.read, 5);
    EXPECT_EQ(result.message, std::nullopt);
    std::set<std::string> rows;
    for (const auto& row : catalog.search({}, 100)) { rows.insert(row.path); }
    EXPECT_EQ(rows, sounds);

    const auto slam = catalog.row(root / "DOORWood_Slam Heavy_JD_Take 3_b.wav").value();
    EXPECT_DOUBLE_EQ(slam.duration, 0.01);
    EXPECT_EQ(slam.formatSummary(), "48 kHz · 16-bit · 2 ch");
    EXPECT_EQ(slam.meta.fxName, "Slam Heavy");
    EXPECT_EQ(catalog.row(root / "broken.mp3")->meta.fxName, "broken");
    ASSERT_FALSE(seen.empty());
    EXPECT_EQ(seen.back(), (Progress{Progress::Phase::removing, 5, 5}));
    EXPECT_TRUE(std::ranges::is_sorted(seen, {}, &Progress::phase));
}

TEST_F(Scanner, ReadsChangedFilesAgainAndRemovesRowsOfMissingOnes) {
    const auto then = std::chrono::file_clock::from_sys(std::chrono::sys_seconds(1'500'000'000s)) + 250ms;
    const fs::path a = root / "a.wav";
    const struct {
        const char* name;
        std::function<void()> change;
        int64_t read, removed;
    } cases[] = {
        {"touched", [&] { fs::last_write_time(a, then + 2ms); }, 1, 0},
        {"as good as the same time", [&] { fs::last_write_time(a, then + 500us); }, 0, 0},
        {"another size at the same time", [&] { writeBytes(a, "short"), fs::last_write_time(a, then); }, 1, 0},
        {"moved", [&] { fs::create_directory(root / "new"), fs::rename(a, root / "new" / "a.wav"); }, 1, 1},
        {"replaced by a link", [&] { fs::rename(a, home / "out.wav"), fs::create_symlink(home / "out.wav", a); }, 0, 1},
        {"its folder hidden", [&] { fs::rename(root / "sub", root / ".sub"); }, 0, 2},
        {"all but the change logs gone", [&] { fs::remove_all(root), fs::create_directories(root / ".brindlehum"); }, 0,
         3},
    };
    for (const auto& [name, change, read, removed] : cases) {
        SCOPED_TRACE(name);
        fs::remove_all(root);
        catalog.removeRoot(root);
        for (const char* each : {"a.wav", "sub/b.wav", "sub/c.wav"}) { fs::last_write_time(add(each), then); }
        ASSERT_EQ(scan().read, 3);
        change();
        const Result result = scan();
        EXPECT_EQ(std::pair(result.read, result.removed), std::pair(read, removed));
        const Result again = scan();
        EXPECT_EQ(again.read + again.removed, 0);
    }
}

TEST_F(Scanner, KeepsTheRowsOfAnUnreachableRoot) {
    const struct {
        const char* told;
        std::function<void()> replace;
    } cases[] = {{"can't be reached", [] {}},
                 {"can't be reached", [&] { writeBytes(root, "x"); }},
                 {"is empty", [&] { fs::create_directory(root); }},
                 {"is empty", [&] { fs::create_directories(root / ".Trash-1000"); }}};
    for (const auto& [told, replace] : cases) {
        add("a.wav");
        scan();
        fs::rename(root, home / "away");
        replace();
        const Result result = scan();
        EXPECT_EQ(result.outcome, Outcome::unreachable);
        EXPECT_THAT(result.message.value_or(""), HasSubstr("“sounds” " + std::string(told)));
        EXPECT_EQ(rowCount(), 1);
        fs::remove_all(root);
        fs::rename(home / "away", root);
    }
}

TEST_F(Scanner, ReportsUnreadableFoldersAndKeepsTheirRows) {
    // Deeper than the longest path that can be opened, which fails for root, too.
    const std::string name(250, 'd');
    fs::path deep = root;
    const fs::path before = fs::current_path();
    fs::current_path(root);
    for (int level = 0; level < 17; ++level) {
        fs::create_directory(name);
        fs::current_path(name);
        deep /= name;
    }
    fs::current_path(before);
    const std::string told = "Couldn't read 1 folder in “sounds”: “" + std::string(60, 'd') + "…” (File name too long)";
    const Result first = scan();
    EXPECT_EQ(first.unread, 1);
    EXPECT_THAT(first.message.value_or(""), HasSubstr(told)) << "a first scan, without any row";
    catalog.write([&] {
        for (const fs::path& path : {deep / "kept.wav", root / "gone.wav"}) {
            catalog.upsert(path, root, {1, 1}, {}, {});
        }
    });
    const Result result = scan();
    EXPECT_EQ(result.removed, 1);
    EXPECT_TRUE(catalog.row(deep / "kept.wav").has_value());
    EXPECT_THAT(result.message.value_or(""), HasSubstr(told));
}

TEST_F(Scanner, KeepsTheRowsOfAnUnmountedVolumeWithinTheRoot) {
    writeBytes(home / "fstab", "# comment\nnas:/s " + (root / "nas").string() + " nfs defaults 0 0\n");
    for (const char* name : {"a.wav", "nas/deep/b.wav", "emptied/c.wav"}) { add(name); }
    const LibraryScanner::Options options{.mountTable = home / "fstab"};
    scan(options);
    fs::remove_all(root / "nas" / "deep");
    fs::remove(root / "emptied" / "c.wav");
    const Result result = scan(options);
    EXPECT_EQ(result.removed, 1);
    EXPECT_TRUE(catalog.row(root / "nas" / "deep" / "b.wav").has_value());
    EXPECT_TRUE(result.message.has_value());
    add("nas/other.wav");
    EXPECT_EQ(scan(options).removed, 1) << "it is mounted again, and without that file";
}

TEST_F(Scanner, RemovesNothingWhenTheRootIsReplacedDuringTheScan) {
    addMany(add("take 0.wav"), 1100);
    add("last.wav");
    scan();
    fs::remove(root / "last.wav");
    bool moved = false;
    const Result result = scan({.progress = [&](const Progress& now) {
        if (now.found < 1000 || std::exchange(moved, true)) { return; }
        fs::rename(root, home / "away");
        fs::create_directory(root);
    }});
    EXPECT_TRUE(moved);
    EXPECT_EQ(result.outcome, Outcome::unreachable);
    EXPECT_EQ(rowCount(), 1101);
}

TEST_F(Scanner, CommitsInBatchesAndResumesAfterAStop) {
    addMany(add("take 0.wav"), LibraryScanner::batchFiles + 1);
    Catalog other(catalogFile);
    std::set<int64_t> committed;
    std::stop_source stop;
    LibraryScanner::Options options{.progress = [&](const Progress& now) {
        committed.insert(other.facets({}).total);
        if (now.phase == Progress::Phase::reading && now.done >= 256) { stop.request_stop(); }
    }};
    options.stop = stop.get_token();
    EXPECT_EQ(scan(options).outcome, Outcome::cancelled);
    EXPECT_EQ(rowCount(), 256);
    EXPECT_EQ(scan().read, 1);
    EXPECT_THAT(committed, testing::ElementsAre(0, 256));
}

TEST_F(Scanner, KeepsAnEditMadeDuringTheScan) {
    const fs::path wave = add("a.wav");
    const fs::path flac = add("b.flac");
    bool edited = false;
    scan({.progress = [&](const Progress& now) {
        if (now.phase != Progress::Phase::reading || std::exchange(edited, true)) { return; }
        for (const fs::path& file : {wave, flac}) {
            MetadataSave::save(file, {{{"DESCRIPTION", "edited"}}, 4}, &catalog, {}, "me@here");
        }
    }});
    for (const fs::path& file : {wave, flac}) {
        EXPECT_EQ(metaOf(file).description, "edited");
        EXPECT_EQ(metaOf(file).rating, 4);
    }
}

}  // namespace
}  // namespace brindlehum
