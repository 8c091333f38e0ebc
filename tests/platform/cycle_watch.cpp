// What counts as a cycle that we missed.
#include "linux/pipewire/cycle_watch.h"

#include <gtest/gtest.h>

#include <vector>

namespace brindlehum {
namespace {

TEST(CycleWatch, CountsCyclesThatWereSkippedOrEndedLate) {
    struct Call {
        Cycle cycle;
        uint64_t ended;
    };
    struct Case {
        const char* what;
        std::vector<Call> calls;
        uint64_t lost;
    };
    const Case cases[] = {
        {"each in time", {{{1, 0, 256, 100}, 50}, {{1, 256, 256, 200}, 150}, {{1, 512, 256, 300}, 250}}, 0},
        {"the one in the middle not called", {{{1, 0, 256, 100}, 50}, {{1, 512, 256, 300}, 250}}, 1},
        {"three not called", {{{1, 0, 256, 100}, 50}, {{1, 1024, 256, 500}, 450}}, 3},
        {"one ended late, the next called", {{{1, 0, 256, 100}, 130}, {{1, 256, 256, 200}, 150}}, 1},
        {"one ended so late that the next was skipped", {{{1, 0, 256, 100}, 230}, {{1, 512, 256, 300}, 250}}, 1},
        {"no deadline known", {{{1, 0, 256, 0}, 900}, {{1, 256, 256, 0}, 950}}, 0},
        {"another clock", {{{1, 0, 256, 100}, 50}, {{2, 9999, 256, 300}, 250}}, 0},
        {"another quantum", {{{1, 0, 256, 100}, 50}, {{1, 2560, 1024, 300}, 250}}, 0},
        {"the clock set back", {{{1, 5120, 256, 100}, 50}, {{1, 0, 256, 200}, 150}}, 0},
        {"the clock stood still for a minute", {{{1, 0, 256, 100}, 50}, {{1, 60 * 48000, 256, 200}, 150}}, 0},
    };
    for (const auto& [what, calls, lost] : cases) {
        CycleWatch watch;
        uint64_t counted = 0;
        for (const Call& call : calls) {
            counted += watch.begin(call.cycle);
            watch.end(call.ended);
        }
        EXPECT_EQ(counted, lost) << what;
    }
}

}  // namespace
}  // namespace brindlehum
