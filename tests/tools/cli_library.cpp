// scan, meta, search and facets on catalogs of their own.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "cli_child.h"

namespace brindlehum {
namespace {

using namespace test;
using nlohmann::json;

class CliLibrary : public testing::Test {
protected:
    void SetUp() override {
        std::filesystem::create_directories(root / "b");
        writeAudio(root / "DOORWood_Slam_JD_Big.wav", noisePlanes(1, 480), {.kind = FileKind::wav, .bits = 16});
        writeAudio(root / "b" / "c.flac", noisePlanes(2, 480), {.kind = FileKind::flac, .bits = 16});
    }
    CliResult run(const std::vector<std::string>& words) const { return runCli(words, homeIn(folder)); }
    json one(const std::vector<std::string>& words) const {
        const CliResult result = run(words);
        EXPECT_EQ(result.exitCode, 0);
        EXPECT_TRUE(result.errors.empty());
        return result.objects.size() == 1 ? result.objects[0] : json();
    }

    void expectRefused(const std::vector<std::string>& words, const char* reason) const {
        const CliResult result = run(words);
        EXPECT_EQ(result.exitCode, 1);
        ASSERT_EQ(result.errors.size(), 1U);
        EXPECT_THAT(result.errors[0], testing::HasSubstr(reason));
    }

    TempFolder folder;
    const std::filesystem::path root = std::filesystem::canonical(folder.path()) / "sounds";
};

TEST_F(CliLibrary, ScansIntoTheUsersCatalogOrANamedOne) {
    for (const bool named : {false, true}) {
        std::vector<std::string> words = {"scan", root.string() + "/"};
        if (named) { words.insert(words.end(), {"catalog", (folder / "my.sqlite").string()}); }
        const json first = one(words);
        EXPECT_EQ(first.at("root"), root.string());
        EXPECT_EQ(first.at("outcome"), "complete");
        EXPECT_EQ(first.at("read"), 2);
        EXPECT_EQ(one(words).at("read"), 0);
    }
    EXPECT_TRUE(std::filesystem::exists(folder / "data" / "Brindlehum" / "Catalog.sqlite"));
    EXPECT_TRUE(std::filesystem::exists(folder / "my.sqlite"));
    std::filesystem::rename(root, folder / "away");
    expectRefused({"scan", root.string()}, "can't be reached");
}

TEST_F(CliLibrary, FindsAndCounts) {
    const std::string catalog = (folder / "my.sqlite").string();
    one({"scan", root.string(), "catalog", catalog});
    const json found = one({"search", "SLA", "doors", "-glass", "catalog", catalog});
    EXPECT_EQ(found.at("path"), (root / "DOORWood_Slam_JD_Big.wav").string());
    EXPECT_EQ(found.at("meta").at("fxName"), "Slam");
    EXPECT_EQ(run({"search", "slam", "-doors", "catalog", catalog}).objects.size(), 0U);
    EXPECT_EQ(one({"facets", "catalog", catalog}),
              (json{{"total", 2}, {"categories", {{{"name", "DOORS"}, {"count", 1}}}}, {"libraries", json::array()}}));
    for (const char* command : {"search", "facets"}) { expectRefused({command}, ""); }
    EXPECT_FALSE(std::filesystem::exists(folder / "data" / "Brindlehum" / "Catalog.sqlite")) << "searching makes none";
}

TEST_F(CliLibrary, PrintsAndChangesMetadata) {
    const std::string wave = (root / "DOORWood_Slam_JD_Big.wav").string();
    const std::string flac = (root / "b" / "c.flac").string();
    const std::string catalog = (folder / "my.sqlite").string();
    const json before = one({"meta", wave});
    EXPECT_EQ(before.at("fxName"), "Slam");
    EXPECT_FALSE(std::filesystem::exists(folder / "data")) << "looking makes no catalog";
    const json after = one({"meta", wave, "DESCRIPTION=a = b & <c>", "RATING=4"});
    EXPECT_EQ(after.at("description"), "a = b & <c>");
    EXPECT_EQ(one({"meta", wave}).at("rating"), 4);

    one({"scan", root.string(), "catalog", catalog});
    EXPECT_EQ(one({"meta", flac, "NOTES=kept", "catalog", catalog}).at("notes"), "kept");
    EXPECT_EQ(one({"meta", flac}).at("notes"), "kept") << "by the file, whatever the catalog";
    expectRefused({"scan", root.string(), "catalog", wave}, "catalog");
}

TEST_F(CliLibrary, EditThatTheTeamsLogDoesNotTakeIsSavedAndReported) {
    const std::string catalog = (folder / "my.sqlite").string();
    one({"scan", root.string(), "catalog", catalog});
    writeBytes(root / ".brindlehum", "a file in the place of the log's folder");
    const CliResult result = run({"meta", (root / "b" / "c.flac").string(), "NOTES=kept", "catalog", catalog});
    EXPECT_EQ(result.exitCode, 1);
    ASSERT_EQ(result.errors.size(), 1U);
    EXPECT_THAT(result.errors[0], testing::HasSubstr("c.flac: saved, but the team's log can't be written: "));
    ASSERT_EQ(result.objects.size(), 1U);
    EXPECT_EQ(result.objects[0].at("notes"), "kept");
}

// The whole road: folder and file in Latin-1, from the scan to a colleague's catalog.
TEST_F(CliLibrary, NamesThatAreNotUtf8PassThroughCatalogAndTeamLog) {
    const std::string team = root.string() + "/t\xE9";
    const std::string sound = team + "/caf\xE9.flac";
    const std::string mine = (folder / "mine.sqlite").string();
    const std::string theirs = (folder / "theirs.sqlite").string();
    std::filesystem::create_directories(team + "/.brindlehum/changes");
    std::filesystem::copy_file(root / "b" / "c.flac", sound);
    for (const std::string& catalog : {mine, theirs}) {
        EXPECT_EQ(one({"scan", team, "catalog", catalog}).at("root"), root.string() + "/t//E9");
    }
    EXPECT_EQ(one({"meta", sound, "NOTES=kept", "catalog", mine}).at("notes"), "kept");
    const json found = one({"search", "caf", "catalog", mine});
    EXPECT_EQ(found.at("path"), root.string() + "/t//E9/caf//E9.flac");
    EXPECT_EQ(found.at("meta").at("notes"), "kept");
    EXPECT_EQ(one({"facets", "catalog", mine}).at("total"), 1);

    const auto log = std::filesystem::directory_iterator(team + "/.brindlehum/changes")->path();
    EXPECT_THAT(readBytes(log), testing::HasSubstr("\"path\":\"caf//E9.flac\""));
    std::filesystem::rename(log, log.parent_path() / "colleague@there.jsonl");
    EXPECT_EQ(one({"scan", team, "catalog", theirs}).at("applied"), 1);
}

}  // namespace
}  // namespace brindlehum
