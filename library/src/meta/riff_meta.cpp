// RIFFMeta: reads the metadata of a file, and writes a new version of the file with other metadata.
#include "library/meta/riff_meta.h"

#include <limits>

#include "base/error.h"
#include "base/file_replacement.h"
#include "base/path.h"
#include "base/text.h"
#include "meta/ixml.h"
#include "meta/riff_walk.h"

namespace brindlehum::RIFFMeta {

namespace {

constexpr size_t descriptionBytes = 256;  // at the start of `bext`
constexpr size_t originatorBytes = 32;
constexpr size_t bextBytes = 602;  // without a coding history
constexpr uint64_t maxMetaBytes = 64 << 20;

std::string bextDescription(const FileHandle& file, const std::vector<Chunk>& chunks) {
    const Chunk* bext = find(chunks, "bext");
    if (!bext) { return {}; }
    const std::string field = content(file, *bext, descriptionBytes);
    return std::string(trimmed(repairUtf8(field.substr(0, field.find('\0')))));
}

// Cuts the text to as many whole characters as the field holds. `text` is well-formed UTF-8.
std::string descriptionField(const std::string& text) {
    std::string field(cutUtf8(text, descriptionBytes));
    field.resize(descriptionBytes, '\0');
    return field;
}

[[noreturn]] void refuse() {
    throw Error(ErrorKind::notWritableWav, "Not a WAV file Brindlehum can write");
}

// The whole content of a chunk; none without the chunk. Refuses a larger chunk, which can't be metadata.
std::optional<std::string> wholeChunk(const FileHandle& file, const std::vector<Chunk>& chunks, std::string_view id) {
    const Chunk* chunk = find(chunks, id);
    if (!chunk) { return std::nullopt; }
    if (chunk->size > maxMetaBytes) { refuse(); }
    std::string bytes = content(file, *chunk, chunk->size);
    if (bytes.size() != chunk->size) { throw Error(std::string(id) + " chunk can't be read"); }
    return bytes;
}

std::string ixmlPayload(const FileHandle& file, const std::vector<Chunk>& chunks, const SoundMeta& meta) {
    const std::string stored = wholeChunk(file, chunks, "iXML").value_or("");
    return withUserBlock(repairUtf8(stored.substr(0, stored.find('\0'))), meta);
}

std::string bextPayload(const FileHandle& file, const std::vector<Chunk>& chunks, const SoundMeta& meta) {
    std::optional<std::string> bext = wholeChunk(file, chunks, "bext");
    if (!bext) {
        std::string originator = "Brindlehum";
        originator.resize(originatorBytes, '\0');
        bext = std::string(descriptionBytes, '\0') + originator;
    }
    if (bext->size() < bextBytes) { bext->resize(bextBytes, '\0'); }
    return bext->replace(0, descriptionBytes, descriptionField(storable(meta.description)));
}

std::string chunkOf(const char* id, const std::string& payload) {
    return id + le32(uint32_t(payload.size())) + payload + std::string(payload.size() % 2, '\0');
}

bool isOurs(const Chunk& chunk) {
    return chunk.id == "bext" || chunk.id == "iXML";
}

// True when the walk understood the whole file, so that a rewrite loses nothing.
bool canBeRewritten(const Walk& walk) {
    const Chunk* data = find(walk.chunks, "data");
    if (!walk.toTheEnd || !data) { return false; }
    // In a recording that was never closed, the bytes after `data` are sound, not chunks.
    return data->size > 0 || !walk.cutOff;
}

}  // namespace

SoundMeta read(const std::filesystem::path& path) {
    SoundMeta meta;
    try {
        const FileHandle file(path);
        const auto list = chunks(file);
        if (!list) { return meta; }
        if (const Chunk* ixml = find(*list, "iXML")) {
            meta = parseUSER(repairUtf8(content(file, *ixml, maxMetaBytes)));
        }
        if (meta.description.empty()) { meta.description = bextDescription(file, *list); }
    } catch (const Error&) {
        return {};  // treat it like a file without metadata
    }
    return meta;
}

ino_t write(const SoundMeta& meta, const std::filesystem::path& path) {
    const std::filesystem::path target = followed(path);
    const FileHandle source(target);
    const std::optional<Walk> walked = walk(source);
    if (!walked || !canBeRewritten(*walked)) { refuse(); }
    const std::vector<Chunk>& list = walked->chunks;
    const std::string ours =
        chunkOf("bext", bextPayload(source, list, meta)) + chunkOf("iXML", ixmlPayload(source, list, meta));

    uint64_t total = 12 + ours.size();
    for (const Chunk& chunk : list) {
        if (!isOurs(chunk)) { total += 8 + chunk.size + chunk.size % 2; }
    }
    if (total - 8 > std::numeric_limits<uint32_t>::max()) {
        throw Error(ErrorKind::tooLargeForRiff, "File too large for RIFF");
    }

    FileReplacement out(target, source);
    out.reserve(total);
    out.write("RIFF" + le32(uint32_t(total - 8)) + "WAVE");
    const Chunk* data = find(list, "data");
    for (const Chunk& chunk : list) {
        if (isOurs(chunk)) { continue; }
        if (&chunk == data) { out.write(ours); }
        out.copy(chunk.offset - 8, 4);
        out.write(le32(uint32_t(chunk.size)));
        out.copy(chunk.offset, chunk.size);
        if (chunk.size % 2) { out.write(std::string_view("\0", 1)); }
    }
    return out.commit();
}

}  // namespace brindlehum::RIFFMeta
