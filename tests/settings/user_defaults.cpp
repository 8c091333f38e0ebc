// The defaults file: written behind the main thread's back, shared with other processes, robust to what it finds.
#include "settings/user_defaults.h"

#include <fcntl.h>
#include <sched.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <gmock/gmock.h>

#include <atomic>
#include <cstdlib>
#include <functional>
#include <nlohmann/json.hpp>

#include "support/audio_files.h"
#include "support/full_disk.h"

namespace brindlehum {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;
using test::readBytes;
using test::writeBytes;

constexpr double patience = 60;  // seconds, for a machine that is busy

// As another process would meet it.
std::optional<std::string> stored(const fs::path& file, const std::string& key) {
    return FileDefaults(file).data(key);
}

class FileDefaultsTest : public testing::Test {
protected:
    void put(const std::string& text) const {
        fs::create_directories(file_.parent_path());
        writeBytes(file_, text);
    }
    size_t filesBeside() const { return size_t(std::distance(fs::directory_iterator(file_.parent_path()), {})); }

    test::TempFolder folder_;
    fs::path file_ = folder_ / "a/b/defaults.json";
};

TEST_F(FileDefaultsTest, ValuesSurviveTheProcessAsJsonForTheUserAlone) {
    const std::string value = "{\"deviceUID\":\"a\\\"b\"}\n\xE2\x99\xAA";
    {
        FileDefaults defaults(file_);
        EXPECT_FALSE(defaults.data("k"));
        EXPECT_FALSE(fs::exists(folder_ / "a")) << "reading must not create anything";
        defaults.set("k", value);
        defaults.set("not text", "\xff");
        EXPECT_EQ(defaults.data("k"), value);
    }
    EXPECT_EQ(json::parse(readBytes(file_)), json({{"k", value}})) << "the end stores the last value";
    for (const auto& [path, bits] : {std::pair(file_, 0600), {file_.parent_path(), 0700}, {folder_ / "a", 0700}}) {
        EXPECT_EQ(fs::status(path).permissions(), fs::perms(bits)) << path;
    }
    EXPECT_EQ(filesBeside(), 1U);
}

TEST_F(FileDefaultsTest, SetNeverWaitsForTheDiskAndTheLastValueIsStored) {
    put("{}");
    const fs::path busy = file_.parent_path() / ".defaults.json.bh-tmp";
    writeBytes(busy, "another process is writing");
    const int other = open(busy.c_str(), O_RDONLY | O_CLOEXEC);
    ASSERT_EQ(flock(other, LOCK_EX), 0);
    FileDefaults defaults(file_);
    for (int i = 0; i < 1000; ++i) { defaults.set("slider", std::to_string(i)); }
    EXPECT_EQ(defaults.data("slider"), "999");
    EXPECT_FALSE(defaults.flush(0.001)) << "the other one still writes";
    EXPECT_EQ(readBytes(file_), "{}");
    close(other);
    // Without a flush.
    while (stored(file_, "slider") != "999") { sched_yield(); }
}

TEST_F(FileDefaultsTest, LinkToTheFileStays) {
    put("{\"k\":\"old\"}");
    fs::create_symlink(file_, folder_ / "link.json");
    FileDefaults(folder_ / "link.json").set("k", "new");
    EXPECT_TRUE(fs::is_symlink(folder_ / "link.json"));
    EXPECT_EQ(stored(file_, "k"), "new");
}

TEST_F(FileDefaultsTest, KeysOfOtherProcessesStay) {
    FileDefaults one(file_), other(file_);
    one.set("one", "1");
    one.flush(patience);
    put(R"({"foreign":{"deep":[1]},"one":"4"})");
    other.set("other", "5");
    other.flush(patience);
    EXPECT_EQ(json::parse(readBytes(file_)), json::parse(R"({"foreign":{"deep":[1]},"one":"4","other":"5"})"));
}

TEST_F(FileDefaultsTest, UnreadableFileIsKeptAside) {
    for (const std::string garbage : {"{\"k\":\"cut o", "[1,2]", "\xff\xfe", ""}) {
        put(garbage);
        EXPECT_FALSE(stored(file_, "k"));
        EXPECT_EQ(readBytes(file_), garbage) << "reading must not write";
        FileDefaults(file_).set("k", "v");
        EXPECT_EQ(stored(file_, "k"), "v");
        EXPECT_EQ(readBytes(file_.string() + ".unreadable"), garbage);
        EXPECT_EQ(filesBeside(), 2U);
    }
}

TEST_F(FileDefaultsTest, WhatIsNoFileIsLeftAloneAndTold) {
    const std::pair<const char*, std::function<void()>> cases[] = {
        {"a folder", [&] { fs::create_directories(file_ / "inside"); }},
        {"a pipe", [&] { ::mkfifo(file_.c_str(), 0600); }},
        {"a device", [&] { fs::create_symlink("/dev/zero", file_); }},
        {"an endless file", [&] { (put("x"), fs::resize_file(file_, uintmax_t(1) << 42)); }}};
    for (const auto& [name, make] : cases) {
        fs::remove_all(folder_ / "a");
        fs::create_directories(file_.parent_path());
        make();
        const fs::file_type before = fs::status(file_).type();
        const bool isFile = before == fs::file_type::regular;
        FileDefaults defaults(file_);
        EXPECT_EQ(defaults.problem().has_value(), !isFile) << name;
        defaults.set("k", "v");
        EXPECT_EQ(defaults.flush(patience), isFile) << name;
        EXPECT_EQ(defaults.data("k"), "v") << name;
        EXPECT_EQ(fs::status(file_).type(), before) << name;
    }
}

TEST_F(FileDefaultsTest, AProblemIsToldOnceAndGoesWhenItIsMended) {
    put("{}");
    FileDefaults defaults(file_);
    std::atomic<int> told = 0;
    defaults.setOnProblem([&] { ++told; });
    {
        const test::FullDisk disk(64);
        for (const char* key : {"k", "l"}) {
            defaults.set(key, std::string(10000, 'x'));
            EXPECT_FALSE(defaults.flush(patience));
        }
    }
    EXPECT_EQ(told, 1);
    EXPECT_THAT(defaults.problem().value_or(""), testing::HasSubstr("Settings can't be stored. "));
    defaults.set("k", "v");
    EXPECT_TRUE(defaults.flush(patience));
    EXPECT_FALSE(defaults.problem());
    EXPECT_EQ(told, 2);
}

TEST_F(FileDefaultsTest, ValueOfAFailedWriteHoldsAndGoesWithTheNext) {
    put("{\"k\":\"old\"}");
    FileDefaults defaults(file_);
    {
        const test::FullDisk disk(64);
        defaults.set("k", std::string(10000, 'x'));
        EXPECT_FALSE(defaults.flush(patience));
    }
    EXPECT_EQ(defaults.data("k")->size(), 10000U);
    EXPECT_EQ(stored(file_, "k"), "old");
    defaults.set("other", "2");
    EXPECT_TRUE(defaults.flush(patience));
    EXPECT_EQ(stored(file_, "k")->size(), 10000U);
}

TEST(FileDefaults, FileLiesInTheConfigurationFolder) {
    ::setenv("XDG_CONFIG_HOME", "/c", 1);
    ::setenv("HOME", "/h", 1);
    EXPECT_EQ(FileDefaults::defaultFile(), "/c/Brindlehum/defaults.json");
    for (const char* unusable : {"", "relative"}) {
        ::setenv("XDG_CONFIG_HOME", unusable, 1);
        EXPECT_EQ(FileDefaults::defaultFile(), "/h/.config/Brindlehum/defaults.json");
    }
}

}  // namespace
}  // namespace brindlehum
