// edits and plan: what the folder holds as libsndfile reads it, and files that can't be cut.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>

#include "analysis/synth.h"
#include "cli_child.h"

namespace brindlehum {
namespace {

using namespace test;
using nlohmann::json;
using testing::HasSubstr;

// Forty seconds of clicks at 120 BPM over chords that change every four bars.
std::filesystem::path song(const TempFolder& folder, const std::string& name) {
    std::vector<float> x = clickTrack(beatTimes(0, 40, [](double) { return 120.0; }), 4, 0, 40);
    for (int part = 0; part < 5; ++part) {
        const int root = part % 2 == 0 ? 57 : 62;
        addChord(x, part * 8, part * 8 + 8, {root, root + 4, root + 7}, 0.05);
    }
    writeAudio(folder / name, {x, x}, {.rate = int(rate)});
    return folder / name;
}

CliResult run(const TempFolder& home, std::vector<std::string> words) {
    const std::string path = home.path().string();
    return runCli(words, {"HOME=" + path, "XDG_CONFIG_HOME=" + path + "/config", "XDG_DATA_HOME=" + path + "/data"});
}

TEST(CliEdits, WritesWhatThePlanTellsAndThePlanWritesNothing) {
    const TempFolder home;
    const std::string file = song(home, "Forty.wav").string();
    const std::vector<std::string> words = {file, "targets", "15", "20.5", "extended", "60", "crossfade", "10"};
    std::vector<std::string> planWords = words;
    planWords.insert(planWords.begin(), "plan");
    const auto planned = run(home, planWords);
    ASSERT_EQ(planned.objects.size(), 1U);
    EXPECT_FALSE(std::filesystem::exists(home / "Forty Edits"));

    std::vector<std::string> editWords = words;
    editWords.insert(editWords.begin(), "edits");
    const auto made = run(home, editWords);
    EXPECT_EQ(made.exitCode, 0);
    EXPECT_TRUE(made.errors.empty());
    ASSERT_EQ(made.objects.size(), 1U);
    const json& object = made.objects[0];
    EXPECT_EQ(object["plans"], planned.objects[0]["plans"]);
    EXPECT_EQ(object["folder"], (home / "Forty Edits").string());
    EXPECT_TRUE(std::filesystem::exists(object["notes"].get<std::string>()));
    std::vector<std::string> names;
    for (const json& plan : object["plans"]) {
        EXPECT_EQ(plan.size(), 12U) << plan;
        names.push_back(plan["name"]);
        const ReadWav wav = readWav(plan["file"].get<std::string>());
        ASSERT_EQ(wav.planes.size(), 2U);
        EXPECT_EQ(wav.rate, int(rate));
        EXPECT_NEAR(double(wav.planes[0].size()) / rate, plan["seconds"].get<double>(), 1e-9);
        const json& cut = plan["cutAtSec"];
        if (cut.is_number()) { EXPECT_EQ(wav.planes[0].size(), size_t(cut.get<double>() * rate)); }
    }
    EXPECT_THAT(names, testing::IsSupersetOf({"15s", "1m00s extended"}));
}

TEST(CliEdits, AFileThatCantBeCutIsToldAndTheOthersAreMade) {
    const TempFolder home;
    const std::string good = song(home, "Good.wav").string();
    const std::string text = (home / "text.wav").string();
    std::ofstream(text) << "no audio";
    const auto result = run(home, {"edits", text, good, (home / "absent.wav").string(), "extended", "none"});
    EXPECT_EQ(result.exitCode, 1);
    ASSERT_EQ(result.objects.size(), 3U);
    EXPECT_TRUE(result.objects[0]["notes"].is_null());
    EXPECT_TRUE(result.objects[0]["plans"].empty());
    EXPECT_FALSE(result.objects[1]["plans"].empty());
    ASSERT_EQ(result.errors.size(), 2U);
    EXPECT_THAT(result.errors[1], HasSubstr("No such file"));
    EXPECT_FALSE(std::filesystem::exists(home / "text Edits"));
}

}  // namespace
}  // namespace brindlehum
