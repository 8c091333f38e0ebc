// Atomic cells: an object is complete before its pointer is seen.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <thread>
#include <vector>

#include "core/mn_cells.h"

// The reader follows each pointer it meets; under the thread sanitizer a missing release or acquire is a data race.
TEST(Cells, PointerIsSeenAfterItsData) {
    struct Record {
        int number, complement;
    };
    constexpr int records = 20000;
    std::vector<Record> all(records);
    mn_slot* slot = mn_slot_create();
    std::thread writer([&] {
        for (int i = 0; i < records; ++i) {
            all[size_t(i)] = {i, ~i};
            mn_slot_store(slot, &all[size_t(i)]);
        }
    });
    int last = -1;
    int faults = 0;
    while (last < records - 1) {
        const auto* record = static_cast<const Record*>(mn_slot_load(slot));
        if (record == nullptr) { continue; }
        faults += record->complement != ~record->number || record->number < last;
        last = record->number;
    }
    writer.join();
    EXPECT_EQ(faults, 0);
    mn_slot_destroy(slot);
}

// The raiser counts up, so whatever is taken is above all that was taken before, and the end is never missed.
TEST(Cells, NoPeakIsLostBetweenTwoThreads) {
    constexpr int raises = 200000;
    mn_peaks* peaks = mn_peaks_create(1);
    std::thread raiser([&] {
        for (int i = 1; i <= raises; ++i) { mn_peaks_raise(peaks, 0, float(i)); }
    });
    float last = 0;
    int faults = 0;
    while (last < float(raises)) {
        const float taken = mn_peaks_take(peaks, 0);
        if (taken == 0) { continue; }
        faults += taken <= last;
        last = taken;
    }
    raiser.join();
    EXPECT_EQ(faults, 0);
    mn_peaks_raise(peaks, 0, std::numeric_limits<float>::quiet_NaN());
    mn_peaks_raise(peaks, 0, 9);
    EXPECT_TRUE(std::isnan(mn_peaks_take(peaks, 0))) << "nothing hides a sample that is no number";
    mn_peaks_destroy(peaks);
}
