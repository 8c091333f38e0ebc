// A source whose every sample states its channel and frame, and a ring emptied into arrays.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <functional>
#include <thread>
#include <utility>
#include <vector>

#include "audio/stream/frame_source.h"
#include "core/mn_ring.h"

namespace brindlehum::test {

inline constexpr int64_t far = int64_t(1) << 60;  // frames: past the end of any source

// Sample of channel c at frame n: n for even channels, -n for odd ones; exact below 2^24. May promise more frames
// than it has.
class CountingSource : public FrameSource {
public:
    struct Log {
        std::atomic<int64_t> reads = 0;
        std::atomic<bool> gone = false;
        std::vector<std::pair<int64_t, int>>
            asked;  // position and frames; for the reading thread, or once it has ended
    };
    CountingSource(int channels, double rate, int64_t promised, int64_t actual, Log& log)
        : format_{rate, channels, {}}, promised_(promised), actual_(actual), log_(log) {
        log_.asked.reserve(4096);
    }
    ~CountingSource() override { log_.gone = true; }
    ProcessingFormat processingFormat() const override { return format_; }
    int64_t length() const override { return promised_; }
    int read(float* const* planes, int planeCount, int64_t position, int frames) override {
        ++log_.reads;
        if (log_.asked.size() < 4096) { log_.asked.emplace_back(position, frames); }
        const auto got = std::clamp<int64_t>(actual_ - position, 0, frames);
        for (int c = 0; c < planeCount; ++c) {
            for (int64_t i = 0; i < got; ++i) { planes[c][i] = float(c % 2 == 0 ? position + i : -(position + i)); }
        }
        return int(got);
    }

private:
    ProcessingFormat format_;
    int64_t promised_;
    int64_t actual_;
    Log& log_;
};

struct Heard {
    std::vector<std::vector<float>> channels;
    std::vector<double> positions;

    // Takes the frames that the ring holds now, not those that a fast writer adds meanwhile; one by one, for every
    // position.
    void take(mn_ring* ring) {
        channels.resize(size_t(mn_ring_channels(ring)));
        std::vector<float> frame(channels.size());
        std::vector<float*> planes;
        for (float& sample : frame) { planes.push_back(&sample); }
        double position = -1;
        for (int32_t left = mn_ring_available(ring); left > 0; --left) {
            ASSERT_EQ(mn_ring_read(ring, planes.data(), 1, &position), 1);
            for (size_t c = 0; c < channels.size(); ++c) { channels[c].push_back(frame[c]); }
            positions.push_back(position);
        }
    }
};

// Yields until `done`; false when that takes half a minute.
inline bool waitUntil(const std::function<bool()>& done) {
    const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (!done()) {
        if (std::chrono::steady_clock::now() > limit) { return false; }
        std::this_thread::yield();
    }
    return true;
}

}  // namespace brindlehum::test
