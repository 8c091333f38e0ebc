// Writes source formats as JSON.
#include "format_json.h"

namespace brindlehum::cli {

Json toJson(const SourceFormat& format) {
    Json json;
    if (const SpeakerList* list = format.asSpeakers()) {
        json["kind"] = "speakers";
        json["speakers"] = Json::array();
        for (const SpeakerID speaker : *list) { json["speakers"].push_back(rawValue(speaker)); }
    } else if (const Ambisonic* ambisonic = format.asAmbisonic()) {
        json["kind"] = "ambisonic";
        json["order"] = ambisonic->order;
        json["norm"] = rawValue(ambisonic->norm);
    } else if (const Discrete* discrete = format.asDiscrete()) {
        json["kind"] = "discrete";
        json["channels"] = discrete->channels;
    }
    json["displayName"] = format.displayName();
    return json;
}

Json toJson(const SoundMeta& meta) {
    Json json;
    for (const SoundMeta::Tag& tag : SoundMeta::ixmlTags) { json[std::string(tag.key)] = meta.*tag.field; }
    json["rating"] = meta.rating;
    return json;
}

}  // namespace brindlehum::cli
