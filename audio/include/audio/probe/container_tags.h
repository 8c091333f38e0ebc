// The tags of a file (ID3, Vorbis comments, MP4 and AIFF texts) by the names that their formats share.
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

// In the order of the file; a comment stands for the description of a file that has none. Reads headers only. Calls
// `stop` before each read and ends at the first true with the tags read so far, usually none; it can't cut a single
// slow read short. Never fails: a file that can't be opened or isn't known has no tags.
std::vector<ContainerTag> containerTags(const std::filesystem::path& path, const std::function<bool()>& stop);

}  // namespace brindlehum
