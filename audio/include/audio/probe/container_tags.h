// Reads the tags of a file (ID3, Vorbis comments, MP4 and AIFF texts) under names that are common to all formats.
#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace brindlehum {

enum class TagKey { description, title, creator, artist, subject, publisher };

struct ContainerTag {
    TagKey key;
    std::string value;  // UTF-8, as stored
};

// Returns the tags in file order; a comment replaces a missing description. Reads headers only. Calls `stop` before
// each read and at the first true returns the tags read so far, usually none; it can't interrupt a single slow read.
// Never fails: a file that can't be opened or isn't known has no tags.
std::vector<ContainerTag> containerTags(const std::filesystem::path& path, const std::function<bool()>& stop);

}  // namespace brindlehum
