// When an upmix is offered, and which speakers it would fill.
#include "upmix/upmix_planner.h"

#include <gtest/gtest.h>

namespace brindlehum {
namespace {

using enum SpeakerID;

TEST(UpmixPlanner, OffersAnUpmixOnlyWhereItHasSpeakersToFill) {
    const SpeakerList stereo = {L, R};
    const SpeakerList l51 = {L, R, C, LFE, Ls, Rs};
    const SpeakerList l714 = {L, R, C, LFE, Ls, Rs, Lrs, Rrs, Ltf, Rtf, Ltr, Rtr};
    struct Case {
        const char* name;
        SpeakerList source;
        SpeakerList target;
        bool applies;
        std::vector<int> fills;
    };
    const Case cases[] = {
        {"stereo in a pair", stereo, stereo, false, {}},
        {"stereo in 2.1", stereo, {L, R, LFE}, false, {}},
        {"stereo in 3.0: the centre is enough", stereo, {L, R, C}, true, {}},
        {"stereo in 5.1", stereo, l51, true, {4, 5}},
        {"5.1 in 7.1.4", l51, l714, true, {6, 7, 8, 9, 10, 11}},
        {"7.1.4 in 5.1", l714, l51, false, {}},
        {"3.0 in 5.1 without surrounds", {L, R, C}, {L, R, C, LFE}, false, {}},
        {"reversed pair is no stereo", {R, L}, {L, R, C}, false, {}},
        {"mono", {C}, l51, false, {0, 1, 4, 5}},
        {"target without R", stereo, {L, C, Ls, Rs}, false, {2, 3}},
        {"source without L", {R, C}, l51, false, {0, 4, 5}},
        {"nothing", {}, {}, false, {}},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(UpmixPlanner::applies(c.source, c.target), c.applies) << c.name;
        EXPECT_EQ(UpmixPlanner::fills(c.source, c.target), c.fills) << c.name;
    }
}

}  // namespace
}  // namespace brindlehum
