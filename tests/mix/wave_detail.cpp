// The detail of a zoomed waveform: what is read for which view, and which reads are stopped.
#include "mix/player/wave_detail.h"

#include <gtest/gtest.h>

#include "support/platform/manual_main_loop.h"
#include "support/stream_sources.h"

namespace brindlehum::test {
namespace {

TEST(DetailSpan, IsFineEnoughForTheColumnsAndReachesBeyondThem) {
    constexpr int64_t hour = 172800000;
    struct Case {
        const char* what;
        VisibleRange range;
        int columns;
        std::optional<WaveformSpan> span;
    };
    const std::vector<Case> cases = {
        {"the overview serves the whole", VisibleRange::all(hour), 1000, {}},
        {"and a little more than it has columns", {hour, 0, 28800.0 * 1000, true}, 1000, {}},
        {"buckets are a power of two", {hour, 1e6, 1e6, true}, 1000, WaveformSpan{499712, 2000288, 512}},
        {"single samples", {hour, 1000, 100, true}, 1000, WaveformSpan{950, 200, 1}},
        {"not before the start", {hour, 10, 100, true}, 1000, WaveformSpan{0, 160, 1}},
        {"not beyond the end", {2000, 1900, 100, true}, 1000, WaveformSpan{1850, 150, 1}},
        {"a wide view has a narrow margin", {hour, 50e6, 20e6, true}, 1000, WaveformSpan{49463296, 21060992, 16384}},
        {"nothing to show", VisibleRange::all(0), 1000, {}},
    };
    for (const auto& item : cases) {
        SCOPED_TRACE(item.what);
        const auto made = detailSpan(item.range, item.columns, 28800);
        ASSERT_EQ(made.has_value(), item.span.has_value());
        if (!made) { continue; }
        EXPECT_EQ(made->bucketFrames, item.span->bucketFrames);
        EXPECT_EQ(made->first, item.span->first);
        EXPECT_NEAR(double(made->frames), double(item.span->frames), double(made->bucketFrames));
    }
}

struct WaveDetailTest : testing::Test {
    ManualMainLoop loop;
    CountingSource::Log log;
    WaveDetail detail{loop};
    int openings = 0;

    WaveDetail::Open source(int64_t frames) {
        return [this, frames](const std::function<bool()>&) {
            ++openings;
            return std::make_unique<CountingSource>(2, 48000, frames, frames, log);
        };
    }
    void show(double first, double length) { detail.want({1 << 20, first, length, true}, 100, 4096); }
    void arrive() {
        detail.reads().drain();
        loop.drain();
    }
};

TEST_F(WaveDetailTest, ReadsWhatIsInViewOnceAndForgetsItWithTheSound) {
    detail.setSource(source(1 << 20));
    show(1000, 64);
    EXPECT_FALSE(detail.data()) << "nothing is read on the main thread";
    arrive();
    ASSERT_TRUE(detail.data());
    EXPECT_EQ(detail.data()->bucketFrames, 1);
    EXPECT_EQ(detail.data()->firstFrame, 968);
    EXPECT_EQ(detail.data()->maxs[0][32], 1000) << "the sample of frame 1000";
    EXPECT_EQ(detail.data()->mins[1][33], -1001);
    show(1010, 64);
    arrive();
    EXPECT_EQ(openings, 1) << "a scroll within what was read reads nothing";
    show(5000, 64);
    show(9000, 64);
    EXPECT_TRUE(detail.data()) << "the old detail stays until the new one is there";
    arrive();
    EXPECT_EQ(detail.data()->firstFrame, 8968) << "the newer view wins";
    detail.setSource(source(2000));
    EXPECT_FALSE(detail.data());
    show(5000, 64);
    detail.setSource(source(1 << 20));
    arrive();
    EXPECT_FALSE(detail.data()) << "a read of the former sound is dropped";
}

}  // namespace
}  // namespace brindlehum::test
