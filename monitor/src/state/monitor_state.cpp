#include "monitor/state/monitor_state.h"

#include <cmath>
#include <nlohmann/json.hpp>

namespace brindlehum {
namespace {

using nlohmann::json;

json rawValues(const std::set<SpeakerID>& speakers) {
    json out = json::array();
    for (const SpeakerID speaker : speakers) { out.push_back(rawValue(speaker)); }
    return out;
}

void read(const json& value, bool& to) {
    if (value.is_boolean()) { to = value; }
}
void read(const json& value, double& to) {
    if (value.is_number() && std::isfinite(value.get<double>())) { to = value; }
}
void read(const json& value, int& to) {
    if (value.is_number_integer()) { to = value; }
}
void read(const json& value, UpmixSettings& to) {
    to = value.get<UpmixSettings>();
}
void read(const json& value, std::set<SpeakerID>& to) {
    if (!value.is_array()) { return; }
    to.clear();
    for (const json& each : value) {
        const auto speaker = each.is_string() ? speakerFromRaw(each.get<std::string>()) : std::nullopt;
        if (speaker) { to.insert(*speaker); }
    }
}
void read(const json& value, MonitorSource& to) {
    if (value.is_string()) { to = monitorSourceFromRaw(value.get<std::string>()).value_or(to); }
}
void read(const json& value, MonitorMode& to) {
    if (value.is_string()) { to = monitorModeFromRaw(value.get<std::string>()).value_or(to); }
}

}  // namespace

void to_json(json& json, const MonitorState& state) {
    json = {{"source", rawValue(state.source)},
            {"sourceOffset", state.sourceOffset},
            {"mode", rawValue(state.mode)},
            {"volumeDB", state.volumeDB},
            {"dim", state.dim},
            {"mute", state.mute},
            {"heightTrimDB", state.heightTrimDB},
            {"solo", rawValues(state.solo)},
            {"muted", rawValues(state.muted)},
            {"upmix", state.upmix},
            {"headphonesFold", state.headphonesFold}};
}

void from_json(const json& json, MonitorState& state) {
    if (!json.is_object()) { return; }
    const auto field = [&json](const char* key, auto& to) {
        if (const auto found = json.find(key); found != json.end()) { read(*found, to); }
    };
    field("source", state.source);
    field("sourceOffset", state.sourceOffset);
    field("mode", state.mode);
    field("volumeDB", state.volumeDB);
    field("dim", state.dim);
    field("mute", state.mute);
    field("heightTrimDB", state.heightTrimDB);
    field("solo", state.solo);
    field("muted", state.muted);
    field("upmix", state.upmix);
    field("headphonesFold", state.headphonesFold);
}

}  // namespace brindlehum
