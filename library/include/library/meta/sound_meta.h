// SoundMeta: what describes a sound, in its file, in the catalog, in the change log and in the inspector.
#pragma once

#include <array>
#include <filesystem>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <string_view>

namespace brindlehum {

// UTF-8 throughout; empty where nothing is known.
struct SoundMeta {
    std::string description;
    std::string category;  // of the Universal Category System, as are the next two
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
    // The text fields, in the order in which they are written. `rating` is not among them.
    static const std::array<Tag, 15> ixmlTags;
    static const Tag* tag(std::string_view name);  // null for a name that is none of them

    // What the full-text index holds: the searched fields that aren't empty, joined by blanks.
    std::string searchText() const;
    // Takes from `other` what is empty here, and its rating if there is none here.
    void fill(const SoundMeta& other);
    // From a name of the form CatID_FXName_Designer_Source; an empty record for any other.
    static SoundMeta fromFileName(const std::filesystem::path& file);
    // That name without an extension; none without catID or fxName.
    std::optional<std::string> ucsFileName() const;
};

// Keys are the field names. Reading throws nlohmann::json::exception when a key is missing or of another type.
void to_json(nlohmann::json& json, const SoundMeta& meta);
void from_json(const nlohmann::json& json, SoundMeta& meta);

}  // namespace brindlehum
