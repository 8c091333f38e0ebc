// MonitorDevices: which devices the monitor opens, as a pure function of what there is and what is chosen.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "monitor/state/monitor_state.h"
#include "platform/duplex_audio.h"
#include "settings/output_profile.h"

namespace brindlehum {

// The machine as it is announced.
struct MonitorMachine {
    std::vector<AudioInputDevice> inputs;
    std::vector<AudioOutputDevice> outputs;
    std::optional<uint32_t> standard;  // the default output
};

struct MonitorDevices {
    std::string problem;  // why there are none, for the user; empty when there are
    DuplexRequest request;
    std::vector<std::string> positions;  // what the output calls its channels
    int outputChannels = 0;
};

// The input has as many channels as the device, but no more than a block can take; the open ports have those that the
// bus needs. Without a device of its own, the profile plays on the default output and follows it.
MonitorDevices chosenDevices(const MonitorMachine& machine, const std::string& sourceUID, const OutputProfile& profile,
                             const MonitorState& state);

}  // namespace brindlehum
