// AudioDevices: names and channel counts, asked from the system each time.
#include "mix/engine/audio_devices.h"

#include <algorithm>

namespace brindlehum {

namespace {

template <typename Match>
std::optional<AudioOutputDevice> find(AudioSystem& system, Match match) {
    const auto all = system.allOutputs();
    const auto it = std::ranges::find_if(all, match);
    return it == all.end() ? std::nullopt : std::optional(*it);
}

}  // namespace

std::vector<AudioOutputDevice> AudioDevices::allOutputs() const {
    auto all = system_.allOutputs();
    std::erase_if(all, [](const AudioOutputDevice& d) { return d.outputChannels < 1 || d.uid.empty(); });
    for (auto& device : all) {
        if (device.name.empty()) { device.name = device.uid; }
    }
    return all;
}

std::string AudioDevices::name(const std::optional<std::string>& uid) const {
    if (!uid) { return "System Output"; }
    for (const auto& device : allOutputs()) {
        if (device.uid == *uid) { return device.name; }
    }
    return "Unavailable device";
}

std::optional<uint32_t> AudioDevices::deviceID(const std::string& uid) const {
    const auto device = find(system_, [&](const AudioOutputDevice& d) { return d.uid == uid; });
    return device ? std::optional(device->id) : std::nullopt;
}

std::optional<uint32_t> AudioDevices::defaultOutput() const {
    return system_.defaultOutput();
}

int AudioDevices::outputChannels(uint32_t id) const {
    const auto device = find(system_, [&](const AudioOutputDevice& d) { return d.id == id; });
    return device ? device->outputChannels : 0;
}

}  // namespace brindlehum
