// The atomic cells: one lock-free word each.
#include "core/mn_cells.h"

#include <atomic>
#include <bit>
#include <cstddef>
#include <new>

struct mn_slot {
    std::atomic<void*> value;
};
struct mn_f64 {
    std::atomic<double> value;
};
struct mn_i64 {
    std::atomic<int64_t> value;
};

// The bits of non-negative floats, and of NaN above them, are ordered as their values are.
struct mn_peaks {
    int32_t channels;
    std::atomic<uint32_t>* bits;
    bool has(int32_t channel) const { return channel >= 0 && channel < channels; }
};

static_assert(std::atomic<uint32_t>::is_always_lock_free);
static_assert(sizeof(mn_slot) == 8 && std::atomic<void*>::is_always_lock_free);
static_assert(sizeof(mn_f64) == 8 && std::atomic<double>::is_always_lock_free);
static_assert(sizeof(mn_i64) == 8 && std::atomic<int64_t>::is_always_lock_free);

extern "C" {

mn_slot* mn_slot_create() noexcept {
    return new (std::nothrow) mn_slot{nullptr};
}
void mn_slot_destroy(mn_slot* slot) noexcept {
    delete slot;
}
void mn_slot_store(mn_slot* slot, void* pointer) noexcept {
    slot->value.store(pointer, std::memory_order_release);
}
void* mn_slot_load(const mn_slot* slot) noexcept {
    return slot->value.load(std::memory_order_acquire);
}

mn_f64* mn_f64_create(double value) noexcept {
    return new (std::nothrow) mn_f64{value};
}
void mn_f64_destroy(mn_f64* cell) noexcept {
    delete cell;
}
void mn_f64_store(mn_f64* cell, double value) noexcept {
    cell->value.store(value, std::memory_order_release);
}
double mn_f64_load(const mn_f64* cell) noexcept {
    return cell->value.load(std::memory_order_acquire);
}

mn_i64* mn_i64_create(int64_t value) noexcept {
    return new (std::nothrow) mn_i64{value};
}
void mn_i64_destroy(mn_i64* cell) noexcept {
    delete cell;
}
void mn_i64_store(mn_i64* cell, int64_t value) noexcept {
    cell->value.store(value, std::memory_order_release);
}
int64_t mn_i64_load(const mn_i64* cell) noexcept {
    return cell->value.load(std::memory_order_acquire);
}

mn_peaks* mn_peaks_create(int32_t channels) noexcept {
    auto* bits = new (std::nothrow) std::atomic<uint32_t>[size_t(channels)]();
    auto* peaks = bits == nullptr ? nullptr : new (std::nothrow) mn_peaks{channels, bits};
    if (peaks == nullptr) { delete[] bits; }
    return peaks;
}
void mn_peaks_destroy(mn_peaks* peaks) noexcept {
    if (peaks != nullptr) { delete[] peaks->bits; }
    delete peaks;
}
void mn_peaks_raise(mn_peaks* peaks, int32_t channel, float value) noexcept {
    if (!peaks->has(channel)) { return; }
    auto& cell = peaks->bits[channel];
    const auto bits = std::bit_cast<uint32_t>(value) & 0x7fffffffU;
    // A take in between gets the old peak, and the new one goes to the next take: none is lost.
    if (bits > cell.load(std::memory_order_relaxed)) { cell.store(bits, std::memory_order_release); }
}
float mn_peaks_take(mn_peaks* peaks, int32_t channel) noexcept {
    if (!peaks->has(channel)) { return 0; }
    return std::bit_cast<float>(peaks->bits[channel].exchange(0, std::memory_order_acquire));
}

}  // extern "C"
