// render: the audible path without a device, against the source, a fold by hand and plain convolution.
#include <gtest/gtest.h>

#include <cmath>

#include "cli_child.h"
#include "mix/render/hrtf_set.h"
#include "support/signals.h"

namespace brindlehum {
namespace {

using namespace test;

// Renders and reads the result back; the JSON must agree with the file.
class CliRender : public testing::Test {
protected:
    ReadWav render(const Planes& source, std::vector<std::string> words, const FileShape& shape = {}) {
        const auto in = folder_ / "in.wav";
        const auto out = folder_ / "out.wav";
        writeAudio(in, source, shape);
        words.insert(words.begin(), {"render", in.string(), out.string()});
        const auto result = runCli(words);
        EXPECT_EQ(result.exitCode, 0);
        for (const auto& error : result.errors) { ADD_FAILURE() << error; }
        if (result.objects.size() != 1) { return {}; }
        json_ = result.objects[0];
        ReadWav wav = readWav(out);
        EXPECT_TRUE(wav.isFloat);
        EXPECT_EQ(json_.at("url"), in.string());
        EXPECT_EQ(json_.at("out"), out.string());
        EXPECT_EQ(json_.at("sampleRate"), wav.rate);
        EXPECT_EQ(json_.at("channels"), wav.planes.size());
        EXPECT_EQ(json_.at("frames"), wav.planes.at(0).size());
        EXPECT_EQ(json_.at("inChannels"), source.size());
        EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder_.path()), {}), 2);
        return wav;
    }

    TempFolder folder_;
    nlohmann::json json_;
};

TEST_F(CliRender, AnIdentityIsBitExactFromTheFirstFrameToTheLast) {
    struct Case {
        int channels;
        std::vector<std::string> words;
        uint32_t mask;
    };
    const Case cases[] = {
        {16, {"layout", "l916", "format", "9.1.6"}, 0},
        {16, {"layout", "l916", "format", "9.1.6", "block", "333"}, 0},
        {16, {"layout", "l916", "format", "9.1.6", "block", "4096"}, 0},
        {12, {"layout", "l714", "block", "1"}, 0},  // a WAVE file would want the rear speakers first
        {10, {"layout", "l514", "format", "5.1.4"}, 0x2D03F},
        {6, {"layout", "l51"}, 0x3F},
        {2, {}, 0x3},
        {2, {"headphones"}, 0x3},
        {64, {"layout", "l916", "channels", "16"}, 0},  // discrete: the first sixteen
    };
    for (const Case& c : cases) {
        const Planes source = noisePlanes(c.channels, 20'011, 70);
        const ReadWav out = render(source, c.words);
        EXPECT_EQ(out.planes, Planes(source.begin(), source.begin() + std::min(c.channels, 16))) << c.channels;
        EXPECT_EQ(out.mask, c.mask) << c.channels;
        EXPECT_EQ(json_.at("toBinaural"), false);
    }
}

TEST_F(CliRender, APartIsCutToTheFrame) {
    const Planes source = noisePlanes(2, 48'000, 80);
    const ReadWav out = render(source, {"from", "0.25", "to", "0.5"});
    ASSERT_EQ(out.planes.at(0).size(), 12'000U);
    for (size_t c = 0; c < 2; ++c) {
        EXPECT_TRUE(std::equal(out.planes[c].begin(), out.planes[c].end(), source[c].begin() + 12'000));
    }
}

// 5.1 to a pair with volume, trims and a swapped map, each entry worked out by hand.
TEST_F(CliRender, FoldsABedAsOneWouldByHand) {
    const Planes s = noisePlanes(6, 5000, 90);
    const ReadWav out = render(
        s, {"layout", "stereo", "outputs", "2,0", "trims", "0,-20", "gain", "-6", "listen", "mono", "block", "100"},
        {.kind = FileKind::wavex, .mask = 0x3F});
    ASSERT_EQ(out.planes.size(), 3U);
    const double gain = std::pow(10, -6.0 / 20);
    const double half = std::sqrt(0.5);
    for (size_t i = 0; i < 5000; ++i) {
        const double left = (s[0][i] + half * s[2][i] + 0.7071 * s[4][i]) * gain;
        const double right = (s[1][i] + half * s[2][i] + 0.7071 * s[5][i]) * gain * 0.1;
        ASSERT_NEAR(out.planes[2][i], left, 1e-6) << i;
        ASSERT_NEAR(out.planes[0][i], right, 1e-6) << i;
        ASSERT_EQ(out.planes[1][i], 0.0F);
    }
    EXPECT_EQ(out.mask, 0U);
}

TEST_F(CliRender, ConvertsTheRateInTime) {
    const ReadWav out = render({sine(48'000, 997, 48'000, 0.5), sine(48'000, 997, 48'000, 0.25)}, {"rate", "44100"});
    ASSERT_EQ(out.rate, 44'100);
    ASSERT_EQ(out.planes.at(0).size(), 44'100U);
    std::vector<float> expected = sine(44'100, 997, 44'100, 0.5);
    std::vector<float> middle(out.planes[0].begin() + 2000, out.planes[0].end() - 2000);
    EXPECT_LT(errorDb(middle, {expected.begin() + 2000, expected.end() - 2000}), -110);
}

// A frontal plane wave in FuMa, turned to the left, is loudest on the left of a ring of speakers.
TEST_F(CliRender, TurnsAnAmbisonicField) {
    const std::vector<float> x = noise(2000, 11);
    std::vector<float> w = x;
    for (float& v : w) { v *= float(std::sqrt(0.5)); }
    const std::vector<float> none(2000, 0.0F);
    const ReadWav out = render({w, x, none, none}, {"layout", "l71", "format", "fuma 1ST ORDER", "yaw", "90"});
    EXPECT_EQ(json_.at("format").at("norm"), "fuma");
    std::vector<double> energy;
    for (const auto& plane : out.planes) {
        energy.push_back(0);
        for (float v : plane) { energy.back() += double(v) * v; }
    }
    EXPECT_EQ(std::max_element(energy.begin(), energy.end()) - energy.begin(), 4) << "Lss is at the left";
    EXPECT_GT(energy[4], 20 * energy[5]);
    EXPECT_EQ(energy[3], 0) << "the LFE hears no field";
}

// 7.1.4 on headphones is the sum of twelve convolutions an ear, heard to the end of the responses.
TEST_F(CliRender, HeadphonesEqualPlainConvolution) {
    const Planes source = noisePlanes(12, 3000, 120);
    const auto hrtf = HRTFSet::shared(48'000);
    const SpeakerList& list = speakers(LayoutID::l714);
    std::vector<std::vector<double>> ears(2, std::vector<double>(3000 + size_t(hrtf->taps())));
    for (size_t s = 0; s < 12; ++s) {
        const auto [left, right] = hrtf->impulses(direction(list[s], list));
        const double gain = list[s] == SpeakerID::LFE ? 0.5 : 1;
        convolveInto(ears[0], source[s], left, gain);
        convolveInto(ears[1], source[s], right, gain);
    }
    const ReadWav out = render(source, {"headphones", "block", "100"});
    EXPECT_EQ(json_.at("toBinaural"), true);
    EXPECT_EQ(json_.at("rows"), 12);
    ASSERT_EQ(out.planes.size(), 2U);
    ASSERT_GE(out.planes[0].size(), ears[0].size() - 1) << "the tail is cut";
    for (size_t ear = 0; ear < 2; ++ear) {
        EXPECT_LT(errorDb(out.planes[ear], {ears[ear].begin(), ears[ear].end()}), -100);
    }
}

TEST_F(CliRender, AFailureLeavesTheOldOutputAsItWas) {
    const auto out = folder_ / "out.wav";
    const auto in = folder_ / "in.flac";
    writeBytes(out, "old");
    const auto expectRefused = [&](const char* what) {
        const auto result = runCli({"render", in.string(), out.string()});
        EXPECT_EQ(result.exitCode, 1) << what;
        EXPECT_EQ(result.errors.size(), 1U) << what;
        EXPECT_TRUE(result.objects.empty()) << what;
        EXPECT_EQ(readBytes(out), "old") << what;
        EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder_.path()), {}), 2) << what;
    };
    writeAudio(in, noisePlanes(65, 10));
    expectRefused("65 channels");
    writeAudio(in, noisePlanes(2, 100'000), {.kind = FileKind::flac});
    std::filesystem::resize_file(in, std::filesystem::file_size(in) / 2);
    expectRefused("the data breaks off half way");
}

}  // namespace
}  // namespace brindlehum
