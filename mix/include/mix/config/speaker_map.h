// SpeakerMap: which device channel each speaker of a profile plays on, and which speakers a device can't play.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/audio_system.h"
#include "settings/output_profile.h"

// Pure; any thread.
namespace brindlehum::SpeakerMap {

// Device channels, from 0, for the speakers of a layout by what the device calls its channels (`FL`, `RR`, as PipeWire
// names them). A speaker for which the device has no channel gets a number past the device's last. None when the device
// names no channel of this layout.
std::optional<std::vector<int>> byPosition(LayoutID layout, const std::vector<std::string>& positions);
// What a device best calls the channels of these speakers, in their order.
std::vector<std::string> positionsOf(const SpeakerList& speakers);
// The device channel of each speaker of the profile's layout; negative is off.
std::vector<int> outputs(const OutputProfile& profile, const std::vector<std::string>& positions);
// The profile with these channels as its own.
OutputProfile onDevice(OutputProfile profile, const std::vector<std::string>& positions);

struct Fit {
    int needed = 0;    // the outputs that a device must have for the profile to be heard in full
    int speakers = 0;  // that the profile plays on; ears for headphones
    int unheard = 0;   // of those, on a device with too few outputs
};
Fit fit(const OutputProfile& profile, const AudioOutputDevice& device);

// The device that a profile plays on: its own, or the default one without it; null when there is neither.
const AudioOutputDevice* deviceOf(const OutputProfile& profile, const std::vector<AudioOutputDevice>& devices,
                                  std::optional<uint32_t> defaultDevice);
// The profile with speakers that leaves the fewest of them unheard, and of those the one with the most speakers; the
// first of equals. Null without such a profile or any device.
const OutputProfile* fitting(const std::vector<OutputProfile>& profiles, const std::vector<AudioOutputDevice>& devices,
                             std::optional<uint32_t> defaultDevice);

// What a user must know: "Room 9.1.6 needs 16 outputs, Pair has 2: 14 speakers are not heard". Empty when all is heard.
std::string warning(const OutputProfile& profile, const AudioOutputDevice& device);

}  // namespace brindlehum::SpeakerMap
