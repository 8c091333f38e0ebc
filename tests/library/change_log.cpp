// ChangeLog: entries in and out, which of them are applied, and two processes on one shared folder.
#include "library/team/change_log.h"

#include <gmock/gmock.h>
#include <unistd.h>

#include <fstream>

#include "base/text.h"
#include "fuzz/change_log_input.h"
#include "sound_folder.h"
#include "support/child.h"

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

class Log : public SoundFolder {
protected:
    void SetUp() override {
        SoundFolder::SetUp();
        add("a.wav");
        add("b/c.flac");
        scan();
    }
    // As a colleague's machine would leave it.
    void write(const std::string& bytes, const std::string& name = "ann@one.jsonl") {
        const fs::path file = root / ".brindlehum" / "changes" / name;
        fs::create_directories(file.parent_path());
        std::ofstream(file, std::ios::app | std::ios::binary) << bytes;
    }
    int pull() { return ChangeLog::pull(root, catalog, "me@here"); }
};

TEST(ChangeLogEntry, DecodesWholeEntriesAndNothingElse) {
    const std::string good =
        R"({"path": "b/c.flac", "fields": {"DESCRIPTION": "wind & rain\n", "LATER": "x"}, "user": "ann@one",
            "time": "2023-11-14T22:13:20Z", "colour": 3})";
    const auto entry = Entry::decode(good).value();
    EXPECT_EQ(entry.path, "b/c.flac");
    EXPECT_EQ(entry.changes.fields.at("DESCRIPTION"), "wind & rain\n");
    EXPECT_EQ(entry.changes.rating, std::nullopt);
    EXPECT_EQ(entry.time.time_since_epoch().count(), 1'700'000'000);
    EXPECT_EQ(Entry::decode(entry.encoded().value()), entry);
    EXPECT_EQ(entry.encoded()->find('\n'), std::string::npos);

    const auto with = [&](const std::string& from, const std::string& to) {
        std::string text = good;
        return Entry::decode(text.replace(text.find(from), from.size(), to));
    };
    EXPECT_EQ(with("\"colour\"", "\"rating\"")->changes.rating, 3);
    EXPECT_EQ(with("\"colour\": 3", "\"rating\": null")->changes.rating, std::nullopt);
    for (const char* time : {"2023-11-14T23:13:20+01:00", "2023-11-14T17:43:20-0430", "2023-11-14T22:13:20.75Z"}) {
        EXPECT_EQ(with("2023-11-14T22:13:20Z", time)->time, entry.time) << time;
    }
    const std::pair<const char*, const char*> faults[] = {
        {"\"path\"", "\"Path\""},
        {"\"user\"", "\"who\""},
        {"\"time\"", "\"when\""},
        {"\"fields\"", "\"field\""},
        {"\"b/c.flac\"", "7"},
        {"\"x\"", "1"},
        {"{\"DESC", "[{\"DESC"},
        {"2023-11-14T", "14.11.2023 "},
        {"11-14T", "13-14T"},
        {"20Z", "20"},
        {"20Z", "20Zulu"},
        {"\"colour\": 3", "\"rating\": \"3\""},
        {"\"colour\": 3", "\"rating\": 1.5"},
        {"\"colour\": 3", "\"rating\": 1e99"},
        {"wind", "\xFF"},
    };
    for (const auto& [from, to] : faults) { EXPECT_FALSE(with(from, to)) << from << " as " << to; }
    for (const char* line : {"", "null", "[]", "{", "{\"path\": \"a\"}"}) { EXPECT_FALSE(Entry::decode(line)) << line; }
    EXPECT_FALSE(describe("caf\xE9.wav", "no text").encoded());
}

TEST_F(Log, AppendsWholeLinesToTheOwnersFile) {
    ChangeLog::append(root, describe("a.wav", "first", "ann@lab/2"));
    const fs::path file = root / ".brindlehum" / "changes" / "ann@lab-2.jsonl";
    ASSERT_EQ(linesOf(file).size(), 1U);
    EXPECT_EQ(Entry::decode(linesOf(file)[0])->user, "ann@lab/2");
    // A writer was killed in the middle of its line.
    std::ofstream(file, std::ios::app) << "{\"path\": \"a.w";
    ChangeLog::append(root, describe("a.wav", std::string(100'000, 'x'), "ann@lab/2"));
    ChangeLog::append(root, describe("caf\xE9.wav", "can't be told", "ann@lab/2"));
    EXPECT_EQ(linesOf(file).size(), 3U);
    EXPECT_EQ(pull(), 2);
    EXPECT_EQ(metaOf(root / "a.wav").description, std::string(100'000, 'x'));
    EXPECT_THAT(ChangeLog::owner(), testing::MatchesRegex("[^@]+@.+"));
    EXPECT_EQ(ChangeLog::logFile(root, ChangeLog::owner()).parent_path(), file.parent_path());
}

TEST_F(Log, LogIsAsOpenAsTheRoot) {
    const auto mode = [](const fs::path& path) {
        struct stat facts {};
        return ::stat(path.c_str(), &facts) == 0 ? facts.st_mode & 07777 : 0;
    };
    ::chmod(root.c_str(), 02770);
    const mode_t before = ::umask(077);
    ChangeLog::append(root, describe("a.wav", "x"));
    ::umask(before);
    const fs::path log = ChangeLog::logFile(root, "ann@one");
    EXPECT_EQ(mode(log.parent_path()), 02770U);
    EXPECT_EQ(mode(log.parent_path().parent_path()), 02770U);
    EXPECT_EQ(mode(log), 0640U);
    fs::rename(root / ".brindlehum", home / "elsewhere");
    fs::create_directory_symlink(home / "elsewhere", root / ".brindlehum");
    ChangeLog::append(root, describe("a.wav", "y"));
    EXPECT_EQ(linesOf(home / "elsewhere" / "changes" / "ann@one.jsonl").size(), 1U);
}

TEST_F(Log, PullChangesTheCatalogAlone) {
    const fs::path flac = root / "b" / "c.flac";
    const std::string before = readBytes(flac);
    const auto line = [](const Entry& entry) { return entry.encoded().value() + "\n"; };
    Entry rated = describe("b/c.flac", "");
    rated.changes = {{}, 3};
    write(line(describe("b/c.flac", "wind")) + "{broken}\n\n" + line(describe("not/here.wav", "x")) + line(rated));
    write(line(describe("b/c.flac", "mine")), "me@here.jsonl");
    write(line(edit("b/c.flac", "KEYWORDS", "gale", "me@there")) + "{}\n", "me@there.jsonl");
    write(line(describe("b/c.flac", "not a log")), "notes.json");
    EXPECT_EQ(pull(), 3);
    const SoundMeta meta = metaOf(flac);
    EXPECT_EQ(meta.description, "wind");
    EXPECT_EQ(meta.rating, 3);
    EXPECT_EQ(meta.keywords, "gale");
    EXPECT_EQ(meta.fxName, "c") << "what no entry names stays";
    EXPECT_EQ(catalog.row(flac)->channels, 2);
    EXPECT_EQ(readBytes(flac), before);
    EXPECT_EQ(scan().read, 0);
    EXPECT_EQ(pull(), 0);
    addTo(root, "not/here.wav");
    scan();
    EXPECT_EQ(pull(), 0) << "what couldn't be applied isn't kept for later";
    EXPECT_EQ(ChangeLog::pull(home / "no such root", catalog), 0);
}

TEST_F(Log, LineWithoutItsEndWaits) {
    const std::string line = describe("a.wav", "late").encoded().value() + "\n";
    write(describe("a.wav", "early").encoded().value() + "\n" + line.substr(0, 30));
    EXPECT_EQ(pull(), 1);
    write(line.substr(30, 30));
    EXPECT_EQ(pull(), 0);
    EXPECT_EQ(metaOf(root / "a.wav").description, "early");
    write(line.substr(60));
    EXPECT_EQ(pull(), 1);
    EXPECT_EQ(metaOf(root / "a.wav").description, "late");
    // A line longer than any entry is skipped.
    write(std::string(9'000'000, 'x') + "\n" + line);
    EXPECT_EQ(pull(), 1);
}

TEST_F(Log, ReplacedLogIsReadFromItsStart) {
    const fs::path log = root / ".brindlehum" / "changes" / "ann@one.jsonl";
    const auto line = [](const std::string& text) { return describe("a.wav", text).encoded().value() + "\n"; };
    write(line("one") + line("two"));
    EXPECT_EQ(pull(), 2);
    fs::remove(log);
    write(line("three"));
    EXPECT_EQ(pull(), 1) << "a shorter one";
    fs::remove(log);
    write(line("a much longer text than the one before") + line("four"));
    EXPECT_EQ(pull(), 2) << "a longer one";
    EXPECT_EQ(metaOf(root / "a.wav").description, "four");
    EXPECT_EQ(pull(), 0);
}

TEST_F(Log, EntryNeverLeavesTheRoot) {
    const fs::path outside = addTo(home, "outside/o.wav");
    fs::create_directory_symlink(home / "outside", root / "way out");
    fs::create_symlink(outside, root / "o.wav");
    std::vector<std::string> paths = {outside, std::string("a.wav\0", 6)};
    for (const auto part : split("../outside/o.wav|b/../../outside/o.wav|/a.wav|way out/o.wav|o.wav|./a.wav|b/./c.flac|"
                                 "b//c.flac|b/../a.wav||.|a.wav/",
                                 "|")) {
        paths.emplace_back(part);
    }
    for (const std::string& path : paths) {
        // Even a catalog that holds such a path isn't touched.
        const std::string full = (path.starts_with('/') ? "" : root.string() + "/") + path;
        for (const std::string& row : {full, canonicalPath(full)}) {
            if (!catalog.row(row)) {
                catalog.write([&] { catalog.upsert(row, root, {1, 1}, std::nullopt, {}); });
            }
        }
        write(describe(path, "stolen").encoded().value() + "\n");
    }
    EXPECT_EQ(pull(), 0);
    for (const auto& row : catalog.search({}, 1000)) { EXPECT_EQ(row.meta.description, "") << row.path; }
}

TEST_F(Log, PipeOrDeviceAmongTheLogsIsSkipped) {
    const fs::path changes = root / ".brindlehum" / "changes";
    fs::create_directories(changes / "folder.jsonl");
    ASSERT_EQ(::mkfifo((changes / "pipe.jsonl").c_str(), 0600), 0);
    fs::create_symlink("/dev/zero", changes / "zero.jsonl");
    ASSERT_EQ(::mkfifo((changes / "me@here.jsonl").c_str(), 0600), 0);
    ChangeLog::append(root, describe("a.wav", "x", "me@here"));
    EXPECT_EQ(pull(), 0);
}

TEST(ChangeLogCorpus, BreaksNoRule) {
    const TempFolder folder;
    LogProbe probe(folder.path());
    int seeds = 0;
    for (const auto& seed : fs::directory_iterator(BRINDLEHUM_CORPUS "/change_log")) {
        SCOPED_TRACE(seed.path());
        probe.look(readBytes(seed.path()));
        ++seeds;
    }
    EXPECT_GE(seeds, 4);
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
            ChangeLog::append(root, describe("a.wav", mark + std::string(20'000, 'x')));
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
    for (size_t i = 0; i < edits; ++i) { ChangeLog::append(root, describe(numbered("many/", i % 600), "x")); }
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
