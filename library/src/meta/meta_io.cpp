// MetaIO: reads and writes chunks or tags, depending on the file's extension, and fills the gaps from the file's name.
#include "library/meta/meta_io.h"

#include <algorithm>
#include <array>
#include <chrono>

#include "base/error.h"
#include "base/text.h"
#include "library/meta/riff_meta.h"
#include "meta/common_metadata.h"
#include "meta/tag_file.h"

namespace brindlehum {

namespace {

enum class Holder { chunks, tags, nothing };

Holder holderOf(const std::filesystem::path& file) {
    static constexpr std::array chunked = {".wav", ".wave", ".bwf", ".rf64", ".amb", ".w64"};
    static constexpr std::array tagged = {".flac", ".ogg", ".oga", ".opus", ".mp3",
                                          ".m4a",  ".mp4", ".aif", ".aiff", ".aifc"};
    const std::string extension = lowerAscii(file.extension().string());
    if (std::ranges::find(chunked, extension) != chunked.end()) { return Holder::chunks; }
    return std::ranges::find(tagged, extension) != tagged.end() ? Holder::tags : Holder::nothing;
}

// For one file: two seconds from now on, the reading stops.
std::function<bool()> deadline() {
    constexpr std::chrono::seconds longest{2};
    return [end = std::chrono::steady_clock::now() + longest] { return std::chrono::steady_clock::now() > end; };
}

SoundMeta embedded(const std::filesystem::path& file) {
    switch (holderOf(file)) {
        case Holder::chunks:
            return RIFFMeta::read(file);
        case Holder::tags:
            return TagFile::read(file, deadline()).meta;
        case Holder::nothing:
            break;
    }
    return commonMetadata(file, deadline());
}

SoundMeta named(SoundMeta meta, const std::filesystem::path& file) {
    meta.fill(SoundMeta::fromFileName(file));
    if (meta.fxName.empty()) { meta.fxName = repairUtf8(file.stem().string()); }
    return meta;
}

}  // namespace

SoundMeta MetaIO::read(const std::filesystem::path& file) {
    return named(embedded(file), file);
}

std::optional<SoundMeta> MetaIO::readRecord(const std::filesystem::path& file) {
    switch (holderOf(file)) {
        case Holder::chunks: {
            const auto record = RIFFMeta::readRecord(file);
            return record ? std::optional(named(*record, file)) : std::nullopt;
        }
        case Holder::tags: {
            const TagFile::Stored stored = TagFile::readRecord(file);
            return stored.isWhole ? std::optional(named(stored.meta, file)) : std::nullopt;
        }
        case Holder::nothing:
            break;
    }
    return std::nullopt;
}

bool MetaIO::canWrite(const std::filesystem::path& file) {
    return holderOf(file) != Holder::nothing;
}

ino_t MetaIO::write(const SoundMeta& meta, const std::filesystem::path& file) {
    switch (holderOf(file)) {
        case Holder::chunks:
            return RIFFMeta::write(meta, file);
        case Holder::tags:
            return TagFile::write(meta, file);
        case Holder::nothing:
            break;
    }
    throw Error(ErrorKind::notEmbeddable, "Embedding is supported for WAV/BWF files");
}

}  // namespace brindlehum
