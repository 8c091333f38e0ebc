// Own presets: their names, the choice by name, and their JSON form.
#include "upmix/upmix_presets.h"

#include <algorithm>
#include <nlohmann/json.hpp>

namespace brindlehum {
namespace {

using Json = nlohmann::json;

constexpr size_t longestName = 120;  // bytes

char lower(char c) {
    return c >= 'A' && c <= 'Z' ? char(c - 'A' + 'a') : c;
}

bool isSameName(std::string_view a, std::string_view b) {
    return std::ranges::equal(a, b, {}, lower, lower);
}

bool isBuiltIn(std::string_view name) {
    return std::ranges::any_of(allUpmixPresets, [&](UpmixPreset preset) {
        return isSameName(name, rawValue(preset)) || isSameName(name, displayName(preset));
    });
}

}  // namespace

const OwnUpmixPreset* ownUpmixPreset(const OwnUpmixPresets& presets, std::string_view name) {
    const auto found =
        std::ranges::find_if(presets, [&](const OwnUpmixPreset& preset) { return isSameName(preset.name, name); });
    return found != presets.end() ? &*found : nullptr;
}

std::string upmixNameProblem(std::string_view name) {
    if (name.find_first_not_of(' ') == std::string_view::npos) { return "A preset needs a name"; }
    if (name.front() == ' ' || name.back() == ' ') { return "A name can't begin or end with a space"; }
    if (name.size() > longestName) { return "This name is too long"; }
    if (isSameName(name, "off")) { return "“Off” means no upmix"; }
    if (isBuiltIn(name)) { return "“" + std::string(name) + "” is a built-in preset"; }
    return {};
}

std::optional<UpmixSettings> upmixNamed(std::string_view name, const OwnUpmixPresets& own) {
    if (const auto preset = upmixPresetFromRaw(name)) { return UpmixSettings{true, *preset, params(*preset)}; }
    const OwnUpmixPreset* found = ownUpmixPreset(own, name);
    return found ? std::optional(UpmixSettings{true, found->base, found->params, found->name}) : std::nullopt;
}

UpmixParams presetParams(const UpmixSettings& settings, const OwnUpmixPresets& own) {
    const OwnUpmixPreset* found = settings.own.empty() ? nullptr : ownUpmixPreset(own, settings.own);
    return found ? found->params : params(settings.preset);
}

std::string presetName(const UpmixSettings& settings) {
    return settings.own.empty() ? std::string(displayName(settings.preset)) : settings.own;
}

void to_json(Json& json, const OwnUpmixPreset& preset) {
    json = {{"name", preset.name}, {"base", rawValue(preset.base)}, {"params", preset.params}};
}

OwnUpmixPresets ownUpmixPresetsFrom(const Json& json) {
    OwnUpmixPresets presets;
    if (!json.is_array()) { return presets; }
    for (const Json& entry : json) {
        const auto text = [&](const char* key) {
            const bool has = entry.is_object() && entry.contains(key) && entry[key].is_string();
            return has ? entry[key].get<std::string>() : std::string();
        };
        const std::string name = text("name");
        if (!upmixNameProblem(name).empty() || ownUpmixPreset(presets, name)) { continue; }
        OwnUpmixPreset preset{name, upmixPresetFromRaw(text("base")).value_or(UpmixPreset::music), {}};
        const auto stored = entry.find("params");
        preset.params = stored != entry.end() && stored->is_object() ? stored->get<UpmixParams>() : params(preset.base);
        presets.push_back(std::move(preset));
    }
    return presets;
}

}  // namespace brindlehum
