// MetadataChanges: the fields of a record that one edit changes.
#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <string>

#include "library/meta/sound_meta.h"

namespace brindlehum {

struct MetadataChanges {
    std::map<std::string, std::string> fields;  // the names of SoundMeta::ixmlTags and the new texts
    std::optional<int> rating;                  // 0 takes the rating away
    bool operator==(const MetadataChanges&) const = default;

    bool isEmpty() const { return fields.empty() && !rating; }
    // Unknown field names are ignored.
    void apply(SoundMeta& meta) const;
};

}  // namespace brindlehum
