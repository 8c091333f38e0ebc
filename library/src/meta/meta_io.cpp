// MetaIO: reads chunks or tags, depending on the file's extension, and fills the gaps from the file's name.
#include "library/meta/meta_io.h"

#include <algorithm>
#include <array>
#include <chrono>

#include "audio/probe/container_tags.h"
#include "base/error.h"
#include "base/text.h"
#include "library/meta/riff_meta.h"

namespace brindlehum {

namespace {

template <size_t N>
bool hasExtension(const std::filesystem::path& file, const std::array<const char*, N>& extensions) {
    return std::ranges::find(extensions, lowerAscii(file.extension().string())) != extensions.end();
}

SoundMeta commonMetadata(const std::filesystem::path& file) {
    constexpr std::chrono::seconds longest{2};
    const auto deadline = std::chrono::steady_clock::now() + longest;
    SoundMeta meta;
    for (const ContainerTag& tag : containerTags(file, [&] { return std::chrono::steady_clock::now() > deadline; })) {
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

}  // namespace

SoundMeta MetaIO::read(const std::filesystem::path& file) {
    static constexpr std::array chunked = {".wav", ".wave", ".bwf", ".rf64", ".amb"};
    SoundMeta meta = hasExtension(file, chunked) ? RIFFMeta::read(file) : commonMetadata(file);
    meta.fill(SoundMeta::fromFileName(file));
    if (meta.fxName.empty()) { meta.fxName = repairUtf8(file.stem().string()); }
    return meta;
}

bool MetaIO::canWrite(const std::filesystem::path& file) {
    static constexpr std::array writable = {".wav", ".wave", ".bwf"};
    return hasExtension(file, writable);
}

ino_t MetaIO::write(const SoundMeta& meta, const std::filesystem::path& file) {
    if (!canWrite(file)) { throw Error(ErrorKind::notEmbeddable, "Embedding is supported for WAV/BWF files"); }
    return RIFFMeta::write(meta, file);
}

}  // namespace brindlehum
