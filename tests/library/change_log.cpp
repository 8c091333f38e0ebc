// ChangeLog: entries in and out, which of them are applied, and two processes on one shared folder.
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include "base/error.h"
#include "library/meta/meta_io.h"
#include "library/team/change_log.h"
#include "library/team/log_owner.h"
#include "sound_folder.h"
#include "support/child.h"
#include "support/refusal.h"

namespace brindlehum {
namespace {

using namespace test;
using ChangeLog::Entry;
using std::chrono::sys_seconds;

Entry edit(const std::string& path, const std::string& tag, const std::string& text, const std::string& user) {
    Entry entry;
    entry.path = path;
    entry.changes.fields[tag] = text;
    entry.user = user;
    entry.time = sys_seconds{std::chrono::seconds(1'700'000'000)};
    entry.embedded = false;
    return entry;
}

Entry describe(const std::string& path, const std::string& text, const std::string& user = "ann@one") {
    return edit(path, "DESCRIPTION", text, user);
}

std::vector<std::string> linesOf(const fs::path& file) {
    std::vector<std::string> lines;
    std::ifstream stream(file);
    for (std::string line; std::getline(stream, line);) { lines.push_back(line); }
    return lines;
}

std::string line(const Entry& entry) {
    return entry.encoded().value() + "\n";
}

class Log : public SoundFolder {
protected:
    void SetUp() override {
        SoundFolder::SetUp();
        add("a.wav");
        add("b/c.caf");
        scan();
    }
    // As a colleague's machine would leave it.
    void write(const std::string& bytes, const std::string& name = "ann@one.jsonl") {
        fs::create_directories(changes);
        std::ofstream(changes / name, std::ios::app | std::ios::binary) << bytes;
    }
    int pull() { return ChangeLog::pull(root, catalog, "me@here"); }
    const fs::path changes = root / ".brindlehum" / "changes";
};

TEST(ChangeLogEntry, DecodesWholeEntriesAndNothingElse) {
    const std::string good =
        R"({"path": "b/c.flac", "fields": {"DESCRIPTION": "wind & rain\n", "LATER": "x"}, "user": "ann@one",
            "time": "2023-11-14T22:13:20Z", "colour": 3})";
    const auto entry = Entry::decode(good).value();
    EXPECT_EQ(entry.path, "b/c.flac");
    EXPECT_EQ(entry.changes.fields.at("DESCRIPTION"), "wind & rain\n");
    EXPECT_EQ(entry.changes.rating, std::nullopt);
    EXPECT_EQ(entry.time, sys_seconds(std::chrono::seconds(1'700'000'000)));
    EXPECT_EQ(entry.embedded, std::nullopt);
    EXPECT_EQ(Entry::decode(entry.encoded().value()), entry);
    const auto with = [&](const std::string& from, const std::string& to) {
        std::string text = good;
        return Entry::decode(text.replace(text.find(from), from.size(), to));
    };
    EXPECT_EQ(with("\"colour\"", "\"rating\"")->changes.rating, 3);
    for (const char* rating : {"\"rating\": -5", "\"rating\": 6"}) {
        EXPECT_EQ(with("\"colour\": 3", rating)->changes.rating, std::nullopt) << rating;
    }
    using std::chrono::microseconds;
    const EditTime unset = std::chrono::sys_days(std::chrono::year(2000) / 1 / 1);
    const std::pair<const char*, EditTime> times[] = {
        {"2023-11-14T23:13:20+01:00", entry.time},
        {"2023-11-14T17:43:20-0430", entry.time},
        {"2023-11-14T22:13:20.75Z", entry.time + microseconds(750'000)},
        {"2023-11-14T22:13:20.0000019+00:00", entry.time + microseconds(1)},
        {"1970-01-01T00:00:00Z", unset},
        {"9999-12-31T23:59:59Z", unset}};
    for (const auto& [text, time] : times) {
        const auto read = with("2023-11-14T22:13:20Z", text).value();
        EXPECT_EQ(read.time, time) << text;
        EXPECT_EQ(Entry::decode(read.encoded().value()), read);
    }
    const std::pair<const char*, const char*> faults[] = {{"\"path\"", "\"Path\""},
                                                          {"\"user\"", "\"who\""},
                                                          {"\"time\"", "\"when\""},
                                                          {"\"fields\"", "\"field\""},
                                                          {"\"b/c.flac\"", "7"},
                                                          {"\"x\"", "1"},
                                                          {"{\"DESC", "[{\"DESC"},
                                                          {"2023-11-14T", "14.11.2023 "},
                                                          {"11-14T", "13-14T"},
                                                          {"20Z", "20Zulu"},
                                                          {"\"colour\": 3", "\"rating\": \"3\""},
                                                          {"\"colour\": 3", "\"rating\": 1e99"},
                                                          {"\"colour\": 3", "\"embedded\": 1"},
                                                          {"\"colour\": 3", "\"from\": 1"},
                                                          {"wind", "\xFF"}};
    for (const auto& [from, to] : faults) { EXPECT_FALSE(with(from, to)) << from << " as " << to; }
    EXPECT_FALSE(describe("a.wav", "no text \xE9").encoded());
    EXPECT_EQ(Entry::decode(describe("caf\xE9/a.wav", "x").encoded().value()), describe("caf\xE9/a.wav", "x"));
}

TEST_F(Log, AppendsWholeLinesToTheOwnersFile) {
    ChangeLog::append(root, describe("a.wav", "first", "ann@lab/2"));
    const fs::path file = changes / "ann@lab-2.jsonl";
    ASSERT_EQ(linesOf(file).size(), 1U);
    // A writer was killed in the middle of its line.
    std::ofstream(file, std::ios::app) << "{\"path\": \"a.w";
    ChangeLog::append(root, describe("a.wav", std::string(100'000, 'x'), "ann@lab/2"));
    EXPECT_THROW(ChangeLog::append(root, describe("a.wav", "can't be told \xE9", "ann@lab/2")), Error);
    EXPECT_EQ(linesOf(file).size(), 3U);
    EXPECT_EQ(pull(), 2);
    EXPECT_EQ(metaOf(root / "a.wav").description, std::string(100'000, 'x'));
}

// Of each machine: its user, host and machine id, and the data folder, which may be another one's, too.
TEST(LogOwner, IsAUserOnAMachineWhateverItsHostIsCalled) {
    const TempFolder temp;
    const fs::path mine = temp / "mine";
    const std::string first = LogOwner{"ann", "studio", "1", mine}.name();
    EXPECT_THAT(first, testing::MatchesRegex("ann@studio#[0-9a-f]{12}"));
    EXPECT_EQ((LogOwner{"ann", "renamed", "1", mine}.name()), first);
    const std::string twin = LogOwner{"ann", "studio", "2", temp / "twin"}.name();
    EXPECT_EQ((LogOwner{"ann", "studio", "2", mine}.name()), twin) << "with a copy of the home folder";
    EXPECT_EQ((LogOwner{"ann", "renamed", "1", mine}.name()), first);
    const std::string random = LogOwner{"ann", "studio", "", temp / "random"}.name();
    EXPECT_EQ((LogOwner{"ann", "renamed", "", temp / "random"}.name()), random);
    EXPECT_NE(random, (LogOwner{"ann", "studio", "", temp / "other"}.name()));
    writeBytes(temp / "file", "");
    EXPECT_EQ((LogOwner{"ann", "studio", "", temp / "file"}.name()), "ann@studio") << "no folder";

    const std::string identity = first.substr(first.find('#'));
    const std::pair<std::string, bool> logs[] = {{first, true},
                                                 {"ann@studio", true},
                                                 {"ann@renamed" + identity, true},
                                                 {twin, false},
                                                 {"bob@studio" + identity, false},
                                                 {"ann@other", false},
                                                 {"ann", false}};
    for (const auto& [log, isOwn] : logs) { EXPECT_EQ(LogOwner::isOwn(log, first), isOwn) << log; }
}

TEST_F(Log, LogIsAsOpenAsTheRoot) {
    ::chmod(root.c_str(), 02770);
    const mode_t before = ::umask(077);
    ChangeLog::append(root, describe("a.wav", "x"));
    ::umask(before);
    const std::pair<fs::path, int> modes[] = {
        {changes.parent_path(), 02770}, {changes, 02770}, {changes / "ann@one.jsonl", 0640}};
    for (const auto& [path, mode] : modes) { EXPECT_EQ(fs::status(path).permissions(), fs::perms(mode)) << path; }
}

// Unlike silence, a reason can be shown. Nothing waits for ever, and no other file of the user's is written to.
TEST_F(Log, AppendSaysWhyItFailed) {
    const auto reason = [&] { return refusalOf([&] { ChangeLog::append(root, describe("a.wav", "x")); }).text; };
    EXPECT_EQ(reason(), "");
    const fs::path file = changes / "ann@one.jsonl";
    {
        const int holder = ::open(file.c_str(), O_RDWR | O_CLOEXEC);
        ::flock(holder, LOCK_EX);
        EXPECT_THAT(reason(), testing::HasSubstr("locked"));
        ::close(holder);
    }
    fs::create_hard_link(file, home / "diary");
    EXPECT_THAT(reason(), testing::HasSubstr("second name"));
    fs::remove_all(changes);
    fs::create_directory_symlink(home, changes);
    EXPECT_THAT(reason(), testing::HasSubstr("Not a directory"));
    EXPECT_EQ(linesOf(home / "diary").size(), 1U);
}

TEST_F(Log, PullMergesAllLogsByTimeIntoTheCatalogAlone) {
    const fs::path file = root / "b" / "c.caf";
    const std::string before = readBytes(file);
    const auto at = [](Entry entry, int seconds) {
        entry.time += std::chrono::seconds(seconds);
        return entry;
    };
    Entry rated = describe("b/c.caf", "");
    rated.changes = {{}, 3};
    write(line(at(describe("b/c.caf", "wind"), 2)) + "{broken}\n\n" + line(describe("not/here.caf", "x")) +
          line(rated));
    write(line(at(describe("b/c.caf", "mine, but older"), 1)), "me@here.jsonl");
    write(line(edit("b/c.caf", "KEYWORDS", "gale", "me@there")) + "{}\n" + line(describe("b/c.caf", "oldest")),
          "me@there.jsonl");
    write(line(describe("b/c.caf", "not a log")), "notes.json");
    EXPECT_EQ(pull(), 4) << "one of ours, and one that is out of date";
    const SoundMeta meta = metaOf(file);
    EXPECT_EQ(meta.description, "wind");
    EXPECT_EQ(meta.rating, 3);
    EXPECT_EQ(meta.keywords, "gale");
    EXPECT_EQ(meta.fxName, "c") << "what no entry names stays";
    EXPECT_EQ(readBytes(file), before);
    EXPECT_EQ(scan().read, 0);
    EXPECT_EQ(pull(), 0);
    addTo(root, "not/here.caf");
    scan();
    EXPECT_EQ(metaOf(root / "not" / "here.caf").description, "x") << "known before its file";
    writeBytes(file, before);
    EXPECT_EQ(scan().read, 1);
    EXPECT_EQ(metaOf(file).description, "wind") << "after a touch, too";
    catalog.removeRoot(root);
    scan();
    EXPECT_EQ(metaOf(file).description, "");
    EXPECT_EQ(pull(), 4) << "a root that was removed is read from the start";
    EXPECT_EQ(metaOf(file).description, "wind");
}

// At the start, the file holds words that are newer than all logs.
TEST_F(Log, FileThatHoldsItsWordsIsReadInsteadOfTheLog) {
    const fs::path file = root / "a.wav";
    SoundMeta held;
    held.description = "in the file";
    MetaIO::write(held, file);
    scan();
    Entry embedded = describe("a.wav", "long ago");
    embedded.embedded = true;
    Entry older = embedded;  // by a version that didn't say where the words went
    older.embedded = std::nullopt;
    write(line(embedded) + line(older));
    pull();
    EXPECT_EQ(metaOf(file).description, "in the file");
    held.description = "in the file now";
    held.notes = "by another program";
    MetaIO::write(held, file);
    embedded.time += std::chrono::seconds(1);
    write(line(embedded));
    EXPECT_EQ(pull(), 1);
    EXPECT_EQ(metaOf(file).description + metaOf(file).notes, "in the file nowby another program");
    EXPECT_EQ(scan().read, 0) << "the row has the stamp of what was read";
    // A save that couldn't embed leaves its words to the log, until one can.
    Entry apart = describe("a.wav", "too much for the file");
    apart.time = embedded.time + std::chrono::seconds(1);
    write(line(apart));
    pull();
    EXPECT_EQ(metaOf(file).description, apart.changes.fields.at("DESCRIPTION"));
    embedded.time = apart.time + std::chrono::seconds(1);
    write(line(embedded));
    pull();
    EXPECT_EQ(metaOf(file).description, "in the file now");
}

TEST_F(Log, LinesAreReadWhenTheyAreWholeAndAReplacedLogFromItsStart) {
    const auto text = [this] { return metaOf(root / "a.wav").description; };
    const std::string late = line(describe("a.wav", "late"));
    write(line(describe("a.wav", "early")) + late.substr(0, 30));
    EXPECT_EQ(pull(), 1);
    EXPECT_EQ(pull(), 0);
    EXPECT_EQ(text(), "early");
    write(late.substr(30));
    EXPECT_EQ(pull(), 1);
    EXPECT_EQ(text(), "late");
    write(std::string(9'000'000, 'x') + "\n" + line(describe("a.wav", "later")));
    EXPECT_EQ(pull(), 1) << "a line longer than any entry is skipped";
    for (const size_t length : {10, 10'000'000}) {
        fs::remove(changes / "ann@one.jsonl");
        write(line(describe("a.wav", "new" + std::to_string(length))) + std::string(length, ' ') + "\n");
        EXPECT_EQ(pull(), 1) << length;
    }
}

// What somebody adds under the old name follows, too, but doesn't leave a new file of the old name.
TEST_F(Log, WordsFollowARenamedFile) {
    const fs::path from = root / "b" / "c.caf";
    const fs::path to = root / "b" / "d.caf";
    write(line(edit("b/c.caf", "NOTES", "before", "ann@one")));
    pull();
    fs::rename(from, to);
    Entry entry = describe("b/d.caf", "with the rename");
    entry.from = "b/c.caf";
    entry.time += std::chrono::seconds(10);
    Entry stale = edit("b/c.caf", "KEYWORDS", "under the old name", "bob@two");
    stale.time = entry.time + std::chrono::seconds(5);
    // In either order.
    write(line(stale), "a first.jsonl");
    stale.changes.fields = {{"LOCATION", "under the old name"}};
    write(line(entry) + line(stale));
    pull();
    scan();
    EXPECT_EQ(metaOf(to).description, "with the rename");
    EXPECT_EQ(metaOf(to).keywords + metaOf(to).location, "under the old nameunder the old name");
    EXPECT_EQ(metaOf(to).notes, "before");
    addTo(root, "b/c.caf");
    scan();
    EXPECT_EQ(metaOf(from), MetaIO::read(from)) << "a new sound has words of its own";
    stale.time += std::chrono::seconds(5);
    stale.changes.fields = {{"LOCATION", "the new one's"}};
    write(line(stale));
    pull();
    EXPECT_EQ(metaOf(from).location + metaOf(to).location, "the new one'sunder the old name");
}

TEST_F(Log, TwoProcessesExchangeThousandsOfEdits) {
    constexpr size_t edits = 3000;
    constexpr size_t files = 7;
    const std::string longEnd(9000, ' ');  // past what a pipe takes at once
    for (size_t i = 0; i < files; ++i) { add(numbered("f", i)); }
    // Each side has a catalog of its own, edits one field and reads the other's.
    const auto side = [&](const std::string& self, const std::string& other, const char* field,
                          std::string SoundMeta::*theirs) {
        Catalog mine(home / self);
        size_t applied = 0;
        for (size_t i = 0; i < edits; ++i) {
            const std::string text = numbered("", i, i % 50 == 0 ? longEnd.c_str() : "");
            ChangeLog::append(root, edit(numbered("f", i % files), field, text, self));
            if (i % 10 == 0) { applied += size_t(ChangeLog::pull(root, mine, self)); }
        }
        const fs::path theirLog = ChangeLog::logFile(root, other);
        for (int turns = 0; applied < edits && turns < 1'000'000; ++turns) {
            applied += size_t(ChangeLog::pull(root, mine, self));
            ::sched_yield();
        }
        bool all = applied == edits && ChangeLog::pull(root, mine, self) == 0;
        for (size_t i = edits - files; i < edits; ++i) {
            const auto row = mine.row(root / numbered("f", i % files));
            all = all && row && std::stoul(row->meta.*theirs) == i;
        }
        return all && mine.logOffset(theirLog) == int64_t(fs::file_size(theirLog));
    };
    // Scans before it forks, because a child has none of the scanner's threads.
    for (const char* self : {"ann@one", "bob@two"}) {
        Catalog catalogOfSide(home / self);
        LibraryScanner::scan(root, catalogOfSide);
    }
    const Child other([&] { return side("bob@two", "ann@one", "NOTES", &SoundMeta::keywords); });
    EXPECT_TRUE(side("ann@one", "bob@two", "KEYWORDS", &SoundMeta::notes));
    EXPECT_TRUE(other.succeeded());
}

TEST_F(Log, LinesOfTwoProcessesOfOneOwnerStayWhole) {
    constexpr size_t edits = 300;
    const auto writer = [&](const char* mark) {
        for (size_t i = 0; i < edits; ++i) {
            ChangeLog::append(root, describe("a.wav", numbered(mark, i) + std::string(20'000, 'x')));
        }
        return true;
    };
    const Child other([&] { return writer("b"); });
    writer("a");
    EXPECT_TRUE(other.succeeded());
    EXPECT_EQ(linesOf(ChangeLog::logFile(root, "ann@one")).size(), 2 * edits);
    EXPECT_EQ(pull(), int(2 * edits));
}

TEST_F(Log, EntryIsAppliedOnceByTwoPullingProcesses) {
    constexpr size_t edits = 2000;
    // Far more than a transaction holds; the second process counts what it applied into a file.
    for (size_t i = 0; i < 600; ++i) { add(numbered("many/", i)); }
    scan();
    for (size_t i = 0; i < edits; ++i) {
        ChangeLog::append(root, describe(numbered("many/", i % 600), numbered("x", i)));
    }
    const auto pullAll = [&] {
        Catalog own(catalogFile);
        int applied = 0;
        for (int turn = 0; turn < 10; ++turn) { applied += ChangeLog::pull(root, own, "me@here"); }
        return applied;
    };
    const Child other([&] {
        writeBytes(home / "count", std::to_string(pullAll()));
        return true;
    });
    const int here = pullAll();
    EXPECT_TRUE(other.succeeded());
    EXPECT_EQ(here + std::stoi(readBytes(home / "count")), int(edits));
}

}  // namespace
}  // namespace brindlehum
