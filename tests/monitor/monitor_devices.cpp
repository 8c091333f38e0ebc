// Which devices the monitor opens, over what there is and what is chosen.
#include "monitor/engine/monitor_devices.h"

#include <gtest/gtest.h>

namespace brindlehum {
namespace {

TEST(MonitorDevices, FollowFromWhatThereIsAndWhatIsChosen) {
    const AudioInputDevice desk{7, "desk", "Desk", 16}, wide{8, "wide", "Wide", 100};
    const AudioInputDevice ports{0, DuplexAudio::openPortsUID, "Open ports", 16};
    const AudioOutputDevice room{1, "room", "Room", 16, {"FL", "FR"}}, pair{2, "pair", "Pair", 2};
    const MonitorMachine all{{desk, wide, ports}, {room, pair}, 2};
    const MonitorMachine noDefault{{desk}, {room, pair}, std::nullopt};
    struct Case {
        const char* what;
        MonitorMachine machine;
        const char* source;
        std::optional<std::string> device;
        int offset;
        const char* problem;
        uint32_t output;
        bool followsDefault;
        int width;
    };
    const char* const sourceGone = "The source isn't available; the monitor goes on when it is back";
    const char* const outputGone = "The output device isn't available";
    const Case cases[] = {
        {"the profile's device", all, "desk", "room", 0, "", 1, false, 16},
        {"the default output", all, "desk", std::nullopt, 0, "", 2, true, 16},
        {"more channels than a block takes", all, "wide", "room", 0, "", 1, false, 64},
        {"open ports: what the bus needs", all, DuplexAudio::openPortsUID, "room", 0, "", 1, false, 6},
        {"open ports behind an offset", all, DuplexAudio::openPortsUID, "room", 8, "", 1, false, 14},
        {"open ports, offset below 0", all, DuplexAudio::openPortsUID, "room", -4, "", 1, false, 6},
        {"no such source", all, "gone", "room", 0, sourceGone, 0, false, 0},
        {"no such output", all, "desk", "gone", 0, outputGone, 0, false, 0},
        {"no default output", noDefault, "desk", std::nullopt, 0, outputGone, 0, false, 0},
        {"neither: the source is named first", {}, "desk", "room", 0, sourceGone, 0, false, 0},
    };
    for (const Case& each : cases) {
        OutputProfile profile;
        profile.deviceUID = each.device;
        MonitorState state;
        state.source = MonitorSource::l51;
        state.sourceOffset = each.offset;
        const MonitorDevices got = chosenDevices(each.machine, each.source, profile, state);
        EXPECT_EQ(got.problem, each.problem) << each.what;
        EXPECT_EQ(got.request.output, each.output) << each.what;
        EXPECT_EQ(got.request.followsDefault, each.followsDefault) << each.what;
        EXPECT_EQ(got.request.input.inputChannels, each.width) << each.what;
    }
}

}  // namespace
}  // namespace brindlehum
