#include "monitor/state/monitor_state.h"

#include <algorithm>
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

json alignments(const std::map<SpeakerID, SpeakerAlignment>& of) {
    json out = json::object();
    for (const auto& [speaker, alignment] : of) {
        out[std::string(rawValue(speaker))] = {{"delayMs", alignment.delayMs}, {"inverted", alignment.inverted}};
    }
    return out;
}
void read(const json& value, std::map<SpeakerID, SpeakerAlignment>& to) {
    if (!value.is_object()) { return; }
    to.clear();
    for (const auto& [name, each] : value.items()) {
        const auto speaker = speakerFromRaw(name);
        if (!speaker || !each.is_object()) { continue; }
        SpeakerAlignment alignment;
        read(each.value("delayMs", json()), alignment.delayMs);
        read(each.value("inverted", json()), alignment.inverted);
        alignment.delayMs = std::clamp(alignment.delayMs, 0.0, SpeakerAlignment::longestMs);
        if (alignment != SpeakerAlignment()) { to[*speaker] = alignment; }
    }
}
void read(const json& value, std::optional<ReferenceLevel>& to) {
    if (!value.is_object()) { return; }
    to.emplace();
    read(value.value("volumeDB", json()), to->volumeDB);
    read(value.value("levelSPL", json()), to->levelSPL);
}

}  // namespace

std::optional<double> MonitorState::levelSPL() const {
    if (!reference) { return std::nullopt; }
    return reference->levelSPL + levelDB() - reference->volumeDB;
}

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
            {"headphonesFold", state.headphonesFold},
            {"dimDB", state.dimDB},
            {"alignment", alignments(state.alignment)}};
    if (state.reference) {
        json["reference"] = {{"volumeDB", state.reference->volumeDB}, {"levelSPL", state.reference->levelSPL}};
    }
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
    field("dimDB", state.dimDB);
    field("alignment", state.alignment);
    field("reference", state.reference);
    state.dimDB = std::clamp(state.dimDB, MonitorState::lowestDB, 0.0);
}

}  // namespace brindlehum
