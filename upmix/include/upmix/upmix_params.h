// Upmix records: parameters, presets, settings and request for spreading a source over a larger room.
#pragma once

#include <array>
#include <cstdint>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <string_view>

#include "audio/speakers/speakers.h"

namespace brindlehum {

// The numbers that shape a plan; a missing or unreadable key in JSON leaves the initial value.
struct UpmixParams {
    enum class LFEMode : uint8_t { off, split };

    double strength = 1.0;        // 0 to 1
    double centerWidth = 0.0;     // 0 to 1: share of the centre moved to L and R
    double stage = 30.0;          // degrees: azimuth of a hard-panned direct source
    double frontAmbience = 0.45;  // 0 to 1: share of the ambience energy that stays in front
    double ambienceDB = 0.0;
    double sideDB = 0.0;      // Ls, Rs
    double rearDB = -3.0;     // Lrs, Rrs, Cs
    double wideDB = -3.0;     // Lw, Rw, Lc, Rc
    double heightDB = -6.0;   // Ltm, Rtm, Tc, and the base level for the other heights
    double heightTilt = 0.0;  // dB, applied three times: raises front heights, lowers rear heights
    double surroundDelayMs = 0.0;
    double shelfHz = 0.0;        // 0 means none
    double shelfDB = 0.0;        // 0 means none
    double heightHPFHz = 150.0;  // 0 means none
    double roomMs = 10.0;
    double focus = 1.0;  // ratio; the planner uses at least 0.1
    LFEMode lfe = LFEMode::off;
    double lfeHz = 120.0;  // the planner uses at least 20
    double lfeDB = 0.0;    // added to a fixed -10 dB
    bool exact = false;    // whether the plan's fold-down is exact

    bool operator==(const UpmixParams&) const = default;
};

std::string_view rawValue(UpmixParams::LFEMode mode);

enum class UpmixPreset : uint8_t { music, film, game, hall, speech, broadcast };
inline constexpr std::array<UpmixPreset, 6> allUpmixPresets = {UpmixPreset::music,  UpmixPreset::film,
                                                               UpmixPreset::game,   UpmixPreset::hall,
                                                               UpmixPreset::speech, UpmixPreset::broadcast};
std::string_view rawValue(UpmixPreset preset);
std::optional<UpmixPreset> upmixPresetFromRaw(std::string_view raw);
std::string_view displayName(UpmixPreset preset);
// One line of help, shown wherever the preset can be chosen.
std::string_view description(UpmixPreset preset);
UpmixParams params(UpmixPreset preset);

// The user's choice. Edited numbers are stored apart from the preset.
struct UpmixSettings {
    bool enabled = false;
    UpmixPreset preset = UpmixPreset::music;
    UpmixParams params = brindlehum::params(UpmixPreset::music);
    std::string own = {};  // the name of the user's own preset that was chosen; empty for a built-in one
    bool operator==(const UpmixSettings&) const = default;
};

// The planner's input. Never stored.
struct UpmixRequest {
    SpeakerList source;
    SpeakerList target;
    UpmixParams params;
    bool operator==(const UpmixRequest&) const = default;
};

// JSON: objects with the field names as keys and enumerations by raw value. Reading never fails: a missing key, a key
// of the wrong type, or anything but an object leaves the initial values. Settings without readable `params` get those
// of their preset.
void to_json(nlohmann::json& json, const UpmixParams& params);
void from_json(const nlohmann::json& json, UpmixParams& params);
void to_json(nlohmann::json& json, const UpmixSettings& settings);
void from_json(const nlohmann::json& json, UpmixSettings& settings);

}  // namespace brindlehum
