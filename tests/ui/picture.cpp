// The lanes of a waveform as numbers and as pixels, and the marks of the time ruler.
#include <gtest/gtest.h>

#include <QImage>
#include <cmath>
#include <optional>
#include <random>

#include "ui/picture/ruler_ticks.h"
#include "ui/picture/waveform_picture.h"

namespace brindlehum {
namespace {

using namespace WaveformPicture;

WaveformData overview(int channels, int buckets, float low, float high) {
    WaveformData data{channels, 10, buckets, buckets, {}, {}};
    data.mins.assign(size_t(channels), std::vector<float>(size_t(buckets), low));
    data.maxs.assign(size_t(channels), std::vector<float>(size_t(buckets), high));
    return data;
}

TEST(WaveformPicture, AQuietFileIsDrawnLargerByAtMostThirtyDecibels) {
    EXPECT_DOUBLE_EQ(viewGain(0), 1) << "silence";
    EXPECT_DOUBLE_EQ(viewGain(1e-6F), 1);
    EXPECT_NEAR(viewGain(0.5F), 1.9, 1e-6);
    EXPECT_NEAR(viewGain(1.9F), 0.5, 1e-6) << "a file beyond full scale is drawn smaller";
    EXPECT_DOUBLE_EQ(viewGain(0.001F), 31.6);
    EXPECT_EQ(gainText(1.12), "");
    EXPECT_EQ(gainText(1.9), "view +6 dB");
    EXPECT_EQ(gainText(31.6), "view +30 dB");
}

TEST(WaveformPicture, ColumnsCoverEveryBucketInOrder) {
    const unsigned seed = 20260117;
    std::mt19937 random(seed);
    for (int round = 0; round < 200; ++round) {
        const int columns = std::uniform_int_distribution(1, 900)(random);
        auto data = overview(1, std::uniform_int_distribution(1, 2000)(random), 0, 0);
        // The last bucket may be short.
        const int64_t total = data.bucketCount * data.bucketFrames - std::uniform_int_distribution(0, 9)(random);
        const VisibleRange all = VisibleRange::all(total);
        int next = 0;
        for (int column = 0; column < columns; ++column) {
            const auto [first, last] =
                bucketsUnder(all.frameAt(double(column) / columns), all.frameAt(double(column + 1) / columns), data);
            ASSERT_LE(first, next) << "a gap, seed " << seed << ", round " << round;
            ASSERT_GT(last, first);
            next = last;
        }
        ASSERT_EQ(next, data.bucketCount) << "seed " << seed << ", round " << round;
    }
}

// The first and the last inked row of a column.
std::pair<int, int> ink(const QImage& image, int x, int top, int bottom) {
    int first = -1;
    int last = -1;
    for (int y = top; y < bottom; ++y) {
        if (qAlpha(image.pixel(x, y)) == 0) { continue; }
        if (first < 0) { first = y; }
        last = y;
    }
    return {first, last};
}

QImage painted(const WaveformData& data, QSize size, double dpr, const WaveformData* detail = nullptr,
               std::optional<VisibleRange> visible = {}) {
    QImage image(size * dpr, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(dpr);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    WaveformColors colors = Theme::darkTheme().waveform;
    const auto all = VisibleRange::all(data.bucketCount * data.bucketFrames);
    paintLanes(painter, QSizeF(size), dpr, {&data, detail, visible.value_or(all), {}}, colors);
    return image;
}

TEST(WaveformPicture, LanesFillTheirShareOfTheHeight) {
    for (const double dpr : {1.0, 2.0}) {
        auto data = overview(2, 50, -1, 1);
        data.mins[1].assign(50, -0.5F);
        data.maxs[1].assign(50, 0);
        const QImage image = painted(data, {50, 200}, dpr);
        const int half = int(100 * dpr);
        const auto [loudTop, loudBottom] = ink(image, 10, 0, half);
        // Full scale is drawn at 0.95 of 0.46 of the lane on either side of its middle.
        EXPECT_NEAR(loudTop, half * (0.5 - 0.95 * 0.46), 1.01) << dpr;
        EXPECT_NEAR(loudBottom, half * (0.5 + 0.95 * 0.46), 1.01) << dpr;
        const auto [softTop, softBottom] = ink(image, 10, half + 1, 2 * half);
        EXPECT_NEAR(softTop, half * 1.5, 1.01) << dpr;
        EXPECT_NEAR(softBottom, half * (1.5 + 0.475 * 0.46), 1.01) << dpr;
    }
}

// An overview of 0.5 on both sides, and a detail of 0 with one full-scale sample.
TEST(WaveformPicture, DetailReplacesTheOverviewWhereItIsThere) {
    auto data = overview(1, 100, -0.5F, 0.5F);
    data.maxs[0][0] = 1;  // sets the gain
    auto detail = overview(1, 40, 0, 0);
    detail.bucketFrames = 1;
    detail.firstFrame = 500;
    detail.mins[0][10] = detail.maxs[0][10] = 1;
    const QImage image = painted(data, {80, 200}, 1, &detail, VisibleRange{1000, 480, 80, true});
    const auto tallest = [&](int x) { return ink(image, x, 0, 200); };
    EXPECT_LT(tallest(10).first, 60) << "left of the detail the overview stays";
    EXPECT_EQ(tallest(25), (std::pair{100, 100})) << "silence within the detail";
    EXPECT_LT(tallest(30).first, 20) << "frame 510";
    EXPECT_LT(tallest(70).first, 60) << "right of the detail";
    // Eight pixels a frame: a line through the samples, each in the middle of its frame's pixels.
    const QImage close = painted(data, {256, 200}, 1, &detail, VisibleRange{1000, 500, 32, true});
    EXPECT_LT(ink(close, 84, 0, 200).first, 20) << "frame 510 stands at 10.5 frames";
    EXPECT_GT(ink(close, 84 - 12, 0, 200).first, 80);
    EXPECT_GT(ink(close, 84 + 12, 0, 200).first, 80);
}

TEST(WaveformPicture, LanesBelongToGroupsOfSpeakers) {
    using enum LaneGroup;
    for (const char* label : {"L", "C", "Rw", "Lc"}) { EXPECT_EQ(laneGroup(label), front) << label; }
    for (const char* label : {"Ls", "Rss", "Lrs", "Cs"}) { EXPECT_EQ(laneGroup(label), surround) << label; }
    for (const char* label : {"Ltf", "Rtm", "Ltr", "Tc"}) { EXPECT_EQ(laneGroup(label), height) << label; }
    for (const char* label : {"", "12", "W", "Y"}) { EXPECT_EQ(laneGroup(label), other) << label; }
    EXPECT_EQ(laneGroup("LFE"), lfe);
}

TEST(RulerTicks, LabelsStandApartAndCoverTheFile) {
    for (const double seconds : {0.0005, 0.004, 0.3, 1.0, 7.5, 59.9, 61.0, 600.0, 3601.0, 360000.0}) {
        for (const double width : {120.0, 700.0, 3000.0}) {
            const double step = RulerTicks::step(seconds, width, 84);
            EXPECT_GE(step / seconds * width, 84) << seconds << " s on " << width;
            const auto ticks = RulerTicks::ticks(0, seconds, width, 84);
            ASSERT_FALSE(ticks.empty());
            EXPECT_TRUE(ticks.front().major);
            EXPECT_LE(ticks.back().seconds, seconds);
            for (const auto& tick : ticks) {
                if (tick.major) { EXPECT_NEAR(std::remainder(tick.seconds, step), 0, step * 1e-6); }
            }
        }
    }
    EXPECT_TRUE(RulerTicks::ticks(0, 0, 100, 84).empty());
    // A part of the sound has the ticks of the whole that lie in it.
    const auto part = RulerTicks::ticks(61.25, 0.0005, 900, 84);
    ASSERT_FALSE(part.empty());
    EXPECT_NEAR(part.front().seconds, 61.25, 1e-6);
    EXPECT_LE(part.back().seconds, 61.2505 + 1e-9);
    EXPECT_EQ(RulerTicks::step(0.0005, 900, 84), 0.00005);
}

TEST(RulerTicks, LabelsShowWhatTheStepNeeds) {
    for (const auto& [seconds, step, text] : {std::tuple{75.0, 15.0, "1:15"},
                                              {59.999999, 0.5, "1:00.0"},
                                              {1.002, 0.002, "0:01.002"},
                                              {1.5, 0.1, "0:01.5"},
                                              {1.00025, 0.00005, "0:01.00025"},
                                              {3725.0, 60.0, "1:02:05"}}) {
        EXPECT_EQ(RulerTicks::label(seconds, step), text);
    }
}

}  // namespace
}  // namespace brindlehum
