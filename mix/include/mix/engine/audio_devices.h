// AudioDevices: queries on the output devices that exist right now.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/audio_system.h"

namespace brindlehum {

// Stateless: each call asks the system again. Main thread. Nothing throws.
class AudioDevices {
public:
    explicit AudioDevices(AudioSystem& system) : system_(system) {}
    std::vector<AudioOutputDevice> allOutputs() const;
    // Returns "System Output" without a UID, "Unavailable device" for a UID that no device has.
    std::string name(const std::optional<std::string>& uid) const;
    std::optional<uint32_t> deviceID(const std::string& uid) const;
    std::optional<uint32_t> defaultOutput() const;
    SoundServer server() const { return system_.server(); }
    // As AudioSystem::watch.
    [[nodiscard]] std::shared_ptr<void> watch(std::function<void()> heard) const {
        return system_.watch(std::move(heard));
    }
    // Returns 0 for a device that isn't there.
    int outputChannels(uint32_t id) const;

private:
    AudioSystem& system_;
};

}  // namespace brindlehum
