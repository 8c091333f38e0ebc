// Single-producer single-consumer ring of planar float audio with a source position for every frame.
//
// One writer thread and one reader thread, no lock. Only the writer changes the write counter, and only the reader the
// read counter. Each publishes its counter with release and reads the other's with acquire, so a frame is never read
// before its samples are there nor overwritten while it is copied. Create and destroy belong to the control side;
// everything else is real-time safe.
#pragma once

#include <cstdint>

extern "C" {

struct mn_ring;

// `channels` planes of exactly `capacity` frames, zero-filled; the capacity is not rounded. Null when there is no
// memory. Control side.
mn_ring* mn_ring_create(int32_t channels, int32_t capacity) noexcept;
// Null is accepted. Control side, after both threads have stopped using the ring.
void mn_ring_destroy(mn_ring* ring) noexcept;

// Any thread.
int32_t mn_ring_channels(const mn_ring* ring) noexcept;
// Frames that can be written now. Writer.
int32_t mn_ring_write_space(const mn_ring* ring) noexcept;
// Frames that can be read now. Reader.
int32_t mn_ring_available(const mn_ring* ring) noexcept;

// Copies up to `frames` frames from `planes` (one pointer per channel) with one source position per frame; returns the
// count written, which is less when the ring is full. Writer.
int32_t mn_ring_write(mn_ring* ring, const float* const* planes, const double* positions, int32_t frames) noexcept;
// Copies up to `frames` frames into `planes`; returns the count read. Stores the position of the last frame read
// through `last_position` (may be null); leaves it unchanged when nothing was read. Reader.
int32_t mn_ring_read(mn_ring* ring, float* const* planes, int32_t frames, double* last_position) noexcept;

// Marks the end: no frame follows. Can't be undone. Writer.
void mn_ring_set_eof(mn_ring* ring) noexcept;
// 1 after mn_ring_set_eof, else 0; a thread that sees 1 also sees every frame written before. Any thread.
int32_t mn_ring_eof(const mn_ring* ring) noexcept;

}  // extern "C"
