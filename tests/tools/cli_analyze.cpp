// analyze: every field of the record against the analysis called directly, the user's words, and files without music.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>

#include "analysis/music_analysis.h"
#include "analysis/synth.h"
#include "cli_child.h"

namespace brindlehum {
namespace {

using namespace test;
using nlohmann::json;
using testing::HasSubstr;

constexpr int fileRate = 22050;

// Ten bars of clicks at 120 BPM with a chord on top, the last of them silent on the right.
Planes piece() {
    std::vector<float> x = clickTrack(beatTimes(0, 20, [](double) { return 120.0; }), 4, 0, 20);
    addChord(x, 4, 18, {57, 60, 64}, 0.05);
    Planes planes = {x, x};
    std::fill(planes[1].begin() + 18 * fileRate, planes[1].end(), 0.0F);
    return planes;
}

// A tone that glides down for half a second and then stays: its onsets have no period at all.
Planes glide() {
    std::vector<float> x(22100);
    double phase = 0;
    for (size_t i = 0; i < x.size(); ++i) {
        const double t = double(i) / fileRate;
        phase += 2 * std::numbers::pi * (2153.3 + std::max(0.5 - t, 0.0) * 1854.7) / fileRate;
        x[i] = float(0.5 * std::sin(phase));
    }
    return {x};
}

std::string sketch(const json& value) {
    if (!value.is_object()) { return value.is_array() && !value.empty() ? "[" + sketch(value[0]) + "]" : ""; }
    std::string text = "{";
    for (const auto& [key, inner] : value.items()) { text += key + sketch(inner) + " "; }
    return text + "}";
}

TEST(CliAnalyze, TellsEveryFieldOfTheRecord) {
    const TempFolder folder;
    const std::string file = (folder / "ten bars.wav").string();
    const Planes planes = piece();
    writeAudio(file, planes, {.rate = fileRate});
    const auto result = runCli({"analyze", file});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_TRUE(result.errors.empty()) << "no progress where stderr is no terminal";
    ASSERT_EQ(result.objects.size(), 1U);
    const json& got = result.objects[0];
    const std::string loop = "[{boundary isContentEnd phraseBars reasons[] score time }]";
    EXPECT_EQ(
        sketch(got),
        "{grid{attackShift beats[] beatsPerBar boundaries[] bpm downbeatConfidence downbeats[] duration "
        "grooveStart steady } key{bands[] confidence mode moodTags[] spectralTags[] tonic } "
        "loudness{integrated momentaryMax note samplePeak shortTermMax truePeak } seconds status "
        "structure{exitCandidates" +
            loop + " loopCandidates" + loop +
            " notes[] novelty[] "
            "pins{endingStart finalHit introEnd loopEnd loopFile loopStart musicEnd startTime } "
            "profile{activeLevel musicEndBar musicStartBar rms[] } similarity[[]] } summary "
            "tempo{alternatives[{bpm relation score }] beats[] bpm candidates[{bpm ranked score }] drift "
            "driftSpreadPct durationSec envFull[] envLow[] firstDownbeat meter{confidence contrast downbeatOffset "
            "group label } score snappedPct tempoMap[{bpm t }] twin } url }");

    const auto direct =
        analyzeMusic({planes, fileRate, SourceFormat::stereo(), "ten bars.wav", std::nullopt, std::nullopt});
    ASSERT_TRUE(direct.analysis);
    const MusicAnalysis& a = *direct.analysis;
    const json& structure = got["structure"];
    EXPECT_EQ(got["url"], file);
    EXPECT_EQ(got["status"], "done");
    EXPECT_EQ(got["seconds"], 20.0);
    EXPECT_EQ(got["summary"], a.summary());
    EXPECT_EQ(got["tempo"]["envFull"].get<std::vector<float>>(), a.tempo.envFull);
    EXPECT_EQ(got["grid"]["boundaries"].get<std::vector<double>>(), a.grid.boundaries());
    EXPECT_EQ(got["key"]["tonic"].get<std::string>() + got["key"]["mode"].get<std::string>(), "Aminor");
    EXPECT_EQ(got["loudness"]["truePeak"], a.loudness.truePeak);
    EXPECT_EQ(structure["pins"], json(a.structure.pins));
    const int bars = a.structure.similarity.size;
    ASSERT_EQ(structure["similarity"].size(), size_t(bars));
    EXPECT_EQ(structure["similarity"][2][bars - 1], a.structure.similarity.at(2, bars - 1));
}

TEST(CliAnalyze, TakesTempoAndMeterByHand) {
    const TempFolder folder;
    const std::string file = (folder / "piece.flac").string();
    writeAudio(file, piece(), {.kind = FileKind::flac, .rate = fileRate});
    const auto result = runCli({"analyze", "bpm", "60", file, "meter", "3"});
    ASSERT_EQ(result.objects.size(), 1U);
    const json& grid = result.objects[0]["grid"];
    EXPECT_NEAR(grid["bpm"].get<double>(), 60, 0.4);
    EXPECT_EQ(grid["beatsPerBar"], 3);
    EXPECT_NEAR(grid["downbeats"][2].get<double>() - grid["downbeats"][1].get<double>(), 3, 0.02);
    EXPECT_NEAR(result.objects[0]["tempo"]["bpm"].get<double>(), 120, 0.5) << "what was heard stays on record";
}

TEST(CliAnalyze, GoesOnAfterFilesWithoutMusic) {
    const TempFolder folder;
    const float nan = std::numeric_limits<float>::quiet_NaN();
    writeAudio(folder / "glide.wav", glide(), {.rate = fileRate});
    writeAudio(folder / "second.wav", noisePlanes(1, fileRate), {.rate = fileRate});
    writeAudio(folder / "empty.wav", Planes(2), {.rate = fileRate});
    writeAudio(folder / "nan.wav", {std::vector<float>(50000, nan)}, {.rate = fileRate});
    writeBytes(folder / "text.wav", "no audio");
    std::vector<std::string> words = {"analyze"};
    for (const char* name : {"glide.wav", "gone.wav", "second.wav", "text.wav", "empty.wav", "nan.wav"}) {
        words.push_back((folder / name).string());
    }
    const auto result = runCli(words);
    EXPECT_EQ(result.exitCode, 1);
    std::string told;
    for (const json& line : result.objects) {
        told += std::filesystem::path(line["url"].get<std::string>()).stem().string() + " " +
                line["status"].get<std::string>() + " " + std::to_string(line.size()) + ", ";
    }
    EXPECT_EQ(told, "glide noPulse 3, second tooShort 3, empty tooShort 3, nan done 9, ");
    ASSERT_EQ(result.errors.size(), 5U);
    const char* texts[] = {"glide.wav: No steady pulse found; set the tempo by hand", "gone.wav",
                           "second.wav: Too short", "text.wav", "empty.wav: Too short"};
    for (size_t i = 0; i < 5; ++i) { EXPECT_THAT(result.errors[i], HasSubstr(texts[i])); }
    const json& silent = result.objects.back();
    EXPECT_TRUE(silent["loudness"]["truePeak"].is_null()) << "minus infinity isn't JSON";
    EXPECT_EQ(silent["loudness"]["integrated"], -70);
    EXPECT_EQ(silent["tempo"]["score"], 0);
}

}  // namespace
}  // namespace brindlehum
