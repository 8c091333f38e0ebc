// The fields of a SoundMeta: their tags, the text for the search, their JSON.
#include "library/meta/sound_meta.h"

#include <nlohmann/json.hpp>

namespace brindlehum {

const std::array<SoundMeta::Tag, 15> SoundMeta::ixmlTags = {{
    {"DESCRIPTION", &SoundMeta::description, "description", true},
    {"CATEGORY", &SoundMeta::category, "category", true},
    {"SUBCATEGORY", &SoundMeta::subCategory, "subCategory", true},
    {"CATID", &SoundMeta::catID, "catID", true},
    {"FXNAME", &SoundMeta::fxName, "fxName", true},
    {"KEYWORDS", &SoundMeta::keywords, "keywords", true},
    {"LIBRARY", &SoundMeta::library, "library", true},
    {"DESIGNER", &SoundMeta::designer, "designer", true},
    {"SOURCEID", &SoundMeta::source, "source", false},
    {"MICROPHONE", &SoundMeta::microphone, "microphone", true},
    {"MICPERSPECTIVE", &SoundMeta::micPerspective, "micPerspective", false},
    {"LOCATION", &SoundMeta::location, "location", true},
    {"NOTES", &SoundMeta::notes, "notes", true},
    {"TRACKTITLE", &SoundMeta::trackTitle, "trackTitle", true},
    {"USERCATEGORY", &SoundMeta::userCategory, "userCategory", true},
}};

const SoundMeta::Tag* SoundMeta::tag(std::string_view name) {
    for (const Tag& tag : ixmlTags) {
        if (tag.name == name) { return &tag; }
    }
    return nullptr;
}

std::string SoundMeta::searchText() const {
    std::string text;
    for (const Tag& tag : ixmlTags) {
        const std::string& value = this->*tag.field;
        if (!tag.searched || value.empty()) { continue; }
        if (!text.empty()) { text += ' '; }
        text += value;
    }
    return text;
}

void SoundMeta::fill(const SoundMeta& other) {
    for (const Tag& tag : ixmlTags) {
        if ((this->*tag.field).empty()) { this->*tag.field = other.*tag.field; }
    }
    if (rating == 0) { rating = other.rating; }
}

void to_json(nlohmann::json& json, const SoundMeta& meta) {
    json = nlohmann::json::object();
    for (const SoundMeta::Tag& tag : SoundMeta::ixmlTags) { json[std::string(tag.key)] = meta.*tag.field; }
    json["rating"] = meta.rating;
}

void from_json(const nlohmann::json& json, SoundMeta& meta) {
    for (const SoundMeta::Tag& tag : SoundMeta::ixmlTags) { json.at(std::string(tag.key)).get_to(meta.*tag.field); }
    json.at("rating").get_to(meta.rating);
}

}  // namespace brindlehum
