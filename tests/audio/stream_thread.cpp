// StreamReader's thread: it fills ahead, stops when cancelled, and releases everything.
#include <gtest/gtest.h>

#include "audio/stream/stream_reader.h"
#include "support/stream_sources.h"

namespace brindlehum::test {
namespace {

std::shared_ptr<StreamReader> makeReader(CountingSource::Log& log, int64_t frames, bool loop, double outputRate) {
    return std::make_shared<StreamReader>(std::make_unique<CountingSource>(2, 48000, frames, frames, log), outputRate,
                                          0, far, loop, 0, frames);
}

TEST(StreamThread, LongStreamArrivesWholeWhileItPlays) {
    for (const double outputRate : {48000.0, 44100.0}) {
        CountingSource::Log log;
        constexpr int64_t frames = 400000;
        auto reader = makeReader(log, frames, false, outputRate);
        reader->start();
        Heard heard;
        ASSERT_TRUE(waitUntil([&] {
            const bool over = mn_ring_eof(reader->ring()) != 0;
            heard.take(reader->ring());
            return over;
        }));
        ASSERT_NEAR(double(heard.positions.size()), double(frames) * outputRate / 48000, 1.0);
        for (size_t i = 0; i < heard.positions.size(); ++i) {
            ASSERT_NEAR(heard.positions[i], double(i) * 48000 / outputRate, 1e-4);
        }
    }
}

TEST(StreamThread, CancelEndsAnEndlessStream) {
    for (const double outputRate : {48000.0, 96000.0}) {
        CountingSource::Log log;
        auto reader = makeReader(log, 5000, true, outputRate);
        reader->start();
        Heard heard;
        ASSERT_TRUE(waitUntil([&] {
            heard.take(reader->ring());
            return heard.positions.size() > 200000;
        }));
        reader->cancel();
        EXPECT_TRUE(reader->isCancelled());
        EXPECT_EQ(mn_ring_eof(reader->ring()), 0) << "cancelled isn't ended";
        const std::weak_ptr<StreamReader> watch = reader;
        reader.reset();
        EXPECT_TRUE(waitUntil([&] { return watch.expired() && log.gone; }));
    }
}

}  // namespace
}  // namespace brindlehum::test
