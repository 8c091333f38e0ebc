// The ring: odd capacities against a plain queue, and two threads at once.
#include <gtest/gtest.h>

#include <algorithm>
#include <deque>
#include <memory>
#include <random>
#include <thread>
#include <vector>

#include "core/mn_ring.h"

namespace {

using Ring = std::unique_ptr<mn_ring, decltype(&mn_ring_destroy)>;

Ring makeRing(int channels, int capacity) {
    return {mn_ring_create(channels, capacity), mn_ring_destroy};
}

// Sample of a frame in a channel: an integer that a float holds exactly.
float payload(int64_t frame, int channel) {
    return float((frame * 7 + channel * 1009) % 16777213);
}

struct Block {
    Block(int channels, int frames) : samples(size_t(channels), std::vector<float>(size_t(frames), -1)) {
        for (auto& plane : samples) { planes.push_back(plane.data()); }
        positions.resize(size_t(frames));
    }
    void fill(int64_t start, int frames) {
        for (size_t c = 0; c < planes.size(); ++c) {
            for (int i = 0; i < frames; ++i) { samples[c][size_t(i)] = payload(start + i, int(c)); }
        }
        for (int i = 0; i < frames; ++i) { positions[size_t(i)] = 0.5 * double(start + i); }
    }
    int faults(int64_t start, int frames) const {
        int count = 0;
        for (size_t c = 0; c < planes.size(); ++c) {
            for (int i = 0; i < frames; ++i) { count += samples[c][size_t(i)] != payload(start + i, int(c)); }
        }
        return count;
    }
    std::vector<std::vector<float>> samples;
    std::vector<float*> planes;
    std::vector<double> positions;
};

int32_t write(mn_ring* ring, const Block& block, int frames) {
    return mn_ring_write(ring, block.planes.data(), block.positions.data(), frames);
}

}  // namespace

// Random block sizes, negative ones too, against a queue of frame numbers, at capacities that aren't powers of two.
TEST(Ring, BehavesAsAQueue) {
    for (const int capacity : {1, 3, 7, 64, 66150}) {
        SCOPED_TRACE(capacity);
        const Ring ring = makeRing(3, capacity);
        std::mt19937 random(uint32_t(capacity) + 1);
        std::uniform_int_distribution<int> size(-2, capacity + 2);
        Block block(3, capacity + 2);
        std::deque<int64_t> queue;
        int64_t next = 0;
        for (int step = 0; step < (capacity > 1000 ? 40 : 2000); ++step) {
            const int in = size(random);
            block.fill(next, in);
            const int written = write(ring.get(), block, in);
            ASSERT_EQ(written, std::clamp(in, 0, capacity - int(queue.size())));
            for (int i = 0; i < written; ++i) { queue.push_back(next++); }
            const int out = size(random);
            double position = -1;
            const int read = mn_ring_read(ring.get(), block.planes.data(), out, &position);
            ASSERT_EQ(read, std::clamp(out, 0, int(queue.size())));
            if (read > 0) { ASSERT_EQ(block.faults(queue.front(), read), 0); }
            ASSERT_EQ(position, read > 0 ? 0.5 * double(queue[size_t(read) - 1]) : -1) << "read " << read;
            queue.erase(queue.begin(), queue.begin() + read);
            ASSERT_EQ(mn_ring_available(ring.get()), int(queue.size()));
            ASSERT_EQ(mn_ring_write_space(ring.get()), capacity - int(queue.size()));
        }
    }
}

// One thread writes frames that show whether they are whole, another reads them; the end comes with the last frame.
TEST(Ring, TwoThreadsSeeEveryFrameOnceAndWhole) {
    constexpr int64_t total = 300000;
    constexpr int channels = 2;
    const Ring ring = makeRing(channels, 331);
    std::thread writer([&] {
        std::mt19937 random(11);
        Block block(channels, 97);
        for (int64_t next = 0; next < total;) {
            const int n = int(std::min<int64_t>(total - next, 1 + int64_t(random() % 97)));
            block.fill(next, n);
            const int written = write(ring.get(), block, n);
            if (written == 0) { std::this_thread::yield(); }
            next += written;
        }
        mn_ring_set_eof(ring.get());
    });
    std::mt19937 random(12);
    Block block(channels, 113);
    int64_t seen = 0;
    int faults = 0;
    for (;;) {
        const bool ended = mn_ring_eof(ring.get()) != 0;
        double position = 0;
        const int read = mn_ring_read(ring.get(), block.planes.data(), 1 + int(random() % 113), &position);
        if (read > 0) {
            faults += block.faults(seen, read) + (position != 0.5 * double(seen + read - 1));
            seen += read;
        } else if (ended) {
            break;
        } else {
            std::this_thread::yield();
        }
    }
    writer.join();
    EXPECT_EQ(seen, total);
    EXPECT_EQ(faults, 0);
}
