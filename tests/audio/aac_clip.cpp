// Clips for the generation service, read back by FFmpeg's programs and by us.
#include "audio/write/aac_clip.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>

#include "audio/decode/audio_file.h"
#include "audio/stream/sample_source.h"
#include "support/audio_files.h"

namespace brindlehum {
namespace {

using namespace test;

// Tones over a little noise, the same at any rate but for the noise; another set a channel.
Planes tones(int channels, double seconds, double rate) {
    const auto count = size_t(seconds * rate);
    Planes planes = noisePlanes(channels, count);
    for (int c = 0; c < channels; ++c) {
        for (size_t i = 0; i < count; ++i) {
            double x = planes[size_t(c)][i] * 0.05;
            for (const double hz : {131.0, 523.7, 1411.3, 2713.9}) {
                x += 0.15 * std::sin(2 * std::numbers::pi * (hz + 61 * c) * double(i) / rate);
            }
            planes[size_t(c)][i] = float(x);
        }
    }
    return planes;
}

double correlation(const std::vector<float>& a, const std::vector<float>& b, int64_t lag) {
    double ab = 0;
    double aa = 0;
    double bb = 0;
    for (int64_t i = 4096; i + 4096 < int64_t(std::min(a.size(), b.size())); ++i) {
        const double x = a[size_t(i)];
        const double y = b[size_t(i + lag)];
        ab += x * y, aa += x * x, bb += y * y;
    }
    return ab / std::sqrt(aa * bb);
}

struct AacClipTest : testing::Test {
    TempFolder folder;
    // As FFmpeg's program decodes it.
    ReadAudio decoded(const std::string& clip) {
        writeBytes(folder / "clip.m4a", clip);
        run("ffprobe -v error -show_entries stream=codec_name,profile -of csv " + (folder / "clip.m4a").string() +
            " | grep -qx 'stream,aac,LC'");
        run("ffmpeg -y -i " + (folder / "clip.m4a").string() + " -c:a pcm_f32le " + (folder / "clip.wav").string());
        return readAudio(folder / "clip.wav");
    }
};

TEST_F(AacClipTest, StartsWithItsFirstFrameAtEveryRate) {
    const std::vector<std::pair<int, int>> rates = {{8000, 8000},    {11025, 11025}, {22050, 22050}, {44100, 44100},
                                                    {47952, 48000},  {48000, 48000}, {88200, 88200}, {96000, 96000},
                                                    {176400, 48000}, {192000, 48000}};
    constexpr double seconds = 6;
    for (const auto& [rate, clipRate] : rates) {
        SCOPED_TRACE(rate);
        const Planes source = tones(2, seconds + 1, rate);
        MemorySamples samples(source, rate);
        const std::string clip = AacClip::encode(samples, rate / 2, rate / 2 + int64_t(seconds * rate));
        const auto [planes, readRate, format] = decoded(clip);
        const Planes expected = tones(2, seconds + 1, clipRate);
        ASSERT_EQ(planes.size(), 2U);
        EXPECT_EQ(readRate, clipRate);
        EXPECT_NEAR(double(planes[0].size()), seconds * clipRate, 1024);
        for (size_t c = 0; c < 2; ++c) {
            const std::vector<float> wanted(expected[c].begin() + clipRate / 2, expected[c].end());
            const double aligned = correlation(wanted, planes[c], 0);
            EXPECT_GT(aligned, 0.99);
            for (const int lag : {-1, 1}) { EXPECT_GT(aligned, correlation(wanted, planes[c], lag)); }
        }
        // AAC holds no more than 6144 bits a frame of 1024 samples, in each of the two channels.
        const double bits = double(clip.size()) * 8 / seconds;
        EXPECT_LT(bits, std::min(192000.0, 12.0 * clipRate) * 1.1);
        if (clipRate >= 16000) { EXPECT_GT(bits, 192000 * 0.9); }
        EXPECT_EQ(AudioFile::open(folder / "clip.m4a")->facts().frames, int64_t(seconds * clipRate)) << "as we read it";
    }
}

TEST_F(AacClipTest, TakesTheFirstTwoChannelsAndDoublesOne) {
    for (const int channels : {1, 2, 6}) {
        Planes source = tones(channels, 2, 48000);
        source[0][50000] = std::numeric_limits<float>::quiet_NaN();
        source[0][50001] = std::numeric_limits<float>::infinity();
        MemorySamples samples(source, 48000);
        const Planes planes = decoded(AacClip::encode(samples, 0, 96000)).planes;
        source[0][50000] = source[0][50001] = 0;
        EXPECT_GT(correlation(source[0], planes[0], 0), 0.99) << channels;
        EXPECT_GT(correlation(source[channels == 1 ? 0 : 1], planes[1], 0), 0.99) << channels;
    }
}

TEST_F(AacClipTest, TakesTheLast170SecondsAndEndsWhenAsked) {
    const auto last = AacClip::taken(1000, 200 * 48000, 48000);
    EXPECT_EQ(last.start, 30 * 48000);
    EXPECT_EQ(last.end, 200 * 48000);
    EXPECT_EQ(AacClip::taken(1000, 2000, 48000).start, 1000);
    const Planes source = tones(1, 2, 48000);
    MemorySamples samples(source, 48000);
    int asked = 0;
    EXPECT_EQ(AacClip::encode(samples, 0, 96000, [&] { return ++asked == 2; }), "");
    EXPECT_EQ(asked, 2);
    EXPECT_ANY_THROW(AacClip::encode(samples, 500, 500));
}

}  // namespace
}  // namespace brindlehum
