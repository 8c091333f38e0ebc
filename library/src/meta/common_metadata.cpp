// Maps the tags of any container to fields.
#include "meta/common_metadata.h"

#include "audio/probe/container_tags.h"

namespace brindlehum {

SoundMeta commonMetadata(const std::filesystem::path& file, const std::function<bool()>& stop) {
    SoundMeta meta;
    for (const ContainerTag& tag : containerTags(file, stop)) {
        switch (tag.key) {
            case TagKey::description:
                meta.description = tag.value;
                break;
            case TagKey::title:
                meta.trackTitle = tag.value;
                break;
            case TagKey::creator:
            case TagKey::artist:
                if (meta.designer.empty()) { meta.designer = tag.value; }
                break;
            case TagKey::subject:
                meta.keywords = tag.value;
                break;
            case TagKey::publisher:
                meta.library = tag.value;
                break;
        }
    }
    return meta;
}

}  // namespace brindlehum
