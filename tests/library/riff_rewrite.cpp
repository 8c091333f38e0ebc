// The safety of a rewritten file: whatever happens, it is the complete old or the complete new one.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/xattr.h>

#include <csignal>
#include <cstring>
#include <ctime>
#include <iostream>
#include <map>
#include <random>

#include "base/error.h"
#include "child.h"
#include "library/meta/riff_meta.h"
#include "support/audio_files.h"
#include "support/full_disk.h"
#include "traced.h"

namespace brindlehum {
namespace {

using namespace test;

constexpr timespec longAgo[2] = {{1000000000, 0}, {1000000000, 0}};

SoundMeta described(const std::string& text) {
    SoundMeta meta;
    meta.description = text;
    meta.rating = 3;
    return meta;
}

// What the write says: empty when it succeeds.
std::string attempt(const std::filesystem::path& file, const std::string& text = "new") {
    try {
        RIFFMeta::write(described(text), file);
    } catch (const Error& error) { return error.what(); }
    return "";
}

// Whether the write says `expected` when an unprivileged user tries it.
bool nobodyIsTold(const std::string& expected, const std::filesystem::path& file) {
    const Child child([&] {
        if (!becomeNobody()) { return false; }
        const std::string said = attempt(file);
        if (said != expected) { std::fprintf(stderr, "nobody is told: %s\n", said.c_str()); }
        return said == expected;
    });
    return child.succeeded();
}

class RIFFRewrite : public testing::Test {
protected:
    void SetUp() override {
        std::filesystem::create_directory(home);
        writeAudio(file, noisePlanes(2, 12000), {FileKind::wav, 48000, 24, 0});
        RIFFMeta::write(described("old"), file);
        old = readBytes(file);
        sound = old.substr(old.find("data"));
    }

    size_t filesInHome() const { return size_t(std::distance(std::filesystem::directory_iterator(home), {})); }

    // Whole, with the old sound to the last byte, and one of the descriptions that were ever written.
    void expectComplete(std::initializer_list<const char*> descriptions) {
        const std::string bytes = readBytes(file);
        ASSERT_EQ(bytes.substr(0, 8), "RIFF" + le32(uint32_t(bytes.size() - 8)));
        ASSERT_TRUE(bytes.ends_with(sound));
        const SoundMeta meta = RIFFMeta::read(file);
        const bool known = std::any_of(descriptions.begin(), descriptions.end(),
                                       [&](const char* text) { return meta == described(text); });
        ASSERT_TRUE(known) << meta.description;
    }

    const TempFolder folder;
    const std::filesystem::path home = folder / "home";
    const std::filesystem::path file = home / "x.wav";
    const std::filesystem::path temporary = home / ".x.wav.bh-tmp";
    std::string old, sound;
};

TEST_F(RIFFRewrite, KilledAtAnySystemCallLeavesOldOrNew) {
    int leftovers = 0;
    for (int last = 0;; ++last) {
        writeBytes(file, old);
        const auto goOn = [&](int count, long) { return count < last; };
        const int status = runTraced([&] { return attempt(file).empty() ? 0 : 1; }, goOn);
        leftovers += int(std::filesystem::exists(temporary));
        expectComplete({"old", "new"});
        if (HasFatalFailure()) { FAIL() << "killed at stop " << last; }
        EXPECT_EQ(attempt(file, "next"), "") << last;
        EXPECT_EQ(filesInHome(), 1U) << "the leftover of stop " << last << " is in the way";
        if (status >= 0) {
            EXPECT_EQ(status, 0);
            break;
        }
        ASSERT_LT(last, 1000);
    }
    EXPECT_GT(leftovers, 10);
}

// The system kills the process then, whatever it is at.
void dieAfter(long nanoseconds) {
    sigevent event{};
    event.sigev_notify = SIGEV_SIGNAL;
    event.sigev_signo = SIGKILL;
    timer_t timer = nullptr;
    itimerspec once{};
    once.it_value.tv_nsec = nanoseconds;
    if (timer_create(CLOCK_MONOTONIC, &event, &timer) != 0 || timer_settime(timer, 0, &once, nullptr) != 0) {
        _exit(1);
    }
}

TEST_F(RIFFRewrite, KilledAtAnyMomentLeavesOldOrNew) {
    const unsigned seed = std::random_device()();
    std::cout << "seed " << seed << "\n";
    std::mt19937 engine(seed);
    for (int round = 0; round < 300; ++round) {
        const long moment = 1 + long(engine() % 8'000'000);  // nanoseconds
        const pid_t child = fork();
        if (child == 0) {
            dieAfter(moment);
            for (int i = 0;; ++i) { RIFFMeta::write(described(i % 2 ? "odd" : "even"), file); }
        }
        int status = 0;
        waitpid(child, &status, 0);
        EXPECT_TRUE(WIFSIGNALED(status)) << "a write failed";
        expectComplete({"old", "odd", "even"});
        if (HasFatalFailure()) { FAIL() << "round " << round; }
    }
    EXPECT_EQ(attempt(file), "");
    EXPECT_EQ(filesInHome(), 1U);
}

TEST_F(RIFFRewrite, AFullDiskLeavesTheOldFileAlone) {
    for (const size_t limit : {size_t(0), size_t(3), size_t(700), size_t(5000), old.size() - 1}) {
        std::string said;
        {
            const FullDisk full(limit);
            said = attempt(file);
        }
        EXPECT_EQ(said, "x.wav can't be rewritten: File too large") << limit;
        EXPECT_TRUE(readBytes(file) == old) << limit;
        EXPECT_EQ(filesInHome(), 1U) << limit;
    }
}

TEST_F(RIFFRewrite, WriteProtectionHolds) {
    const std::string denied = "x.wav can't be rewritten: Permission denied";
    chmod(folder.path().c_str(), 0755);
    chmod(file.c_str(), 0666);
    chmod(home.c_str(), 0555);
    EXPECT_TRUE(nobodyIsTold(denied, file)) << "in a folder that is";
    chmod(home.c_str(), 0777);
    chmod(file.c_str(), 0444);
    EXPECT_TRUE(nobodyIsTold(denied, file)) << "of the file itself";
    EXPECT_TRUE(readBytes(file) == old);
    EXPECT_EQ(filesInHome(), 1U);

    // Someone else's file that anyone may write becomes the writer's, whose group gains nothing by it.
    chmod(file.c_str(), 0676);
    EXPECT_TRUE(nobodyIsTold("", file));
    struct stat status {};
    stat(file.c_str(), &status);
    EXPECT_EQ(status.st_mode & 0777U, geteuid() == 0 ? 0666U : 0676U);
}

TEST_F(RIFFRewrite, OwnerModeAndAttributesAreKept) {
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
        ASSERT_EQ(attempt(file), "");
        EXPECT_EQ(snapshot(), before);
    }
    struct stat status {};
    stat(file.c_str(), &status);
    EXPECT_GT(status.st_mtim.tv_sec, longAgo[1].tv_sec) << "a changed file doesn't look unchanged";
}

TEST_F(RIFFRewrite, LinksStayLinks) {
    const auto link = folder / "link.wav";
    const auto twin = folder / "twin.wav";
    std::filesystem::create_symlink("home/x.wav", link);
    std::filesystem::create_hard_link(file, twin);
    EXPECT_EQ(attempt(link), "");
    EXPECT_TRUE(std::filesystem::is_symlink(link));
    EXPECT_EQ(RIFFMeta::read(file).description, "new");
    EXPECT_EQ(RIFFMeta::read(twin).description, "old");
    std::filesystem::remove(file);
    EXPECT_EQ(attempt(link), "link.wav can't be opened: No such file or directory");
    EXPECT_TRUE(std::filesystem::is_empty(home));
    ASSERT_EQ(mkfifo(file.c_str(), 0600), 0);
    EXPECT_EQ(attempt(link), "x.wav can't be opened: it isn't a regular file");
}

TEST_F(RIFFRewrite, OfTwoWritersTheSecondIsRefused) {
    const std::string busy = "x.wav can't be rewritten: it is being rewritten elsewhere";
    writeBytes(temporary, "the other's");
    const int other = open(temporary.c_str(), O_RDONLY | O_CLOEXEC);
    ASSERT_EQ(flock(other, LOCK_EX), 0);
    EXPECT_EQ(attempt(file), busy);
    EXPECT_EQ(readBytes(temporary), "the other's");
    close(other);
    EXPECT_EQ(attempt(file), "");
    EXPECT_EQ(filesInHome(), 1U);

    // What stands in the place of the temporary file and isn't one is not touched.
    const auto bystander = folder / "bystander";
    writeBytes(bystander, "x");
    std::filesystem::create_symlink(bystander, temporary);
    EXPECT_NE(attempt(file), "");
    EXPECT_TRUE(std::filesystem::is_symlink(temporary));
    EXPECT_EQ(readBytes(bystander), "x");
    std::filesystem::remove(temporary);

    // At every stop of one writer another comes along: each either succeeds or is told that it didn't.
    int stops = 1;
    for (int at = 0; at < stops; ++at) {
        std::string second = "not tried";
        const auto meddle = [&](int count, long) {
            stops = count + 1;
            if (count == at) { second = attempt(file, "second"); }
            return true;
        };
        const int first = runTraced([&] { return attempt(file, "first").empty() ? 0 : 1; }, meddle);
        expectComplete({"first", "second"});
        if (HasFatalFailure()) { FAIL() << at; }
        const std::string said = RIFFMeta::read(file).description;
        EXPECT_TRUE((said == "first" && first == 0) || (said == "second" && second.empty())) << at << " " << said;
        EXPECT_EQ(filesInHome(), 1U) << at;
    }
    EXPECT_GT(stops, 50);
}

TEST_F(RIFFRewrite, AFileThatChangesMeanwhileIsKept) {
    using Change = std::function<void()>;
    const auto replace = [&] {
        writeBytes(home / "other", "other");
        std::filesystem::rename(home / "other", file);
    };
    const auto content = [&] { return std::filesystem::exists(file) ? readBytes(file) : "gone"; };
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
            const std::string said = attempt(file);
            return said.empty() ? 0 : said == "x.wav can't be rewritten: it has changed meanwhile" ? 7 : 1;
        };
        const int end = runTraced(job, meddle);
        EXPECT_FALSE(std::filesystem::exists(temporary));
        EXPECT_TRUE(end == 0 || content() == changed);
        return end;
    };
    const Change changes[] = {
        [&] { std::filesystem::resize_file(file, old.size() + 2); }, [&] { std::filesystem::resize_file(file, 100); },
        [&] { utimensat(AT_FDCWD, file.c_str(), longAgo, 0); }, replace, [&] { std::filesystem::remove(file); }};
    for (size_t i = 0; i < std::size(changes); ++i) {
        for (const long call : {SYS_flock, SYS_copy_file_range, SYS_fsync}) {
            EXPECT_EQ(meddled(changes[i], call), 7) << i << " " << call;
        }
    }
    const Change removal = [&] { std::filesystem::remove(temporary); };
    EXPECT_EQ(meddled(removal, SYS_fsync), 7);
    EXPECT_EQ(meddled(removal, SYS_flock), 0) << "a writer that cleared away what was no leftover costs a second try";
}

}  // namespace
}  // namespace brindlehum
