// The swap: at every moment, whatever happens, the file is the complete old or the complete new one.
#include "base/file_replacement.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/syscall.h>
#include <sys/xattr.h>

#include "base/text.h"
#include "support/audio_files.h"
#include "support/child.h"
#include "support/full_disk.h"
#include "support/refusal.h"
#include "support/traced.h"

namespace brindlehum {
namespace {

using namespace test;
namespace fs = std::filesystem;

constexpr timespec longAgo[2] = {{1000000000, 0}, {1000000000, 0}};

// Why `job` failed, behind "Couldn't write PATH: "; empty when it succeeded.
std::string refusal(const fs::path& file, const std::function<void()>& job) {
    const std::string said = refusalOf(job).text, start = "Couldn't write " + file.string() + ": ";
    return said.starts_with(start) ? said.substr(start.size()) : said;
}

// Writes the next version of a file: `text`, and the second half of what the file held.
std::string rewrite(const fs::path& file, const std::string& text = "new") {
    return refusal(file, [&] {
        const FileHandle source(file);
        const auto half = uint64_t(source.size()) / 2;
        FileReplacement out(file, source);
        out.reserve(text.size() + half);
        out.write(text);
        out.copy(uint64_t(source.size()) - half, half);
        out.commit();
    });
}

std::string writeText(const fs::path& file, const std::string& text, bool waits = true) {
    return refusal(file, [&] { FileReplacement::writeText(file, text, {.waits = waits}); });
}

class FileReplacementTest : public testing::Test {
protected:
    void SetUp() override {
        fs::create_directory(home);
        writeBytes(file, old);
    }
    size_t filesInHome() const { return size_t(std::distance(fs::directory_iterator(home), {})); }
    std::string next(const std::string& text = "new") const { return text + old.substr(old.size() / 2); }
    std::string content() const { return fs::exists(file) ? readBytes(file) : "gone"; }

    const TempFolder folder;
    const fs::path home = folder / "home";
    const fs::path file = home / "x.wav";
    const fs::path temporary = home / ".x.wav.bh-tmp";
    const std::string old = std::string(5000, 'a') + std::string(5000, 'b');
};

TEST_F(FileReplacementTest, KilledAtAnySystemCallLeavesOldOrNew) {
    int leftovers = 0;
    for (int last = 0;; ++last) {
        writeBytes(file, old);
        const auto goOn = [&](int count, long) { return count < last; };
        const int status = runTraced([&] { return rewrite(file).empty() ? 0 : 1; }, goOn);
        leftovers += int(fs::exists(temporary));
        ASSERT_TRUE(content() == old || content() == next()) << "killed at stop " << last;
        EXPECT_EQ(rewrite(file), "") << last;
        EXPECT_EQ(filesInHome(), 1U) << "the leftover of stop " << last << " is in the way";
        if (status >= 0) {
            EXPECT_EQ(status, 0);
            break;
        }
        ASSERT_LT(last, 1000);
    }
    EXPECT_GT(leftovers, 10);
}

TEST_F(FileReplacementTest, LeftoversOfDeadWritersAreClearedAndNothingElse) {
    FileReplacement alive(home / "alive.wav");
    fs::create_directory(home / ".folder.bh-tmp");
    for (const char* name : {".dead.wav.bh-tmp", ".young.wav.bh-tmp", "seen.bh-tmp", ".bh-tmp", ".dead.wav.tmp"}) {
        writeBytes(home / name, "x");
    }
    fs::create_symlink("seen.bh-tmp", home / ".link.bh-tmp");
    for (const auto& entry : fs::directory_iterator(home)) {
        if (entry.path().filename() == ".young.wav.bh-tmp") { continue; }
        utimensat(AT_FDCWD, entry.path().c_str(), longAgo, AT_SYMLINK_NOFOLLOW);
    }
    if (geteuid() == 0) {
        writeBytes(home / ".others.bh-tmp", "x");
        utimensat(AT_FDCWD, (home / ".others.bh-tmp").c_str(), longAgo, 0);
        ASSERT_EQ(chown((home / ".others.bh-tmp").c_str(), 1234, 4321), 0);
    }
    const size_t before = filesInHome();
    FileReplacement::clearLeftovers(home);
    FileReplacement::clearLeftovers(home / "none");
    EXPECT_EQ(filesInHome(), before - 1);
    EXPECT_FALSE(fs::exists(home / ".dead.wav.bh-tmp"));
    alive.write("y");
    alive.commit();
    EXPECT_EQ(readBytes(home / "alive.wav"), "y");
}

TEST_F(FileReplacementTest, FullDiskLeavesTheOldFile) {
    for (const size_t limit : {size_t(0), size_t(2), size_t(700), size_t(5000)}) {
        std::string said;
        {
            const FullDisk full(limit);
            said = rewrite(file);
        }
        EXPECT_EQ(said, "File too large") << limit;
        EXPECT_TRUE(content() == old) << limit;
        EXPECT_EQ(filesInHome(), 1U) << limit;
    }
}

TEST_F(FileReplacementTest, WriteProtectionHolds) {
    chmod(folder.path().c_str(), 0755);
    for (const auto& [ofHome, ofFile] : {std::pair(0555, 0666), {0777, 0444}}) {
        chmod(home.c_str(), mode_t(ofHome));
        chmod(file.c_str(), mode_t(ofFile));
        const Child nobody([&] { return becomeNobody() && rewrite(file) == "Permission denied"; });
        EXPECT_TRUE(nobody.succeeded()) << ofHome;
    }
    EXPECT_TRUE(content() == old);
    EXPECT_EQ(filesInHome(), 1U);
}

TEST_F(FileReplacementTest, NextVersionKeepsOwnerModeAndAttributes) {
    chmod(file.c_str(), 0640);
    if (geteuid() == 0) { ASSERT_EQ(chown(file.c_str(), 1234, 4321), 0); }
    utimensat(AT_FDCWD, file.c_str(), longAgo, 0);
    // User 99 may read, in the form of the kernel: version; tag, permissions and identity of each entry.
    const std::string anyone = le32(0xFFFFFFFF);
    const std::string list = le32(2) + le16(1) + le16(6) + anyone + le16(2) + le16(4) + le32(99) + le16(4) + le16(0) +
                             anyone + le16(16) + le16(4) + anyone + le16(32) + le16(0) + anyone;
    const auto set = [](const fs::path& path, const char* name, const std::string& value) {
        return setxattr(path.c_str(), name, value.data(), value.size(), 0) == 0;
    };
    const bool attributes = set(file, "user.note", std::string(2000, 'v'));
    const auto snapshot = [&] {
        struct stat status {};
        stat(file.c_str(), &status);
        std::vector all{std::to_string(status.st_uid), std::to_string(status.st_gid), std::to_string(status.st_mode)};
        for (const char* name : {"user.note", "system.posix_acl_access"}) {
            std::string value(4000, '\0');
            value.resize(size_t(std::max<ssize_t>(0, getxattr(file.c_str(), name, value.data(), value.size()))));
            all.push_back(value);
        }
        return all;
    };
    for (const bool listed : {false, true}) {
        // The folder's default for new files is not the file's own.
        const bool hasList =
            listed ? set(file, "system.posix_acl_access", list) : set(home, "system.posix_acl_default", list);
        EXPECT_EQ(hasList, attributes);
        const auto before = snapshot();
        EXPECT_EQ(before[3].size(), attributes ? 2000U : 0U);
        ASSERT_EQ(rewrite(file), "");
        EXPECT_EQ(snapshot(), before);
    }
    EXPECT_GT(fs::last_write_time(file), fs::file_time_type::clock::now() - std::chrono::hours(1))
        << "a changed file doesn't look unchanged";
}

TEST_F(FileReplacementTest, SecondWriterSucceedsOrIsRefusedAtEveryStopOfTheFirst) {
    int stops = 1;
    for (int at = 0; at < stops; ++at) {
        writeBytes(file, old);
        std::string second = "not tried";
        const auto meddle = [&](int count, long) {
            stops = count + 1;
            if (count == at) { second = rewrite(file, "second"); }
            return true;
        };
        const int first = runTraced([&] { return rewrite(file, "first").empty() ? 0 : 1; }, meddle);
        EXPECT_TRUE(second.empty() || second == "it is being written elsewhere" ||
                    second == "another program has locked it" || second == "another program is writing to it")
            << second;
        const std::string now = content();
        EXPECT_TRUE(now.starts_with("first") ? first == 0 : now.starts_with("second") && second.empty()) << at;
        EXPECT_TRUE(now.ends_with(std::string(2000, 'b'))) << at;
        EXPECT_EQ(filesInHome(), 1U) << at;
    }
    EXPECT_GT(stops, 40);
}

TEST_F(FileReplacementTest, WritersThatWaitAllSucceedAndPublishWholeFiles) {
    constexpr int rounds = 60;
    const auto writer = [&](char letter, size_t length) {
        for (int i = 0; i < rounds; ++i) {
            if (!writeText(file, std::string(length, letter)).empty()) { return false; }
        }
        return true;
    };
    const Child one([&] { return writer('1', 90'000); });
    const Child two([&] { return writer('2', 200'000); });
    for (int i = 0; i < rounds; ++i) {
        const std::string now = content();
        EXPECT_TRUE(now == old || now == std::string(90'000, '1') || now == std::string(200'000, '2') ||
                    now == std::string(3, '3'));
        EXPECT_EQ(writeText(file, "333"), "");
    }
    EXPECT_TRUE(one.succeeded());
    EXPECT_TRUE(two.succeeded());
    EXPECT_EQ(filesInHome(), 1U);
}

TEST_F(FileReplacementTest, LinkUnderTheTemporaryNameIsNeverFollowed) {
    const auto bystander = folder / "bystander";
    writeBytes(bystander, "x");
    fs::create_symlink(bystander, temporary);
    EXPECT_NE(rewrite(file), "");
    EXPECT_NE(writeText(file, "y"), "");
    EXPECT_TRUE(content() == old);
    EXPECT_EQ(readBytes(bystander), "x");
}

TEST_F(FileReplacementTest, FileThatChangesMeanwhileIsKept) {
    using Change = std::function<void()>;
    // The write's end, with the change made before the first such call: 0 success, 7 refusal, with nothing touched.
    const auto meddled = [&](const Change& change, long call, const char* reason = "it has changed meanwhile") {
        writeBytes(file, old);
        std::string changed;
        const auto meddle = [&](int, long now) {
            if (now == call && changed.empty()) {
                change();
                changed = content();
            }
            return true;
        };
        const auto job = [&] {
            const std::string said = rewrite(file);
            return said.empty() ? 0 : said == reason ? 7 : 1;
        };
        const int end = runTraced(job, meddle);
        EXPECT_FALSE(fs::exists(temporary));
        EXPECT_TRUE(end == 0 || content() == changed);
        return end;
    };
    const Change changes[] = {
        [&] { fs::resize_file(file, old.size() + 2); }, [&] { utimensat(AT_FDCWD, file.c_str(), longAgo, 0); },
        [&] { writeBytes(home / "other", "other"), fs::rename(home / "other", file); }, [&] { fs::remove(file); }};
    for (size_t i = 0; i < std::size(changes); ++i) {
        for (const long call : {SYS_flock, SYS_copy_file_range, SYS_fsync}) {
            EXPECT_EQ(meddled(changes[i], call), 7) << i << " " << call;
        }
    }
    // A writer that comes while the new version is made, and writes later.
    for (const long call : {SYS_copy_file_range, SYS_fsync}) {
        Descriptor other;
        const Change opened = [&] { other = Descriptor(::open(file.c_str(), O_WRONLY | O_CLOEXEC)); };
        EXPECT_EQ(meddled(opened, call, "another program is writing to it"), 7) << call;
    }
    const Change removal = [&] { fs::remove(temporary); };
    EXPECT_EQ(meddled(removal, SYS_fsync), 7);
    EXPECT_EQ(meddled(removal, SYS_flock), 0) << "a writer that cleared away what was no leftover costs a second try";
}

// A recording that goes on: what its program appends must never go to a file that has been replaced.
TEST_F(FileReplacementTest, FileInUseElsewhereIsKept) {
    struct Use {
        const char* reason;
        std::function<bool(int)> begin;
    };
    const auto locked = [](short type) {
        return [type](int number) {
            struct flock lock {};
            lock.l_type = type;
            return ::fcntl(number, F_SETLK, &lock) == 0;
        };
    };
    const Use uses[] = {{"another program is writing to it", [](int number) { return ::write(number, "+", 1) == 1; }},
                        {"another program has locked it", [](int number) { return ::flock(number, LOCK_EX) == 0; }},
                        {"another program has locked it", locked(F_WRLCK)},
                        {"", [](int number) { return ::read(number, nullptr, 0) == 0; }}};
    for (const Use& use : uses) {
        writeBytes(file, old);
        const bool reads = *use.reason == '\0';
        int ready[2], done[2];
        ASSERT_TRUE(::pipe(ready) == 0 && ::pipe(done) == 0);
        const Child other([&] {
            ::close(done[1]);
            const int number = ::open(file.c_str(), reads ? O_RDONLY : O_RDWR | O_APPEND);
            char byte = 'r';
            bool good = use.begin(number) && ::write(ready[1], &byte, 1) == 1;
            while (good && ::read(done[0], &byte, 1) == 1) { good = reads || ::write(number, "+", 1) == 1; }
            return good;
        });
        ::close(ready[1]);
        char byte = 0;
        ASSERT_EQ(::read(ready[0], &byte, 1), 1);
        for (int round = 0; round < 20; ++round) {
            EXPECT_EQ(rewrite(file), use.reason);
            EXPECT_EQ(::write(done[1], &byte, 1), 1);
        }
        for (const int number : {ready[0], done[0], done[1]}) { ::close(number); }
        EXPECT_TRUE(other.succeeded());
        const bool isKept = content().starts_with(old) && content().ends_with(std::string(20, '+'));
        EXPECT_EQ(isKept, !reads) << "20 appended parts stay";
        EXPECT_EQ(rewrite(file), "") << "once the other program has ended";
    }
}

TEST_F(FileReplacementTest, LongNamesAreCutBetweenCharacters) {
    // 255 bytes is all that the file system takes: a temporary name that isn't cut fails there.
    for (const size_t ascii : {size_t(241), size_t(242), size_t(243)}) {
        std::string name(ascii, 'n');
        while (name.size() < 254) { name += "\xC3\xA9"; }
        FileReplacement longFile(home / name);
        for (const auto& entry : fs::directory_iterator(home)) {
            const std::string text = entry.path().filename();
            EXPECT_EQ(repairUtf8(text), text);
        }
        longFile.commit();
        EXPECT_TRUE(fs::remove(home / name));
    }
}

TEST_F(FileReplacementTest, NewFileTakesItsNameAtTheCommit) {
    const fs::path fresh = home / "fresh";
    const mode_t before = ::umask(027);
    FileReplacement(fresh).write("dropped");
    EXPECT_EQ(filesInHome(), 1U);
    FileReplacement kept(fresh);
    ::umask(before);
    {
        const auto sink = kept.sink();
        const uint8_t bytes[] = {'0', '1', '2', '3', '4', '5'};
        sink->writeAt(2, bytes);
        sink->writeAt(0, {bytes, 2});
        sink->finish(5, true);
    }
    kept.write("!");
    EXPECT_FALSE(fs::exists(fresh));
    kept.commit();
    EXPECT_EQ(fs::status(fresh).permissions(), fs::perms(0640));
    EXPECT_EQ(readBytes(fresh), "01012!");
}

TEST_F(FileReplacementTest, OnlyRegularFilesAndLinksAreReplaced) {
    ASSERT_EQ(mkfifo((home / "pipe").c_str(), 0600), 0);
    fs::create_symlink(file, home / "link");
    const std::pair<fs::path, const char*> cases[] = {{folder.path(), "Is a directory"},
                                                      {home / "pipe", "it isn't a regular file"},
                                                      {home / "none" / "x", "No such file or directory"},
                                                      {home / "link", ""}};
    for (const auto& [path, said] : cases) { EXPECT_EQ(writeText(path, "text", false), said); }
    EXPECT_FALSE(fs::is_symlink(home / "link"));
    EXPECT_TRUE(content() == old);
}

}  // namespace
}  // namespace brindlehum
