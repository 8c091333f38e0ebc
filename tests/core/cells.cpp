// Atomic cells: an object is complete before its pointer is seen.
#include <gtest/gtest.h>

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
