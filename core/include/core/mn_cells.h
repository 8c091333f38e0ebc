// Atomic cells between control and render side: a pointer, a double, a signed 64-bit integer, and a row of peaks.
//
// Each is one separately allocated 8-byte word, stored with release and loaded with acquire: complete an object before
// storing its pointer. Create (null when there is no memory) and destroy belong to the control side; load and store are
// real-time safe on any thread. A slot doesn't own the object it points to.
#pragma once

#include <cstdint>

extern "C" {

struct mn_slot;
mn_slot* mn_slot_create() noexcept;
void mn_slot_destroy(mn_slot* slot) noexcept;
void mn_slot_store(mn_slot* slot, void* pointer) noexcept;
void* mn_slot_load(const mn_slot* slot) noexcept;

struct mn_f64;
mn_f64* mn_f64_create(double value) noexcept;
void mn_f64_destroy(mn_f64* cell) noexcept;
void mn_f64_store(mn_f64* cell, double value) noexcept;
double mn_f64_load(const mn_f64* cell) noexcept;

struct mn_i64;
mn_i64* mn_i64_create(int64_t value) noexcept;
void mn_i64_destroy(mn_i64* cell) noexcept;
void mn_i64_store(mn_i64* cell, int64_t value) noexcept;
int64_t mn_i64_load(const mn_i64* cell) noexcept;

// One cell a channel with the largest value raised since the last take. Values are 0 or above, or not a number, which
// counts as the largest of all. Raising is for one thread at a time, the render side, and never waits. Taking returns
// the peak, starts anew from 0, and is for any other thread. Channels outside the row are ignored, and their peak is 0.
struct mn_peaks;
mn_peaks* mn_peaks_create(int32_t channels) noexcept;
void mn_peaks_destroy(mn_peaks* peaks) noexcept;
void mn_peaks_raise(mn_peaks* peaks, int32_t channel, float value) noexcept;
float mn_peaks_take(mn_peaks* peaks, int32_t channel) noexcept;

}  // extern "C"
