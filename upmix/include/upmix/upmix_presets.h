// Presets of the user's own, and choosing any preset by its name.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "upmix/upmix_params.h"

namespace brindlehum {

struct OwnUpmixPreset {
    std::string name;
    UpmixPreset base = UpmixPreset::music;  // the built-in one that it was made from
    UpmixParams params;
    bool operator==(const OwnUpmixPreset&) const = default;
};
// No two names are equal, and none is a built-in preset's. Names differ by more than the case of ASCII letters.
using OwnUpmixPresets = std::vector<OwnUpmixPreset>;

// Null when there is none of this name.
const OwnUpmixPreset* ownUpmixPreset(const OwnUpmixPresets& presets, std::string_view name);
// Why an own preset can't have this name, as a text for the user; empty when it can. Other own presets aren't looked
// at.
std::string upmixNameProblem(std::string_view name);

// Switched on, with the numbers of the preset; the name is a raw value or an own preset's. None when there is no such.
std::optional<UpmixSettings> upmixNamed(std::string_view name, const OwnUpmixPresets& own);
// The numbers that the chosen preset started from.
UpmixParams presetParams(const UpmixSettings& settings, const OwnUpmixPresets& own);
// The chosen preset's name, as it is shown.
std::string presetName(const UpmixSettings& settings);

// JSON: an array of objects. Reading skips what it can't use: entries without a usable name, and second ones of a name.
void to_json(nlohmann::json& json, const OwnUpmixPreset& preset);
OwnUpmixPresets ownUpmixPresetsFrom(const nlohmann::json& json);

}  // namespace brindlehum
