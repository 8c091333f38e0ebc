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

std::vector<AudioInputDevice> PipeWireGraph::inputs() const {
    std::vector<AudioInputDevice> devices;
    const auto add = [&](const PipeWireSink& node, const std::string& uid, const std::string& prefix) {
        const std::vector<PipeWirePort> outputs = sortedPorts(node.id, false);
        if (outputs.empty()) { return; }
        const std::string& name = node.description.empty() ? node.nodeName : node.description;
        AudioInputDevice& device =
            devices.emplace_back(AudioInputDevice{node.id, uid, prefix + name, int(outputs.size())});
        for (const PipeWirePort& port : outputs) { device.positions.push_back(port.position); }
    };
    for (const PipeWireSink& source : sources) { add(source, source.nodeName, ""); }
    for (const PipeWireSink& sink : sinks) { add(sink, sink.nodeName + ".monitor", "Monitor of "); }
    return devices;
}

bool PipeWireGraph::reaches(uint32_t from, uint32_t to) const {
    std::set<uint32_t> seen = {from};
    std::vector<uint32_t> open = {from};
    const auto go = [&](uint32_t node) {
        if (seen.insert(node).second) { open.push_back(node); }
    };
    while (!open.empty()) {
        const uint32_t now = open.back();
        open.pop_back();
        if (now == to) { return true; }
        for (const auto& [id, link] : links) {
            if (link.first == now) { go(link.second); }
        }
        const auto known = nodes.find(now);
        if (known == nodes.end() || known->second.client == 0 || known->second.client == ownClient) { continue; }
        for (const auto& [id, node] : nodes) {
            const bool passes = !node.isDevice || !known->second.isDevice;
            if (node.client == known->second.client && passes) { go(id); }
        }
    }
    return false;
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
    std::erase_if(sources, [globalId](const PipeWireSink& source) { return source.id == globalId; });
    nodes.erase(globalId);
    links.erase(globalId);
    ports.erase(globalId);
    refused.erase(globalId);
    observedRates.erase(globalId);
}

}  // namespace brindlehum
