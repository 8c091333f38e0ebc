// Pins as JSON.
#include "analysis/structure/pins.h"

#include <nlohmann/json.hpp>

namespace brindlehum {

namespace {

template <class Json>
Json object(const Pins& pins) {
    return {{"startTime", pins.startTime}, {"introEnd", pins.introEnd},       {"loopStart", pins.loopStart},
            {"loopEnd", pins.loopEnd},     {"endingStart", pins.endingStart}, {"musicEnd", pins.musicEnd},
            {"finalHit", pins.finalHit},   {"loopFile", pins.loopFile}};
}

}  // namespace

void to_json(nlohmann::json& json, const Pins& pins) {
    json = object<nlohmann::json>(pins);
}

void to_json(nlohmann::ordered_json& json, const Pins& pins) {
    json = object<nlohmann::ordered_json>(pins);
}

void from_json(const nlohmann::json& json, Pins& pins) {
    json.at("startTime").get_to(pins.startTime);
    json.at("introEnd").get_to(pins.introEnd);
    json.at("loopStart").get_to(pins.loopStart);
    json.at("loopEnd").get_to(pins.loopEnd);
    json.at("endingStart").get_to(pins.endingStart);
    json.at("musicEnd").get_to(pins.musicEnd);
    json.at("finalHit").get_to(pins.finalHit);
    json.at("loopFile").get_to(pins.loopFile);
}

}  // namespace brindlehum
