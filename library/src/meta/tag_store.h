// TagStore: the tags of one file under the names of its format.
#pragma once

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "meta/tag_stream.h"

namespace brindlehum {

class TagStore {
public:
    // A field that has a tag of its own in the format.
    struct Standard {
        std::string_view field;  // as in SoundMeta::ixmlTags
        std::string_view key;
    };

    virtual ~TagStore() = default;
    // Several values of one tag are joined by "; ". UTF-8.
    virtual std::optional<std::string> get(const std::string& key) const = 0;
    // No value removes the tag.
    virtual void set(const std::string& key, const std::optional<std::string>& value) = 0;
    // Writes into the stream; false when TagLib can't.
    virtual bool save() = 0;

    virtual std::span<const Standard> standards() const = 0;
    // The key for a field without a tag of its own.
    virtual std::string ownKey(std::string_view field) const = 0;
};

// The tags of a FLAC, Ogg (Vorbis, Opus, FLAC), MP3, MP4 or AIFF file, by its content; null for any other. `stream`
// must outlive the object.
std::unique_ptr<TagStore> openTags(TagStream& stream);

}  // namespace brindlehum
