// OutputProfile: one listening setup, a set of speakers on a device or a pair of headphones.
#pragma once

#include <cstdint>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "audio/speakers/speakers.h"
#include "settings/uuid.h"

namespace brindlehum {

// `outputs` and `trimsDB` may be shorter than the layout: a missing entry means the speaker's own position and
// 0 dB. A negative output is off.
struct OutputProfile {
    enum class Kind : uint8_t { speakers, headphones };

    UUID id;
    std::string name;
    Kind kind = Kind::speakers;
    std::optional<std::string> deviceUID;  // absent: the system's default output
    LayoutID layout = LayoutID::stereo;
    std::vector<int> outputs;     // device channel of each speaker of the layout, from 0
    std::vector<double> trimsDB;  // dB
    int headphoneLeft = 0;        // device channel of the left ear
    int headphoneRight = 1;
    // The speakers go to the device channels that the device calls by their names, and `outputs` counts only on a
    // device that has no names for its channels.
    bool followsPositions = false;

    bool operator==(const OutputProfile&) const = default;

    // "Room 9.1.6", "Nearfield" and "Headphones", each with a new id.
    static std::vector<OutputProfile> defaults();
    // The profile that the settings window's plus button appends: "New Output", a stereo pair on the default device.
    static OutputProfile newOutput();
};

std::string_view rawValue(OutputProfile::Kind kind);

// JSON objects with the field names as keys. A record without `followsPositions` follows them if its outputs are in
// sequence, as nobody had chosen them. Reading throws nlohmann::json::exception when a required key is
// missing or of the wrong type, or an enumeration's text is unknown.
void to_json(nlohmann::json& json, const OutputProfile& profile);
void from_json(const nlohmann::json& json, OutputProfile& profile);

}  // namespace brindlehum
