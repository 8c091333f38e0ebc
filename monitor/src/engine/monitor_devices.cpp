// Finds the devices by their names.
#include "monitor/engine/monitor_devices.h"

#include <algorithm>

#include "mix/render/render_context.h"

namespace brindlehum {
namespace {

const char* const sourceGone = "The source isn't available; the monitor goes on when it is back";
const char* const outputGone = "The output device isn't available";

}  // namespace

MonitorDevices chosenDevices(const MonitorMachine& machine, const std::string& sourceUID, const OutputProfile& profile,
                             const MonitorState& state) {
    MonitorDevices out;
    const auto input = std::ranges::find(machine.inputs, sourceUID, &AudioInputDevice::uid);
    const auto output = std::ranges::find_if(machine.outputs, [&](const AudioOutputDevice& each) {
        return profile.deviceUID ? each.uid == *profile.deviceUID : each.id == machine.standard;
    });
    if (input == machine.inputs.end() || output == machine.outputs.end()) {
        out.problem = input == machine.inputs.end() ? sourceGone : outputGone;
        return out;
    }
    out.request = {*input, output->id, !profile.deviceUID};
    int& width = out.request.input.inputChannels;
    if (input->uid == DuplexAudio::openPortsUID) {
        width = std::max(state.sourceOffset, 0) + int(channels(state.source).size());
    }
    width = std::min(width, RenderContext::maxSourceChannels);
    out.positions = output->positions;
    out.outputChannels = output->outputChannels;
    return out;
}

}  // namespace brindlehum
