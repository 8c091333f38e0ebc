// SoundMeta: the description of a sound, as its file, the catalog, the change log and the inspector hold it.
#pragma once

#include <array>
#include <filesystem>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <string_view>

namespace brindlehum {

// All texts are UTF-8; an empty text means unknown.
struct SoundMeta {
    std::string description;
    std::string category;  // by the Universal Category System, like the next two
    std::string subCategory;
    std::string catID;
    std::string fxName;
    std::string keywords;
    std::string library;
    std::string designer;
    std::string source;
    std::string microphone;
    std::string micPerspective;
    std::string location;
    std::string notes;
    std::string trackTitle;
    std::string userCategory;
    int rating = 0;  // 0: unrated

    bool operator==(const SoundMeta&) const = default;

    struct Tag {
        std::string_view name;  // in the USER block of an iXML chunk
        std::string SoundMeta::*field;
        std::string_view key;  // in JSON: the field's name
        bool searched;         // part of searchText
    };
    // The text fields in the order in which they are written; `rating` isn't one of them.
    static const std::array<Tag, 15> ixmlTags;
    static const Tag* tag(std::string_view name);  // null for an unknown name

    // The text for the full-text index: the non-empty searched fields, joined by blanks.
    std::string searchText() const;
    // Fills the empty fields from `other`, and the rating if there is none.
    void fill(const SoundMeta& other);
    // Parses a name of the form CatID_FXName_Designer_Source; returns an empty record for any other.
    static SoundMeta fromFileName(const std::filesystem::path& file);
    // The name in that form, without an extension; none if catID or fxName is missing.
    std::optional<std::string> ucsFileName() const;
};

// The keys are the field names. Reading throws nlohmann::json::exception if a key is missing or has another type.
void to_json(nlohmann::json& json, const SoundMeta& meta);
void from_json(const nlohmann::json& json, SoundMeta& meta);

}  // namespace brindlehum
