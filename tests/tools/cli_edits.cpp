// edits and plan: the files in the folder as libsndfile reads them, and files that can't be cut.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "cli_child.h"
#include "support/music.h"

namespace brindlehum {
namespace {

using namespace test;
using nlohmann::json;

std::string song(const TempFolder& folder, const std::string& name) {
    writeAudio(folder / name, Planes(2, clickPiece(40)), {.rate = int(musicRate)});
    return (folder / name).string();
}

TEST(CliEdits, WritesExactlyWhatThePlanListsAndThePlanWritesNothing) {
    const TempFolder home;
    std::vector<std::string> words = {
        "plan", song(home, "Forty.wav"), "targets", "15", "20.5", "extended", "60", "crossfade", "10"};
    const auto planned = runCli(words, homeIn(home));
    ASSERT_EQ(planned.objects.size(), 1U);
    EXPECT_FALSE(std::filesystem::exists(home / "Forty Edits"));

    words[0] = "edits";
    const auto made = runCli(words, homeIn(home));
    EXPECT_EQ(made.exitCode, 0);
    EXPECT_TRUE(made.errors.empty());
    ASSERT_EQ(made.objects.size(), 1U);
    const json& object = made.objects[0];
    EXPECT_EQ(object["plans"], planned.objects[0]["plans"]);
    EXPECT_EQ(object["folder"], (home / "Forty Edits").string());
    EXPECT_TRUE(std::filesystem::exists(object["notes"].get<std::string>()));
    std::vector<std::string> names;
    for (const json& plan : object["plans"]) {
        EXPECT_EQ(plan.size(), 13U) << plan;
        names.push_back(plan["name"]);
        const ReadAudio wav = readAudio(plan["file"].get<std::string>());
        EXPECT_EQ(wav.rate, int(musicRate));
        EXPECT_NEAR(double(wav.planes.at(0).size()) / musicRate, plan["seconds"].get<double>(), 1e-9);
    }
    EXPECT_THAT(names, testing::IsSupersetOf({"15s", "1m00s extended"}));
}

// Bars of two seconds from 0: one that starts elsewhere moves every splice, whether said by words or set in the window,
// and the words go first.
TEST(CliEdits, CutsOnTheBarsThatTheUserGives) {
    const TempFolder home;
    const std::string file = song(home, "Song.wav");
    const auto splicesOn = [&](double downbeat, std::vector<std::string> words) {
        words.insert(words.begin(), {"plan", file});
        const auto result = runCli(words, homeIn(home));
        int splices = 0;
        for (const json& plan : result.objects.at(0)["plans"]) {
            for (size_t i = 1; i < plan["spans"].size(); ++i, ++splices) {
                const double start = plan["spans"][i]["start"].get<double>() / musicRate;
                EXPECT_LT(std::abs(std::remainder(start - downbeat, 2.0)), 0.05) << downbeat << ": " << plan;
            }
        }
        EXPECT_GT(splices, 0);
    };
    splicesOn(0, {});
    splicesOn(0.5, {"downbeat", "0.5", "meter", "4"});
    const json bars = json::array({json::object({{"path", file}, {"downbeat", 1.0}, {"beatsPerBar", 4}})});
    std::filesystem::create_directories(home / "config/Brindlehum");
    writeBytes(home / "config/Brindlehum/defaults.json", json::object({{"analysis.bars", bars.dump()}}).dump());
    splicesOn(1, {});
    splicesOn(0.5, {"downbeat", "0.5", "meter", "4"});
    EXPECT_EQ(runCli({"plan", file, "meter", "17"}, homeIn(home)).exitCode, 1);
}

TEST(CliEdits, ReportsFilesThatCannotBeCutAndMakesTheOthers) {
    const TempFolder home;
    const std::string good = song(home, "Good.wav");
    writeBytes(home / "text.wav", "no audio");
    const auto result =
        runCli({"edits", (home / "text.wav").string(), good, (home / "absent.wav").string(), "extended", "none"},
               homeIn(home));
    EXPECT_EQ(result.exitCode, 1);
    ASSERT_EQ(result.objects.size(), 3U);
    EXPECT_TRUE(result.objects[0]["notes"].is_null());
    EXPECT_TRUE(result.objects[0]["plans"].empty());
    EXPECT_FALSE(result.objects[1]["plans"].empty());
    ASSERT_EQ(result.errors.size(), 2U);
    EXPECT_THAT(result.errors[1], testing::HasSubstr("No such file"));
    EXPECT_FALSE(std::filesystem::exists(home / "text Edits"));
}

}  // namespace
}  // namespace brindlehum
