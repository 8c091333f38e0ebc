// The defaults file through failed writes, foreign content and other processes.
#include "settings/user_defaults.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <nlohmann/json.hpp>
#include <set>

#include "support/audio_files.h"
#include "support/full_disk.h"

namespace brindlehum {
namespace {

namespace fs = std::filesystem;
using test::readBytes;
using test::writeBytes;

unsigned mode(const fs::path& path) {
    return unsigned(fs::status(path).permissions());
}

class FileDefaultsTest : public testing::Test {
protected:
    void put(const std::string& text) const {
        fs::create_directories(file_.parent_path());
        writeBytes(file_, text);
    }
    // Nothing but the named files lies beside the defaults.
    void expectFiles(std::set<std::string> wanted) const {
        std::set<std::string> found;
        for (const auto& entry : fs::directory_iterator(file_.parent_path())) { found.insert(entry.path().filename()); }
        EXPECT_EQ(found, wanted);
    }

    test::TempFolder folder_;
    fs::path file_ = folder_ / "a/b/defaults.json";
};

TEST_F(FileDefaultsTest, SurvivesTheProcessAsPlainJsonForTheUserAlone) {
    const std::string value = "{\"deviceUID\":\"a\\\"b\"}\n\xE2\x99\xAA";
    FileDefaults defaults(file_);
    EXPECT_FALSE(defaults.data("k"));
    EXPECT_FALSE(fs::exists(folder_ / "a")) << "reading must not create anything";
    defaults.set("k", "first");
    defaults.set("k", value);
    EXPECT_EQ(defaults.data("k"), value);
    EXPECT_EQ(FileDefaults(file_).data("k"), value);
    EXPECT_EQ(nlohmann::json::parse(readBytes(file_)), nlohmann::json({{"k", value}}));
    EXPECT_EQ(mode(file_), 0600U);
    EXPECT_EQ(mode(file_.parent_path()), 0700U);
    EXPECT_EQ(mode(folder_ / "a"), 0700U);
    expectFiles({"defaults.json"});
}

TEST_F(FileDefaultsTest, KeepsTheModeAndTheLinkOfTheFile) {
    put("{\"k\":\"old\"}");
    fs::permissions(file_, fs::perms(0640));
    fs::create_symlink(file_, folder_ / "link.json");
    FileDefaults(folder_ / "link.json").set("k", "new");
    EXPECT_TRUE(fs::is_symlink(folder_ / "link.json"));
    EXPECT_EQ(FileDefaults(file_).data("k"), "new");
    EXPECT_EQ(mode(file_), 0640U);
}

TEST_F(FileDefaultsTest, LeavesKeysOfOthersAlone) {
    FileDefaults one(file_);
    FileDefaults other(file_);
    one.set("one", "1");
    other.set("other", "2");
    one.set("one", "3");
    EXPECT_EQ(FileDefaults(file_).data("one"), "3");
    EXPECT_EQ(FileDefaults(file_).data("other"), "2");
    put("{\"foreign\":{\"deep\":[1]},\"one\":\"4\"}");
    other.set("other", "5");
    EXPECT_EQ(nlohmann::json::parse(readBytes(file_)),
              nlohmann::json::parse("{\"foreign\":{\"deep\":[1]},\"one\":\"4\",\"other\":\"5\"}"));
}

TEST_F(FileDefaultsTest, KeepsAnUnreadableFileAside) {
    for (const std::string garbage : {"{\"k\":\"cut o", "[1,2]", "\xff\xfe", ""}) {
        put(garbage);
        FileDefaults defaults(file_);
        EXPECT_FALSE(defaults.data("k"));
        EXPECT_EQ(readBytes(file_), garbage) << "reading must not write";
        defaults.set("k", "v");
        EXPECT_EQ(FileDefaults(file_).data("k"), "v");
        EXPECT_EQ(readBytes(file_.string() + ".unreadable"), garbage);
        expectFiles({"defaults.json", "defaults.json.unreadable"});
    }
}

// A limit on file size makes the write break off half-way, as a full disk does.
TEST_F(FileDefaultsTest, AFullDiskLeavesTheOldFile) {
    FileDefaults defaults(file_);
    defaults.set("k", "old");
    const std::string old = readBytes(file_);
    {
        const test::FullDisk disk(64);
        defaults.set("k", std::string(10000, 'x'));
    }
    EXPECT_EQ(readBytes(file_), old);
    expectFiles({"defaults.json"});
    EXPECT_EQ(defaults.data("k")->size(), 10000U) << "the value holds for this run";
    defaults.set("other", "2");
    EXPECT_EQ(FileDefaults(file_).data("k")->size(), 10000U) << "the next write takes it along";
}

TEST_F(FileDefaultsTest, UnwritablePlacesAreSilent) {
    writeBytes(folder_ / "plain", "x");
    for (const fs::path& file : {folder_ / "plain/defaults.json", fs::path("/proc/none/defaults.json")}) {
        FileDefaults defaults(file);
        defaults.set("k", "v");
        EXPECT_EQ(defaults.data("k"), "v");
        EXPECT_FALSE(FileDefaults(file).data("k"));
    }
    EXPECT_EQ(readBytes(folder_ / "plain"), "x");
    FileDefaults notText(file_);
    notText.set("k", "\xff");
    notText.set("fine", "v");
    EXPECT_EQ(FileDefaults(file_).data("fine"), "v");
}

TEST(FileDefaults, LiesInTheConfigurationFolder) {
    const auto with = [](const char* config, const char* home) {
        config == nullptr ? unsetenv("XDG_CONFIG_HOME") : setenv("XDG_CONFIG_HOME", config, 1);
        setenv("HOME", home, 1);
        return FileDefaults::defaultFile().string();
    };
    const std::string home = getenv("HOME") == nullptr ? "" : getenv("HOME");
    const std::string config = getenv("XDG_CONFIG_HOME") == nullptr ? "" : getenv("XDG_CONFIG_HOME");
    EXPECT_EQ(with("/c", "/h"), "/c/Brindlehum/defaults.json");
    for (const char* unusable : {"", "relative", static_cast<const char*>(nullptr)}) {
        EXPECT_EQ(with(unusable, "/h"), "/h/.config/Brindlehum/defaults.json");
    }
    with(config.empty() ? nullptr : config.c_str(), home.c_str());
}

}  // namespace
}  // namespace brindlehum
