// Reads tags through libavformat, which maps most formats' own names to one set.
#include "audio/probe/container_tags.h"

#include <algorithm>
#include <array>
#include <memory>
#include <optional>

#include "base/error.h"
#include "base/text.h"
#include "decode/ffmpeg_input.h"

namespace brindlehum {

namespace {

struct Name {
    std::string_view name;
    TagKey key;
};

// Authors choose the names of Vorbis comments freely, so some tags have several names.
constexpr std::array<Name, 9> names = {{
    {"description", TagKey::description},
    {"title", TagKey::title},
    {"artist", TagKey::artist},
    {"creator", TagKey::creator},
    {"author", TagKey::creator},
    {"subject", TagKey::subject},
    {"keywords", TagKey::subject},
    {"publisher", TagKey::publisher},
    {"organization", TagKey::publisher},
}};

void collect(const AVDictionary* tags, std::vector<ContainerTag>& found, std::optional<std::string>& comment) {
    const AVDictionaryEntry* tag = nullptr;
    while ((tag = av_dict_get(tags, "", tag, AV_DICT_IGNORE_SUFFIX))) {
        const std::string name = lowerAscii(tag->key);
        if (name == "comment" || name == "comments") { comment = repairUtf8(tag->value); }
        const auto* known = std::ranges::find_if(names, [&](const Name& n) { return n.name == name; });
        if (known != names.end()) { found.push_back({known->key, repairUtf8(tag->value)}); }
    }
}

}  // namespace

std::vector<ContainerTag> containerTags(const std::filesystem::path& path, const std::function<bool()>& stop) {
    std::vector<ContainerTag> found;
    FileCursor cursor;
    try {
        cursor.handle = std::make_shared<FileHandle>(path);
    } catch (const Error&) { return found; }
    cursor.stop = stop;
    const FormatContextPtr container = openContainer(cursor);
    if (!container) { return found; }
    std::optional<std::string> comment;
    collect(container->metadata, found, comment);
    // Ogg has tags on its streams. Skip a picture's title and comment: they don't describe the sound.
    for (unsigned i = 0; i < container->nb_streams; ++i) {
        const AVStream& stream = *container->streams[i];
        if (stream.codecpar->codec_type == AVMEDIA_TYPE_AUDIO) { collect(stream.metadata, found, comment); }
    }
    const auto describes = [](const ContainerTag& tag) { return tag.key == TagKey::description; };
    if (comment && std::ranges::none_of(found, describes)) { found.push_back({TagKey::description, *comment}); }
    return found;
}

}  // namespace brindlehum
