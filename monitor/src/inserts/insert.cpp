// An insert as JSON.
#include "monitor/inserts/insert.h"

#include <nlohmann/json.hpp>

namespace brindlehum {

using nlohmann::json;

void to_json(json& out, const Insert& insert) {
    out = {{"id", insert.id.string()},        {"uri", insert.uri},
           {"bundle", insert.bundle},         {"name", insert.name},
           {"isBypassed", insert.isBypassed}, {"values", insert.settings.values},
           {"files", insert.settings.files},  {"state", insert.settings.state}};
}

void from_json(const json& in, Insert& insert) {
    insert.id = UUID::parse(in.at("id").get<std::string>()).value_or(UUID::random());
    in.at("uri").get_to(insert.uri);
    in.at("bundle").get_to(insert.bundle);
    in.at("name").get_to(insert.name);
    in.at("isBypassed").get_to(insert.isBypassed);
    in.at("values").get_to(insert.settings.values);
    in.at("files").get_to(insert.settings.files);
    in.at("state").get_to(insert.settings.state);
}

void to_json(json& out, const PluginControl& control) {
    out = {{"symbol", control.symbol},   {"name", control.name},        {"low", control.low},
           {"high", control.high},       {"rest", control.rest},        {"isSwitch", control.isSwitch},
           {"isWhole", control.isWhole}, {"unit", control.unit},        {"isLogarithmic", control.isLogarithmic},
           {"choices", control.choices}, {"isHidden", control.isHidden}};
}

void from_json(const json& in, PluginControl& control) {
    in.at("symbol").get_to(control.symbol);
    in.at("name").get_to(control.name);
    in.at("low").get_to(control.low);
    in.at("high").get_to(control.high);
    in.at("rest").get_to(control.rest);
    in.at("isSwitch").get_to(control.isSwitch);
    in.at("isWhole").get_to(control.isWhole);
    in.at("isLogarithmic").get_to(control.isLogarithmic);
    in.at("isHidden").get_to(control.isHidden);
    in.at("unit").get_to(control.unit);
    in.at("choices").get_to(control.choices);
}

void to_json(json& out, const PluginFile& file) {
    out = {{"uri", file.uri}, {"name", file.name}};
}

void from_json(const json& in, PluginFile& file) {
    in.at("uri").get_to(file.uri);
    in.at("name").get_to(file.name);
}

void to_json(json& out, const PluginInfo& info) {
    out = {
        {"uri", info.uri},       {"name", info.name},          {"maker", info.maker},     {"bundle", info.bundle},
        {"inputs", info.inputs}, {"outputs", info.outputs},    {"refusal", info.refusal}, {"controls", info.controls},
        {"files", info.files},   {"hasWindow", info.hasWindow}};
}

void from_json(const json& in, PluginInfo& info) {
    in.at("uri").get_to(info.uri);
    in.at("name").get_to(info.name);
    in.at("maker").get_to(info.maker);
    in.at("bundle").get_to(info.bundle);
    in.at("inputs").get_to(info.inputs);
    in.at("outputs").get_to(info.outputs);
    in.at("hasWindow").get_to(info.hasWindow);
    in.at("refusal").get_to(info.refusal);
    in.at("controls").get_to(info.controls);
    in.at("files").get_to(info.files);
}

std::string displayName(const PluginInfo& info) {
    return info.maker.empty() ? info.name : info.maker + ": " + info.name;
}

}  // namespace brindlehum
