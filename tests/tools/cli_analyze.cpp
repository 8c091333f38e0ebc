// analyze: the shape of the record, the user's own tempo and meter, and files without music.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "analysis/piece/music_analysis.h"
#include "cli_child.h"
#include "support/music.h"

namespace brindlehum {
namespace {

using namespace test;
using nlohmann::json;
using testing::HasSubstr;

constexpr int fileRate = 22050;

// The keys of a value and of the values in it; of an array those of its first entry.
std::string keysOf(const json& value) {
    if (!value.is_object()) { return value.is_array() && !value.empty() ? "[" + keysOf(value[0]) + "]" : ""; }
    std::string text = "{";
    for (const auto& [key, inner] : value.items()) { text += key + keysOf(inner) + " "; }
    return text + "}";
}

TEST(CliAnalyze, PrintsEveryFieldOfTheRecord) {
    const TempFolder folder;
    const std::string file = (folder / "ten bars.wav").string();
    const Planes planes(2, clickPiece(20));
    writeAudio(file, planes, {.rate = fileRate});
    const auto result = runCli({"analyze", file});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_TRUE(result.errors.empty()) << "no progress where stderr is no terminal";
    ASSERT_EQ(result.objects.size(), 1U);
    const json& got = result.objects[0];
    const std::string loop = "[{boundary isContentEnd phraseBars reasons[] score time }]";
    EXPECT_EQ(
        keysOf(got),
        "{grid{attackShift beats[] beatsPerBar boundaries[] bpm downbeatConfidence downbeats[] duration "
        "grooveStart steady } key{bands[] confidence mode moodTags[] spectralTags[] tonic } "
        "loudness{integrated momentaryMax note samplePeak shortTermMax truePeak } seconds status "
        "structure{exitCandidates" +
            loop + " fadeStart loopCandidates" + loop +
            " notes[] novelty[] "
            "pins{endingStart finalHit introEnd loopEnd loopFile loopStart musicEnd startTime } "
            "profile{activeLevel musicEndBar musicStartBar rms[] } similarity[[]] } summary "
            "tempo{alternatives[{bpm relation score }] beats[] bpm candidates[{bpm ranked score }] drift "
            "driftSpreadPct durationSec envFull[] envLow[] firstDownbeat meter{confidence contrast downbeatOffset "
            "group label } score snappedPct tempoMap[{bpm t }] twin } url }");
    MemorySamples samples(planes, fileRate);
    const auto direct = analyzeMusic({samples, SourceFormat::stereo(), "ten bars.wav", {}, {}});
    EXPECT_EQ(got["url"], file);
    EXPECT_EQ(got["status"], "done");
    EXPECT_EQ(got["summary"], direct.analysis->summary());
    EXPECT_EQ(got["structure"]["pins"], json(direct.analysis->structure.pins));
    EXPECT_EQ(got["structure"]["similarity"][2][9], direct.analysis->structure.similarity.at(2, 9));
}

TEST(CliAnalyze, TakesTempoAndMeterByHand) {
    const TempFolder folder;
    const std::string file = (folder / "piece.flac").string();
    writeAudio(file, {clickPiece(20)}, {.kind = FileKind::flac, .rate = fileRate});
    const auto result = runCli({"analyze", "bpm", "60", file, "meter", "3", "downbeat", "4"});
    ASSERT_EQ(result.objects.size(), 1U);
    EXPECT_NEAR(result.objects[0]["grid"]["bpm"].get<double>(), 60, 0.4);
    EXPECT_EQ(result.objects[0]["grid"]["beatsPerBar"], 3);
    EXPECT_NEAR(result.objects[0]["grid"]["downbeats"][1].get<double>(), 4, 0.03)
        << "a bar of three seconds starts there";
    EXPECT_NEAR(result.objects[0]["tempo"]["bpm"].get<double>(), 120, 0.5) << "what was heard stays on record";
}

TEST(CliAnalyze, ContinuesAfterFilesWithoutMusic) {
    const TempFolder folder;
    writeAudio(folder / "short.wav", noisePlanes(1, fileRate), {.rate = fileRate});
    writeAudio(folder / "silent.wav", {std::vector<float>(50000)}, {.rate = fileRate});
    writeBytes(folder / "text.wav", "no audio");
    writeAudio(folder / "half.flac", noisePlanes(2, 200'000), {.kind = FileKind::flac});
    std::filesystem::resize_file(folder / "half.flac", std::filesystem::file_size(folder / "half.flac") / 2);
    std::vector<std::string> words = {"analyze"};
    for (const char* name : {"gone.wav", "short.wav", "text.wav", "silent.wav", "half.flac"}) {
        words.push_back(folder / name);
    }
    const auto result = runCli(words);
    EXPECT_EQ(result.exitCode, 1);
    ASSERT_EQ(result.errors.size(), 5U);
    EXPECT_THAT(result.errors[1], HasSubstr("short.wav: Too short"));
    EXPECT_THAT(result.errors[3], HasSubstr("silent.wav: No steady pulse"));
    EXPECT_THAT(result.errors[4], HasSubstr("half.flac: The file breaks off after"));
    ASSERT_EQ(result.objects.size(), 2U);
    EXPECT_EQ(result.objects[0]["status"], "tooShort");
    EXPECT_EQ(result.objects[1]["status"], "noPulse");
}

}  // namespace
}  // namespace brindlehum
