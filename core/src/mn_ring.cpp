// The planar ring: frames are copied in at most two stretches, then published by one store.
#include "core/mn_ring.h"

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <cstring>
#include <new>

struct mn_ring {
    int32_t channels;
    int32_t capacity;   // frames, exactly as requested
    float** planes;     // `channels` arrays of `capacity` samples
    double* positions;  // source position of each ring frame
    // Counts of all frames ever written and read, each on a cache line of its own, since two threads write them.
    alignas(64) std::atomic<int64_t> write_pos;  // writer
    alignas(64) std::atomic<int64_t> read_pos;   // reader
    alignas(64) std::atomic<int32_t> eof;        // writer
};

namespace {

// A run of frames in the ring: `first` frames from `index`, then `rest` from the start.
struct Stretch {
    int32_t index, first, rest;
};

Stretch stretchAt(int64_t counter, int32_t frames, int32_t capacity) {
    const auto index = int32_t(counter % capacity);
    const int32_t first = std::min(capacity - index, frames);
    return {index, first, frames - first};
}

template <class T>
void copyIn(T* ring, const Stretch& s, const T* from) {
    std::memcpy(ring + s.index, from, sizeof(T) * size_t(s.first));
    if (s.rest > 0) { std::memcpy(ring, from + s.first, sizeof(T) * size_t(s.rest)); }
}

template <class T>
void copyOut(const T* ring, const Stretch& s, T* to) {
    std::memcpy(to, ring + s.index, sizeof(T) * size_t(s.first));
    if (s.rest > 0) { std::memcpy(to + s.first, ring, sizeof(T) * size_t(s.rest)); }
}

// Frame counts differ by less than 2^31, so their 32-bit difference is exact.
int32_t difference(int64_t a, int64_t b) {
    return int32_t(a - b);
}

template <class T>
T* zeroed(int32_t count) {
    return static_cast<T*>(std::calloc(size_t(std::max(count, 1)), sizeof(T)));
}

}  // namespace

extern "C" {

mn_ring* mn_ring_create(int32_t channels, int32_t capacity) noexcept {
    if (channels < 0 || capacity < 0) { return nullptr; }
    auto* ring = new (std::nothrow) mn_ring{};
    if (ring == nullptr) { return nullptr; }
    ring->channels = channels;
    ring->capacity = capacity;
    ring->positions = zeroed<double>(capacity);
    ring->planes = zeroed<float*>(channels);
    bool complete = ring->positions != nullptr && ring->planes != nullptr;
    for (int32_t c = 0; complete && c < channels; ++c) {
        ring->planes[c] = zeroed<float>(capacity);
        complete = ring->planes[c] != nullptr;
    }
    if (complete) { return ring; }
    mn_ring_destroy(ring);
    return nullptr;
}

void mn_ring_destroy(mn_ring* ring) noexcept {
    if (ring == nullptr) { return; }
    for (int32_t c = 0; ring->planes != nullptr && c < ring->channels; ++c) { std::free(ring->planes[c]); }
    std::free(ring->planes);
    std::free(ring->positions);
    delete ring;
}

int32_t mn_ring_channels(const mn_ring* ring) noexcept {
    return ring->channels;
}

int32_t mn_ring_write_space(const mn_ring* ring) noexcept {
    const int64_t read = ring->read_pos.load(std::memory_order_acquire);
    return ring->capacity + difference(read, ring->write_pos.load(std::memory_order_relaxed));
}

int32_t mn_ring_available(const mn_ring* ring) noexcept {
    const int64_t write = ring->write_pos.load(std::memory_order_acquire);
    return difference(write, ring->read_pos.load(std::memory_order_relaxed));
}

int32_t mn_ring_write(mn_ring* ring, const float* const* planes, const double* positions, int32_t frames) noexcept {
    const int32_t n = std::min(frames, mn_ring_write_space(ring));
    if (n < 1) { return 0; }
    const int64_t write = ring->write_pos.load(std::memory_order_relaxed);
    const Stretch stretch = stretchAt(write, n, ring->capacity);
    for (int32_t c = 0; c < ring->channels; ++c) { copyIn(ring->planes[c], stretch, planes[c]); }
    copyIn(ring->positions, stretch, positions);
    ring->write_pos.store(write + n, std::memory_order_release);
    return n;
}

int32_t mn_ring_read(mn_ring* ring, float* const* planes, int32_t frames, double* last_position) noexcept {
    const int32_t n = std::min(frames, mn_ring_available(ring));
    if (n < 1) { return 0; }
    const int64_t read = ring->read_pos.load(std::memory_order_relaxed);
    const Stretch stretch = stretchAt(read, n, ring->capacity);
    for (int32_t c = 0; c < ring->channels; ++c) { copyOut(ring->planes[c], stretch, planes[c]); }
    if (last_position != nullptr) { *last_position = ring->positions[(read + n - 1) % ring->capacity]; }
    ring->read_pos.store(read + n, std::memory_order_release);
    return n;
}

void mn_ring_set_eof(mn_ring* ring) noexcept {
    ring->eof.store(1, std::memory_order_release);
}
int32_t mn_ring_eof(const mn_ring* ring) noexcept {
    return ring->eof.load(std::memory_order_acquire);
}

}  // extern "C"
