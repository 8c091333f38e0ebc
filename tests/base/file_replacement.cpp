// The swap: at every moment, whatever happens, the file is the complete old or the complete new one.
#include "base/file_replacement.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/syscall.h>
#include <sys/xattr.h>

#include <cstring>
#include <map>
#include <optional>

#include "base/error.h"
#include "support/audio_files.h"
#include "support/child.h"
#include "support/full_disk.h"
#include "support/traced.h"

namespace brindlehum {
namespace {

using namespace test;
namespace fs = std::filesystem;

constexpr timespec longAgo[2] = {{1000000000, 0}, {1000000000, 0}};

// What `job` is refused with, behind "Couldn't write PATH: "; empty when it succeeds.
template <typename Job>
std::string refusal(const fs::path& file, Job job) {
    try {
        job();
    } catch (const Error& error) {
        const std::string start = "Couldn't write " + file.string() + ": ", said = error.what();
        return said.starts_with(start) ? said.substr(start.size()) : said;
    }
    return "";
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

std::string writeWaiting(const fs::path& file, const std::string& text) {
    return refusal(file, [&] { FileReplacement::writeText(file, text, {.waits = true}); });
}

bool nobodyIsTold(const std::string& expected, const fs::path& file) {
    const Child child([&] {
        if (!becomeNobody()) { return false; }
        const std::string said = rewrite(file);
        if (said != expected) { std::fprintf(stderr, "nobody is told: %s\n", said.c_str()); }
        return said == expected;
    });
    return child.succeeded();
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
    chmod(file.c_str(), 0666);
    chmod(home.c_str(), 0555);
    EXPECT_TRUE(nobodyIsTold("Permission denied", file)) << "of the folder";
    chmod(home.c_str(), 0777);
    chmod(file.c_str(), 0444);
    EXPECT_TRUE(nobodyIsTold("Permission denied", file)) << "of the file";
    EXPECT_TRUE(content() == old);
    EXPECT_EQ(filesInHome(), 1U);

    // Someone else's file that anyone may write becomes the writer's, whose group gains nothing by it.
    chmod(file.c_str(), 0676);
    EXPECT_TRUE(nobodyIsTold("", file));
    struct stat status {};
    stat(file.c_str(), &status);
    EXPECT_EQ(status.st_mode & 0777U, geteuid() == 0 ? 0666U : 0676U);
}

TEST_F(FileReplacementTest, NextVersionKeepsOwnerModeAndAttributes) {
    chmod(file.c_str(), 0640);
    if (geteuid() == 0) { ASSERT_EQ(chown(file.c_str(), 1234, 4321), 0); }
    utimensat(AT_FDCWD, file.c_str(), longAgo, 0);
    const std::string large(2000, 'v');
    const bool attributes = setxattr(file.c_str(), "user.note", large.data(), large.size(), 0) == 0;
    setxattr(file.c_str(), "user.empty", "", 0, 0);
    // User 99 may read, in the form of the kernel: version; tag, permissions and identity of each entry.
    const std::string anyone = le32(0xFFFFFFFF);
    const std::string list = le32(2) + le16(1) + le16(6) + anyone + le16(2) + le16(4) + le32(99) + le16(4) + le16(0) +
                             anyone + le16(16) + le16(4) + anyone + le16(32) + le16(0) + anyone;
    const auto snapshot = [&] {
        std::string names(1000, '\0');
        names.resize(size_t(std::max<ssize_t>(0, listxattr(file.c_str(), names.data(), names.size()))));
        std::map<std::string, std::string> all;
        for (size_t at = 0; at < names.size(); at += std::strlen(&names[at]) + 1) {
            std::string value(4000, '\0');
            value.resize(size_t(getxattr(file.c_str(), &names[at], value.data(), value.size())));
            all[&names[at]] = value;
        }
        struct stat status {};
        stat(file.c_str(), &status);
        all["owner and mode"] =
            std::to_string(status.st_uid) + ":" + std::to_string(status.st_gid) + " " + std::to_string(status.st_mode);
        return all;
    };
    for (const bool listed : {false, true}) {
        // The folder's default for new files is not the file's own.
        const char* where = listed ? file.c_str() : home.c_str();
        const char* name = listed ? "system.posix_acl_access" : "system.posix_acl_default";
        EXPECT_EQ(setxattr(where, name, list.data(), list.size(), 0) == 0, attributes);
        const auto before = snapshot();
        EXPECT_EQ(before.contains("user.note"), attributes);
        ASSERT_EQ(rewrite(file), "");
        EXPECT_EQ(snapshot(), before);
    }
    struct stat status {};
    stat(file.c_str(), &status);
    EXPECT_GT(status.st_mtim.tv_sec, longAgo[1].tv_sec) << "a changed file doesn't look unchanged";
}

TEST_F(FileReplacementTest, SecondWriterIsRefused) {
    writeBytes(temporary, "the other's");
    const int other = open(temporary.c_str(), O_RDONLY | O_CLOEXEC);
    ASSERT_EQ(flock(other, LOCK_EX), 0);
    EXPECT_EQ(rewrite(file), "it is being written elsewhere");
    EXPECT_EQ(readBytes(temporary), "the other's");
    close(other);
    EXPECT_EQ(rewrite(file), "");
    EXPECT_EQ(filesInHome(), 1U);

    // At every stop of one writer another comes along: each either succeeds or is refused.
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
            const std::string said = writeWaiting(file, std::string(length, letter));
            if (!said.empty()) { throw Error(said); }
        }
        return true;
    };
    const Child one([&] { return writer('1', 90'000); });
    const Child two([&] { return writer('2', 200'000); });
    for (int i = 0; i < rounds; ++i) {
        const std::string now = content();
        EXPECT_TRUE(now == old || now == std::string(90'000, '1') || now == std::string(200'000, '2') ||
                    now == std::string(3, '3'));
        EXPECT_EQ(writeWaiting(file, "333"), "");
    }
    EXPECT_TRUE(one.succeeded());
    EXPECT_TRUE(two.succeeded());
    EXPECT_EQ(filesInHome(), 1U);
}

TEST_F(FileReplacementTest, LinkUnderTheTemporaryNameIsNeverFollowed) {
    const auto bystander = folder / "bystander";
    for (const bool exists : {true, false}) {
        if (exists) { writeBytes(bystander, "x"); }
        fs::create_symlink(bystander, temporary);
        EXPECT_EQ(rewrite(file), "Too many levels of symbolic links");
        EXPECT_EQ(writeWaiting(file, "y"), "Too many levels of symbolic links");
        EXPECT_TRUE(fs::is_symlink(temporary));
        EXPECT_TRUE(content() == old);
        EXPECT_EQ(exists ? readBytes(bystander) : "none", fs::exists(bystander) ? "x" : "none");
        fs::remove(temporary);
        fs::remove(bystander);
    }
}

TEST_F(FileReplacementTest, FileThatChangesMeanwhileIsKept) {
    using Change = std::function<void()>;
    const auto replace = [&] {
        writeBytes(home / "other", "other");
        fs::rename(home / "other", file);
    };
    // The write's end, with the change made before the first such call: 0 success, 7 refusal, with nothing touched.
    const auto meddled = [&](const Change& change, long call) {
        writeBytes(file, old);
        std::string changed;
        const auto meddle = [&](int, long now) {
            if (now != call || !changed.empty()) { return true; }
            change();
            changed = content();
            return true;
        };
        const auto job = [&] {
            const std::string said = rewrite(file);
            return said.empty() ? 0 : said == "it has changed meanwhile" ? 7 : 1;
        };
        const int end = runTraced(job, meddle);
        EXPECT_FALSE(fs::exists(temporary));
        EXPECT_TRUE(end == 0 || content() == changed);
        return end;
    };
    const Change changes[] = {[&] { fs::resize_file(file, old.size() + 2); }, [&] { fs::resize_file(file, 100); },
                              [&] { utimensat(AT_FDCWD, file.c_str(), longAgo, 0); }, replace,
                              [&] { fs::remove(file); }};
    for (size_t i = 0; i < std::size(changes); ++i) {
        for (const long call : {SYS_flock, SYS_copy_file_range, SYS_fsync}) {
            EXPECT_EQ(meddled(changes[i], call), 7) << i << " " << call;
        }
    }
    const Change removal = [&] { fs::remove(temporary); };
    EXPECT_EQ(meddled(removal, SYS_fsync), 7);
    EXPECT_EQ(meddled(removal, SYS_flock), 0) << "a writer that cleared away what was no leftover costs a second try";
}

TEST_F(FileReplacementTest, LongNamesAreCutBetweenCharacters) {
    // 255 bytes is all that the file system takes: a temporary name that isn't cut, or is cut inside "é", fails there.
    for (const size_t ascii : {size_t(241), size_t(242), size_t(243)}) {
        std::string name(ascii, 'n');
        while (name.size() < 254) { name += "\xC3\xA9"; }
        const fs::path longFile = home / name;
        std::optional<FileReplacement> first(longFile);
        first->write("first");
        std::string hidden;
        for (const auto& entry : fs::directory_iterator(home)) {
            if (entry.path() != file) { hidden = entry.path().filename(); }
        }
        EXPECT_TRUE(hidden.ends_with("n.bh-tmp") || hidden.ends_with("\xC3\xA9.bh-tmp")) << hidden;
        const fs::path sibling = home / (name.substr(0, name.size() - 2) + "xx");
        EXPECT_EQ(refusal(sibling, [&] { FileReplacement other(sibling); }), "it is being written elsewhere")
            << "it has the same temporary name";
        first->commit();
        EXPECT_EQ(readBytes(longFile), "first");
        first.reset();
        fs::remove(longFile);
        EXPECT_EQ(filesInHome(), 1U);
    }
}

TEST_F(FileReplacementTest, NewFileTakesItsNameAtTheCommit) {
    const fs::path fresh = home / "fresh";
    const mode_t before = ::umask(027);
    {
        FileReplacement dropped(fresh);
        dropped.write("dropped");
    }
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
    struct stat facts {};
    const ino_t inode = kept.commit();
    ASSERT_EQ(stat(fresh.c_str(), &facts), 0);
    EXPECT_EQ(facts.st_ino, inode);
    EXPECT_EQ(facts.st_mode & 0777U, 0640U);
    EXPECT_EQ(readBytes(fresh), "01012!");
}

TEST_F(FileReplacementTest, OnlyRegularFilesAndLinksAreReplaced) {
    const auto written = [](const fs::path& path) {
        return refusal(path, [&] { FileReplacement::writeText(path, "text"); });
    };
    fs::create_directory(home / "folder");
    ASSERT_EQ(mkfifo((home / "pipe").c_str(), 0600), 0);
    fs::create_symlink(file, home / "link");
    EXPECT_EQ(written(home / "folder"), "Is a directory");
    EXPECT_EQ(written(home / "pipe"), "it isn't a regular file");
    EXPECT_EQ(written(home / "none" / "x"), "No such file or directory");
    EXPECT_EQ(written(home / "link"), "");
    EXPECT_TRUE(fs::is_regular_file(fs::symlink_status(home / "link")));
    EXPECT_TRUE(content() == old);
}

}  // namespace
}  // namespace brindlehum
