// MetadataChanges: the fields of a record that one edit changes.
#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <string>

#include "library/meta/sound_meta.h"

namespace brindlehum {

struct MetadataChanges {
    std::map<std::string, std::string> fields;  // keys are names of SoundMeta::ixmlTags
    std::optional<int> rating;                  // 0 removes the rating
    bool operator==(const MetadataChanges&) const = default;

    bool isEmpty() const { return fields.empty() && !rating; }
    // Ignores unknown field names.
    void apply(SoundMeta& meta) const;
};

}  // namespace brindlehum
