// render: the audible path without a device, against the source and a fold by hand.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>

#include "cli_child.h"

namespace brindlehum {
namespace {

using namespace test;

// Renders and reads the result back; the JSON must agree with the file.
class CliRender : public testing::Test {
protected:
    Planes render(const Planes& source, std::vector<std::string> words, const FileShape& shape = {}) {
        const auto in = folder_ / "in.wav";
        const auto out = folder_ / "out.wav";
        writeAudio(in, source, shape);
        words.insert(words.begin(), {"render", in.string(), out.string()});
        const auto result = runCli(words);
        EXPECT_EQ(result.exitCode, 0);
        if (result.objects.size() != 1) { return Planes(16); }
        json_ = result.objects[0];
        const ReadAudio wav = readAudio(out);
        const std::string bytes = readBytes(out);
        std::memcpy(&mask_, bytes.data() + bytes.find("fmt ") + 28, 4);
        EXPECT_EQ(bytes.substr(bytes.find("fmt ") + 22, 2), le16(32));
        EXPECT_EQ(json_.at("sampleRate"), wav.rate);
        EXPECT_EQ(json_.at("channels"), wav.planes.size());
        EXPECT_EQ(json_.at("frames"), wav.planes.at(0).size());
        EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder_.path()), {}), 2);
        return wav.planes;
    }

    TempFolder folder_;
    nlohmann::json json_;
    uint32_t mask_ = 0;  // dwChannelMask of the file
};

TEST_F(CliRender, IsBitExactFromTheFirstFrameToTheLastWhereNothingIsMixed) {
    struct Case {
        int channels;
        std::vector<std::string> words;
        uint32_t mask;
    };
    const Case cases[] = {
        {16, {"layout", "l916", "format", "9.1.6", "block", "333"}, 0},
        {12, {"layout", "l714", "block", "1"}, 0},  // a WAVE file would want the rear speakers first
        {10, {"layout", "l514", "format", "5.1.4"}, 0x2D03F},
        {2, {}, 0x3},
        {2, {"headphones"}, 0x3},
        {64, {"layout", "l916", "channels", "16"}, 0},  // discrete: the first sixteen
    };
    for (const Case& c : cases) {
        const Planes source = noisePlanes(c.channels, 20'011, 70);
        EXPECT_EQ(render(source, c.words), Planes(source.begin(), source.begin() + std::min(c.channels, 16)));
        EXPECT_EQ(mask_, c.mask) << c.channels;
        EXPECT_EQ(json_.at("toBinaural"), false);
    }
}

TEST_F(CliRender, CutsAPartToTheFrame) {
    const Planes source = noisePlanes(2, 48'000, 80);
    const Planes out = render(source, {"from", "0.25", "to", "0.5"});
    ASSERT_EQ(out[0].size(), 12'000U);
    for (size_t c = 0; c < 2; ++c) {
        EXPECT_TRUE(std::equal(out[c].begin(), out[c].end(), source[c].begin() + 12'000));
    }
}

// 5.1 to a pair with volume, trims and a swapped map, each entry worked out by hand.
TEST_F(CliRender, FoldsABedAsTheArithmeticSays) {
    const Planes s = noisePlanes(6, 5000, 90);
    const Planes out = render(
        s, {"layout", "stereo", "outputs", "2,0", "trims", "0,-20", "gain", "-6", "listen", "mono", "block", "100"},
        {.kind = FileKind::wavex, .mask = 0x3F});
    ASSERT_EQ(out.size(), 3U);
    const double gain = std::pow(10, -6.0 / 20);
    const double half = std::sqrt(0.5);
    for (size_t i = 0; i < 5000; ++i) {
        ASSERT_NEAR(out[2][i], (s[0][i] + half * s[2][i] + 0.7071 * s[4][i]) * gain, 1e-6) << i;
        ASSERT_NEAR(out[0][i], (s[1][i] + half * s[2][i] + 0.7071 * s[5][i]) * gain * 0.1, 1e-6) << i;
        ASSERT_EQ(out[1][i], 0.0F);
    }
}

// A click at the end of the left side: its response in both ears, louder in the near one, is kept beyond the end.
TEST_F(CliRender, KeepsTheTailOfTheHeadphoneResponses) {
    Planes source(12, std::vector<float>(3000));
    source[4].back() = 1;  // Ls
    const Planes out = render(source, {"headphones", "layout", "l714", "rate", "44100"});
    EXPECT_EQ(json_.at("toBinaural"), true);
    EXPECT_EQ(json_.at("rows"), 12);
    ASSERT_EQ(out.size(), 2U);
    const auto energyOfTail = [](const std::vector<float>& x) {
        double sum = 0;
        for (size_t i = 3000 * 441 / 480; i < x.size(); ++i) { sum += double(x[i]) * double(x[i]); }
        return sum;
    };
    EXPECT_GT(energyOfTail(out[0]), 2 * energyOfTail(out[1]));
    EXPECT_GT(energyOfTail(out[1]), 1e-4);
}

TEST_F(CliRender, LeavesTheOldOutputAsItWasWhenItFails) {
    const auto out = folder_ / "out.wav";
    const auto in = folder_ / "in.flac";
    writeBytes(out, "old");
    writeAudio(in, noisePlanes(2, 100'000), {.kind = FileKind::flac});
    std::filesystem::resize_file(in, std::filesystem::file_size(in) / 2);  // the data breaks off half way
    const auto result = runCli({"render", in.string(), out.string()});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.errors.size(), 1U);
    EXPECT_TRUE(result.objects.empty());
    EXPECT_EQ(readBytes(out), "old");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder_.path()), {}), 2);
}

TEST_F(CliRender, TakesAnUpmixOfTheUsersOwnByItsName) {
    const TempFolder home;
    const nlohmann::json own = {{"name", "My Bed"}, {"params", {{"strength", 0.0}}}};
    const nlohmann::json settings = {{"upmixPresets", nlohmann::json::array({own})}};
    std::filesystem::create_directories(home / "config/Brindlehum");
    writeBytes(home / "config/Brindlehum/defaults.json", nlohmann::json{{"settings.v1", settings.dump()}}.dump());
    const auto in = (folder_ / "in.wav").string();
    const auto out = (folder_ / "out.wav").string();
    writeAudio(in, noisePlanes(2, 9000, 5));
    EXPECT_NE(runCli({"render", in, out, "layout", "l51", "upmix", "no such"}, homeIn(home)).exitCode, 0);
    EXPECT_EQ(runCli({"render", in, out, "layout", "l51", "upmix", "my bed"}, homeIn(home)).exitCode, 0);
    const ReadAudio made = readAudio(out);
    EXPECT_EQ(made.planes[2], std::vector<float>(made.planes[2].size())) << "at strength 0 the centre is silent";
}

}  // namespace
}  // namespace brindlehum
