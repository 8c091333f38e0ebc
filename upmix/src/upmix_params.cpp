// The preset table of the upmixer, and the JSON forms of its parameters and settings.
#include "upmix/upmix_params.h"

#include <nlohmann/json.hpp>
#include <string>
#include <type_traits>
#include <utility>

namespace brindlehum {
namespace {

using Json = nlohmann::json;
using LFEMode = UpmixParams::LFEMode;

struct PresetTexts {
    std::string_view raw;
    std::string_view name;
    std::string_view description;
};

constexpr std::array<PresetTexts, allUpmixPresets.size()> presetTexts = {{
    {"music", "Music",
     "Centre width 3 of 7, surrounds rolled off above 4 kHz, no delay. The music-mode convention of matrix decoders."},
    {"film", "Film",
     "Dialogue held in the centre, full-range surrounds 10 ms behind the screen, bass below 120 Hz to the LFE. The "
     "cinema-mode convention."},
    {"game", "Game", "Cinema steering with a wider front stage, no surround delay, and bass below 80 Hz to the LFE."},
    {"hall", "Hall",
     "For large rooms and orchestral recordings: more ambience in the surrounds and heights, spread wider."},
    {"speech", "Speech",
     "Everything correlated stays in the centre and nothing goes overhead. For dialogue and narration."},
    {"broadcast", "Broadcast",
     "Fold-down exact: the 2.0 fold-down returns the original stereo. No delays or decorrelation, safe to deliver."},
}};

const PresetTexts& texts(UpmixPreset preset) {
    return presetTexts[size_t(preset)];
}

// Calls visit(key, field) for each field of the record, in their order.
template <typename Params, typename Visit>
void forEachField(Params& p, Visit visit) {
    visit("strength", p.strength);
    visit("centerWidth", p.centerWidth);
    visit("stage", p.stage);
    visit("frontAmbience", p.frontAmbience);
    visit("ambienceDB", p.ambienceDB);
    visit("sideDB", p.sideDB);
    visit("rearDB", p.rearDB);
    visit("wideDB", p.wideDB);
    visit("heightDB", p.heightDB);
    visit("heightTilt", p.heightTilt);
    visit("surroundDelayMs", p.surroundDelayMs);
    visit("shelfHz", p.shelfHz);
    visit("shelfDB", p.shelfDB);
    visit("heightHPFHz", p.heightHPFHz);
    visit("roomMs", p.roomMs);
    visit("focus", p.focus);
    visit("lfe", p.lfe);
    visit("lfeHz", p.lfeHz);
    visit("lfeDB", p.lfeDB);
    visit("exact", p.exact);
}

// Leaves `value` unchanged when the key can't be read.
void readField(const Json& json, double& value) {
    if (json.is_number()) { value = json.get<double>(); }
}

void readField(const Json& json, bool& value) {
    if (json.is_boolean()) { value = json.get<bool>(); }
}

void readField(const Json& json, LFEMode& value) {
    if (!json.is_string()) { return; }
    for (const LFEMode mode : {LFEMode::off, LFEMode::split}) {
        if (json.get_ref<const std::string&>() == rawValue(mode)) { value = mode; }
    }
}

}  // namespace

std::string_view rawValue(LFEMode mode) {
    return mode == LFEMode::split ? "split" : "off";
}

std::string_view rawValue(UpmixPreset preset) {
    return texts(preset).raw;
}

std::optional<UpmixPreset> upmixPresetFromRaw(std::string_view raw) {
    for (const UpmixPreset preset : allUpmixPresets) {
        if (rawValue(preset) == raw) { return preset; }
    }
    return std::nullopt;
}

std::string_view displayName(UpmixPreset preset) {
    return texts(preset).name;
}

std::string_view description(UpmixPreset preset) {
    return texts(preset).description;
}

UpmixParams params(UpmixPreset preset) {
    switch (preset) {
        case UpmixPreset::music:
            return {.centerWidth = 3.0 / 7.0,
                    .frontAmbience = 0.35,
                    .ambienceDB = 3,
                    .shelfHz = 4000,
                    .shelfDB = -6,
                    .roomMs = 8};
        case UpmixPreset::film:
            return {.frontAmbience = 0.25,
                    .ambienceDB = 2,
                    .rearDB = 0,
                    .wideDB = -6,
                    .surroundDelayMs = 10,
                    .roomMs = 12,
                    .lfe = LFEMode::split};
        case UpmixPreset::game:
            return {.centerWidth = 0.2,
                    .stage = 45,
                    .frontAmbience = 0.25,
                    .ambienceDB = 3,
                    .rearDB = 0,
                    .heightDB = -8,
                    .roomMs = 8,
                    .lfe = LFEMode::split,
                    .lfeHz = 80};
        case UpmixPreset::hall:
            return {.centerWidth = 0.6,
                    .frontAmbience = 0.2,
                    .ambienceDB = 4,
                    .rearDB = 0,
                    .heightDB = -2,
                    .heightTilt = -0.3,
                    .shelfHz = 6000,
                    .shelfDB = -3,
                    .heightHPFHz = 120,
                    .roomMs = 20,
                    .focus = 0.8};
        case UpmixPreset::speech:
            // At -80 dB the heights fall below the planner's gate, so the plan leaves them out.
            return {.frontAmbience = 0.7,
                    .sideDB = -6,
                    .rearDB = -9,
                    .wideDB = -9,
                    .heightDB = -80,
                    .surroundDelayMs = 10,
                    .focus = 2};
        case UpmixPreset::broadcast:
            return {.centerWidth = 0.3,
                    .frontAmbience = 0.5,
                    .ambienceDB = 2,
                    .wideDB = -12,
                    .heightDB = -9,
                    .roomMs = 0,
                    .exact = true};
    }
    return {};
}

void to_json(Json& json, const UpmixParams& params) {
    json = Json::object();
    forEachField(params, [&](const char* key, const auto& field) {
        if constexpr (std::is_same_v<std::decay_t<decltype(field)>, LFEMode>) {
            json[key] = rawValue(field);
        } else {
            json[key] = field;
        }
    });
}

void from_json(const Json& json, UpmixParams& params) {
    params = {};
    forEachField(params, [&](const char* key, auto& field) {
        if (const auto found = json.find(key); found != json.end()) { readField(*found, field); }
    });
}

void to_json(Json& json, const UpmixSettings& settings) {
    json = {{"enabled", settings.enabled}, {"preset", rawValue(settings.preset)}, {"params", settings.params}};
    if (!settings.own.empty()) { json["own"] = settings.own; }
}

void from_json(const Json& json, UpmixSettings& settings) {
    settings = {};
    if (const auto enabled = json.find("enabled"); enabled != json.end()) { readField(*enabled, settings.enabled); }
    if (const auto preset = json.find("preset"); preset != json.end() && preset->is_string()) {
        settings.preset = upmixPresetFromRaw(preset->get_ref<const std::string&>()).value_or(UpmixPreset::music);
    }
    if (const auto own = json.find("own"); own != json.end() && own->is_string()) { settings.own = *own; }
    const auto stored = json.find("params");
    settings.params =
        stored != json.end() && stored->is_object() ? stored->get<UpmixParams>() : params(settings.preset);
}

}  // namespace brindlehum
