// probe, overview, devices, and the error lines about words and files that the tool can't use.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <span>

#include "cli_child.h"
#include "support/pipewire/private_pipewire.h"

namespace brindlehum {
namespace {

using namespace test;
using nlohmann::json;
using testing::HasSubstr;
using testing::StartsWith;

TEST(CliProbe, PrintsTheFactsOfEachFile) {
    const TempFolder folder;
    writeAudio(folder / "pair.wav", noisePlanes(2, 4410), {.kind = FileKind::wav, .rate = 44100, .bits = 24});
    writeAudio(folder / "scene_ambix.wav", noisePlanes(4, 7));
    writeAudio(folder / "seven.wav", noisePlanes(7, 1));
    const auto result = runCli({"probe", (folder / "pair.wav").string(), (folder / "scene_ambix.wav").string(),
                                (folder / "seven.wav").string()});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_TRUE(result.errors.empty());
    const json expected[] = {
        json::parse(R"({"sampleRate": 44100.0, "channels": 2, "frames": 4410, "bitDepth": 24, "isFloat": false,
          "codec": "PCM", "bextDescription": null,
          "detected": {"kind": "speakers", "speakers": ["L", "R"], "displayName": "Stereo"}})"),
        json::parse(R"({"channels": 4, "frames": 7, "detected": {"kind": "ambisonic", "order": 1, "norm": "sn3d",
          "displayName": "AmbiX 1st order"}})"),
        json::parse(R"({"channels": 7, "detected": {"kind": "discrete", "channels": 7,
          "displayName": "7-ch discrete"}})"),
    };
    ASSERT_EQ(result.objects.size(), std::size(expected));
    for (size_t i = 0; i < std::size(expected); ++i) {
        EXPECT_EQ(result.objects[i].size(), 10U);
        for (const auto& [key, value] : expected[i].items()) {
            EXPECT_EQ(result.objects[i].at(key), value) << i << key;
        }
    }
}

TEST(CliProbe, ReportsBadFilesAndContinues) {
    const TempFolder folder;
    const std::string odd = (folder / "caf\xE9\n.wav").string();  // Latin-1 and a line break in the name
    writeAudio(odd, noisePlanes(1, 10));
    writeBytes(folder / "text.wav", "this is no audio file, whatever its name says");
    std::vector<std::string> words = {"probe"};
    for (const char* bad : {"no\nne\xFF.wav", "text.wav"}) {
        words.push_back((folder / bad).string());
        words.push_back(odd);
    }
    const auto result = runCli(words);
    EXPECT_EQ(result.exitCode, 1);
    ASSERT_EQ(result.errors.size(), 2U);
    for (size_t i = 0; i < 2; ++i) {
        std::string named = words[1 + 2 * i];
        std::ranges::replace(named, '\n', ' ');
        EXPECT_THAT(result.errors[i], StartsWith("brindlehum-cli: " + named));
    }
    ASSERT_EQ(result.objects.size(), 2U);
    for (const json& object : result.objects) {
        EXPECT_EQ(object.at("channels"), 1);
        EXPECT_EQ(object.at("url"), folder.path().string() + "/caf//E9\n.wav");
    }
}

TEST(CliOverview, PrintsTheExtremesOfEveryBucket) {
    const TempFolder folder;
    const Planes planes = noisePlanes(2, 50'001, 31);
    writeAudio(folder / "noise.wav", planes);
    const auto result = runCli({"overview", (folder / "noise.wav").string()});
    ASSERT_EQ(result.objects.size(), 1U);
    const json& data = result.objects[0];
    EXPECT_EQ(data.at("loadedBuckets"), data.at("bucketCount"));
    ASSERT_EQ(data.at("mins").size(), 2U);
    for (size_t c = 0; c < 2; ++c) {
        ASSERT_EQ(data.at("mins")[c].size(), data.at("bucketCount"));
        const auto [low, high] = std::ranges::minmax(std::span(planes[c]).first(size_t(data.at("bucketFrames"))));
        EXPECT_EQ(data.at("mins")[c][0].get<float>(), low);
        EXPECT_EQ(data.at("maxs")[c][0].get<float>(), high);
    }
}

TEST(CliDevices, ListsTheSinksOfTheSoundServer) {
    const PrivatePipeWire server;
    const auto result = runCli({"devices"});
    EXPECT_EQ(result.exitCode, 0);
    std::vector<std::string> listed;
    for (const json& d : result.objects) {
        listed.push_back(d.at("uid").get<std::string>() + "|" + d.at("name").get<std::string>() + "|" +
                         d.at("outputChannels").dump());
    }
    EXPECT_THAT(listed, testing::ElementsAre("sink2|Pair|2", "sink12|Room of twelve|12", "sink16|sink16|16"));
    EXPECT_EQ(std::ranges::count_if(result.objects, [](const json& d) { return d.at("isDefault") == true; }), 1);
}

TEST(Cli, NamesTheWordThatItCannotUse) {
    const TempFolder home;
    const TempFolder folder;
    const std::string in = (folder / "in.wav").string();
    const std::string out = (folder / "out.wav").string();
    const std::string png = (folder / "out.png").string();
    const std::string gone = (folder / "gone.wav").string();
    writeAudio(in, noisePlanes(2, 1000));
    std::filesystem::create_directory(folder / "folder.png");
    struct Case {
        std::vector<std::string> words;
        std::string named;
    };
    const auto renders = [&](std::vector<std::string> more) {
        more.insert(more.begin(), {"render", in, out});
        return more;
    };
    const Case cases[] = {
        {{}, "usage"},
        {{"prob", in}, "prob"},
        {{"probe"}, "no file"},
        {{"analyze", "bpm", "19", in}, "19"},
        {{"analyze", "meter", "2.5", in}, "2.5"},
        {{"render", in, (folder / "out.flac").string()}, "out.flac"},
        {{"render", in, in}, "made from"},
        {{"render", in, (folder / "none" / "out.wav").string()}, "none"},
        {{"render", gone, out}, "gone.wav"},
        {renders({"loudly"}), "loudly"},
        {renders({"layout", "l99"}), "l99"},
        {renders({"block", "4097"}), "4097"},
        {renders({"outputs", "0,,1"}), "outputs"},
        {renders({"trims", "0;1"}), "0;1"},
        {renders({"format", "5.1"}), "Stereo, 2-ch discrete"},
        {renders({"from", "0.01", "to", "0.01"}), "from"},
        {{"edits", in, "targets"}, "no length after \"targets\""},
        {{"edits", in, "extended", "soon"}, "extended"},
        {{"picture", in, out}, "out.wav"},
        {{"picture", in, (folder / "folder.png").string()}, "folder.png"},
        {{"picture", in, png, "theme", "blue"}, "blue"},
        {{"picture", in, png, "size", "100x9000"}, "100"},
        {{"meta", in, "NOTES"}, "NOTES"},
        {{"meta", in, "COLOUR=red"}, "COLOUR"},
        {{"meta", in, "RATING=6"}, "RATING"},
        {{"meta", in, "NOTES=\xFF"}, "NOTES"},
    };
    for (const Case& c : cases) {
        const auto result = runCli(c.words, homeIn(home));
        SCOPED_TRACE(testing::PrintToString(c.words));
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_EQ(result.output, "");
        ASSERT_EQ(result.errors.size(), 1U);
        EXPECT_THAT(result.errors[0], StartsWith("brindlehum-cli: "));
        EXPECT_THAT(result.errors[0], HasSubstr(c.named));
        const auto left = std::distance(std::filesystem::directory_iterator(folder.path()), {});
        EXPECT_EQ(left, 2) << "nothing is left beside the source";
    }
    const auto help = runCli({"help"});
    EXPECT_EQ(help.exitCode, 0);
    EXPECT_THAT(help.output, HasSubstr("render FILE OUT.wav"));
}

}  // namespace
}  // namespace brindlehum
