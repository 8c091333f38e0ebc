// Overviews against a slow twin, and the loader's snapshots, ends and cancellation.
#include "audio/wave/waveform.h"

#include <gtest/gtest.h>

#include <cmath>
#include <deque>
#include <random>

#include "audio/stream/memory_source.h"
#include "base/error.h"
#include "support/audio_files.h"
#include "support/signals.h"
#include "support/stream_sources.h"

namespace brindlehum::test {
namespace {

void expectOverview(const Planes& whole, const WaveformData& data) {
    const auto length = std::max<int64_t>(int64_t(whole[0].size()), 1);
    const int64_t bucketFrames = length < 6000 ? 1 : length / 6000;
    ASSERT_EQ(data.channels, std::min<int>(int(whole.size()), 16));
    ASSERT_EQ(data.bucketFrames, bucketFrames);
    ASSERT_EQ(data.bucketCount, int(std::ceil(double(length) / double(bucketFrames))));
    ASSERT_TRUE(data.isComplete());
    for (size_t lane = 0; lane < size_t(data.channels); ++lane) {
        ASSERT_EQ(data.mins[lane].size(), size_t(data.bucketCount));
        ASSERT_EQ(data.maxs[lane].size(), size_t(data.bucketCount));
        for (size_t bucket = 0; bucket < data.mins[lane].size(); ++bucket) {
            double least = INFINITY;
            double greatest = -INFINITY;
            const size_t from = bucket * size_t(bucketFrames);
            for (size_t i = from; i < std::min(from + size_t(bucketFrames), whole[lane].size()); ++i) {
                if (!std::isfinite(whole[lane][i])) { continue; }
                least = std::min<double>(least, whole[lane][i]);
                greatest = std::max<double>(greatest, whole[lane][i]);
            }
            if (least > greatest) { least = greatest = 0; }
            ASSERT_EQ(data.mins[lane][bucket], least) << "lane " << lane << ", bucket " << bucket;
            ASSERT_EQ(data.maxs[lane][bucket], greatest) << "lane " << lane << ", bucket " << bucket;
        }
    }
}

TEST(Waveform, EqualsTheSlowTwinAtEveryLength) {
    const uint32_t seed = std::random_device()();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 engine(seed);
    std::vector<size_t> lengths = {0,     1,     2,     5999,   6000,   6001,   11999,        12000,
                                   12001, 65535, 65536, 131071, 131072, 131073, 6000 * 33 + 1};
    for (int i = 0; i < 8; ++i) { lengths.push_back(engine() % 300000); }
    for (const size_t frames : lengths) {
        for (const int channels : {1, 20}) {
            SCOPED_TRACE(std::to_string(frames) + " frames");
            Planes whole = noisePlanes(channels, frames, seed);
            // Samples that aren't finite numbers are passed over, alone and in runs longer than a bucket.
            for (size_t i = 0; i < frames; i += 61) {
                whole[0][i] = i % 3 == 0 ? NAN : i % 3 == 1 ? INFINITY : -INFINITY;
            }
            if (frames > 3000) { std::fill_n(whole[0].begin() + 700, 140, NAN); }
            MemorySource source(whole, 48000);
            expectOverview(whole, *WaveformLoader::overview(source));
        }
    }
}

TEST(WaveformDetail, EqualsTheSlowTwinAtAnyPlace) {
    const uint32_t seed = std::random_device()();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 engine(seed);
    const Planes whole = noisePlanes(3, 200000, seed);
    MemorySource source(whole, 48000);
    for (int round = 0; round < 60; ++round) {
        const int64_t bucketFrames = int64_t(1) << engine() % 12;
        const auto first = int64_t(engine() % 199999);
        const auto frames = 1 + int64_t(engine() % uint32_t(200000 - first));
        const auto data = waveformDetail(
            source, {first, frames, bucketFrames}, [](const WaveformPtr&) {}, [] { return false; }, [] { return 0.0; });
        ASSERT_EQ(data->firstFrame, first);
        ASSERT_EQ(data->bucketCount, int(std::ceil(double(frames) / double(bucketFrames))));
        for (int check = 0; check < 50; ++check) {
            const auto bucket = size_t(engine() % uint32_t(data->bucketCount));
            const auto from = whole[2].begin() + first + int64_t(bucket) * bucketFrames;
            const auto to = std::min(from + bucketFrames, whole[2].begin() + first + frames);
            const auto [least, greatest] = std::minmax_element(from, to);
            ASSERT_EQ(data->mins[2][bucket], *least) << bucket << " of " << bucketFrames;
            ASSERT_EQ(data->maxs[2][bucket], *greatest) << bucket << " of " << bucketFrames;
        }
    }
}

TEST(Waveform, SourceThatBreaksOffEndsInZerosAndEndlessOneIsRefused) {
    CountingSource::Log log;
    CountingSource source(1, 48000, 6000 * 32769, 3 * 32769, log);
    const WaveformPtr data = WaveformLoader::overview(source);
    EXPECT_TRUE(data->isComplete());
    EXPECT_EQ(data->maxs[0][1], float(2 * data->bucketFrames - 1));
    EXPECT_EQ(data->maxs[0].back(), 0.0F);
    CountingSource endless(1, 48000, int64_t(1) << 60, 0, log);
    EXPECT_THROW(WaveformLoader::overview(endless), Error);
}

// Jobs kept until the test runs them.
struct Queue {
    std::deque<std::function<void()>> jobs;
    Executor executor() {
        return [this](std::function<void()> job) { jobs.push_back(std::move(job)); };
    }
    void run() {
        for (; !jobs.empty(); jobs.pop_front()) { jobs.front()(); }
    }
};

// Noise that calls `onRead` before each read.
class WatchedSource : public FrameSource {
public:
    WatchedSource(Planes whole, std::function<void()> onRead) : inner_(std::move(whole), 48000), onRead_(onRead) {}
    ProcessingFormat processingFormat() const override { return inner_.processingFormat(); }
    int64_t length() const override { return inner_.length(); }
    int read(float* const* planes, int planeCount, int64_t position, int frames) override {
        onRead_();
        return inner_.read(planes, planeCount, position, frames);
    }

private:
    MemorySource inner_;
    std::function<void()> onRead_;
};

TEST(WaveformLoader, SnapshotsGrowAtTheirIntervalAndNeverChange) {
    const Planes whole = noisePlanes(2, 65536 * 9 + 100, 3);
    Queue background;
    double clock = 5;
    std::vector<WaveformPtr> seen;
    std::vector<WaveformData> copies;
    WaveformLoader::load([&] { return std::make_unique<WatchedSource>(whole, [&] { clock += 0.05; }); },
                         [&](WaveformPtr data) {
                             copies.push_back(*data);
                             seen.push_back(std::move(data));
                         },
                         background.executor(), [&](const std::function<void()>& job) { job(); },
                         [&] { return clock; });
    EXPECT_TRUE(seen.empty()) << "nothing runs on the caller's thread";
    background.run();
    // Ten blocks of 0.05 s: after the third, the sixth and the ninth, and at the end.
    ASSERT_EQ(seen.size(), 4U);
    const WaveformData& last = *seen.back();
    expectOverview(whole, last);
    int loaded = 0;
    for (size_t s = 0; s < seen.size(); ++s) {
        const WaveformData& data = *seen[s];
        EXPECT_GT(data.loadedBuckets, loaded);
        EXPECT_EQ(data.isComplete(), s == 3);
        loaded = data.loadedBuckets;
        for (size_t lane = 0; lane < 2; ++lane) {
            EXPECT_EQ(data.mins[lane], copies[s].mins[lane]) << "a snapshot changed under its holder";
            for (size_t b = 0; b < size_t(data.bucketCount); ++b) {
                ASSERT_EQ(data.mins[lane][b], int(b) < loaded ? last.mins[lane][b] : 0.0F);
                ASSERT_EQ(data.maxs[lane][b], int(b) < loaded ? last.maxs[lane][b] : 0.0F);
            }
        }
    }
}

TEST(WaveformLoader, NoUpdateFollowsACancel) {
    // Cancelled before it runs, in the middle of a read, and with updates on their way to the main thread.
    for (const int cancelAtRead : {0, 1, 4, 99}) {
        Queue background;
        Queue main;
        int reads = 0;
        int updates = 0;
        double clock = 0;
        std::shared_ptr<WaveformLoader> loader;
        loader = WaveformLoader::load(
            [&] {
                return std::make_unique<WatchedSource>(noisePlanes(1, 65536 * 8, 1), [&] {
                    clock += 1;
                    if (++reads == cancelAtRead) { loader->cancel(); }
                });
            },
            [&](const WaveformPtr&) { ++updates; }, background.executor(), main.executor(), [&] { return clock; });
        if (cancelAtRead == 0) { loader->cancel(); }
        background.run();
        EXPECT_EQ(reads, cancelAtRead == 99 ? 9 : cancelAtRead) << "the block in hand finishes, no other begins";
        EXPECT_EQ(main.jobs.empty(), cancelAtRead < 2);
        loader->cancel();
        main.run();
        EXPECT_EQ(updates, 0);
    }
}

}  // namespace
}  // namespace brindlehum::test
