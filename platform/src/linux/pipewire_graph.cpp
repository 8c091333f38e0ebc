// Decisions about the known sinks and ports.
#include "pipewire_graph.h"

#include <algorithm>

namespace brindlehum {

std::vector<PipeWirePort> PipeWireGraph::sortedPorts(uint32_t node, bool inputs) const {
    std::vector<PipeWirePort> found;
    for (const auto& [id, port] : ports) {
        if (port.node == node && port.isInput == inputs) { found.push_back(port); }
    }
    std::ranges::sort(found, {}, &PipeWirePort::number);
    return found;
}

std::vector<uint32_t> PipeWireGraph::portsOf(uint32_t node, bool inputs) const {
    std::vector<uint32_t> ids;
    for (const PipeWirePort& port : sortedPorts(node, inputs)) { ids.push_back(port.id); }
    return ids;
}

std::vector<AudioOutputDevice> PipeWireGraph::outputs() const {
    std::vector<AudioOutputDevice> devices;
    for (const PipeWireSink& sink : sinks) {
        const std::vector<PipeWirePort> inputs = sortedPorts(sink.id, true);
        if (inputs.empty()) { continue; }
        const std::string& name = sink.description.empty() ? sink.nodeName : sink.description;
        AudioOutputDevice& device =
            devices.emplace_back(AudioOutputDevice{sink.id, sink.nodeName, name, int(inputs.size())});
        for (const PipeWirePort& port : inputs) { device.positions.push_back(port.position); }
    }
    return devices;
}

std::optional<uint32_t> PipeWireGraph::defaultOutput() const {
    const auto devices = outputs();
    if (devices.empty()) { return std::nullopt; }
    const auto stated = std::ranges::find(devices, defaultSinkName, &AudioOutputDevice::uid);
    return stated == devices.end() ? devices.front().id : stated->id;
}

double PipeWireGraph::rateFor(uint32_t sink) const {
    if (const auto seen = observedRates.find(sink); seen != observedRates.end()) { return seen->second; }
    if (forcedRate > 0) { return forcedRate; }
    return statedRate > 0 ? statedRate : 48000;
}

void PipeWireGraph::remove(uint32_t globalId) {
    std::erase_if(sinks, [globalId](const PipeWireSink& sink) { return sink.id == globalId; });
    ports.erase(globalId);
    refused.erase(globalId);
    observedRates.erase(globalId);
}

}  // namespace brindlehum
