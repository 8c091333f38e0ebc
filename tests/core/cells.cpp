// Atomic cells: start values, and publication of what a pointer leads to.
#include <gtest/gtest.h>

#include <limits>
#include <thread>
#include <vector>

#include "core/mn_cells.h"

TEST(Cells, HoldTheirStartValueAndEveryStore) {
    mn_slot* slot = mn_slot_create();
    mn_f64* real = mn_f64_create(-0.25);
    mn_i64* integer = mn_i64_create(std::numeric_limits<int64_t>::min());
    EXPECT_EQ(mn_slot_load(slot), nullptr);
    EXPECT_EQ(mn_f64_load(real), -0.25);
    EXPECT_EQ(mn_i64_load(integer), std::numeric_limits<int64_t>::min());
    mn_slot_store(slot, &slot);
    mn_f64_store(real, 1e300);
    mn_i64_store(integer, -1);
    EXPECT_EQ(mn_slot_load(slot), &slot);
    EXPECT_EQ(mn_f64_load(real), 1e300);
    EXPECT_EQ(mn_i64_load(integer), -1);
    mn_slot_destroy(slot);
    mn_f64_destroy(real);
    mn_i64_destroy(integer);
}

// The reader follows each pointer it meets; under the thread sanitizer a missing release or acquire is a data race.
TEST(Cells, APointerLeadsToFinishedData) {
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
        if (record == nullptr) continue;
        faults += record->complement != ~record->number || record->number < last;
        last = record->number;
    }
    writer.join();
    EXPECT_EQ(faults, 0);
    mn_slot_destroy(slot);
}
