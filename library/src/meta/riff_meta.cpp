// RIFFMeta: reads the metadata of a WAVE file, and writes a new version of the file with other metadata.
#include "library/meta/riff_meta.h"

#include <algorithm>
#include <array>
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
constexpr size_t riffHeadBytes = 12;
constexpr size_t bextBytes = 602;      // without a coding history
constexpr uint64_t minDs64Bytes = 28;  // without a table
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

std::string chunkOf(Container container, const char* id, const std::string& payload) {
    return storedId(container, id) + storedSize(container, payload.size()) + payload +
           std::string(padding(container, payload.size()), '\0');
}

bool isOurs(const Chunk& chunk) {
    return chunk.id == "bext" || chunk.id == "iXML";
}

// True when the walk understood the whole file, so that a rewrite loses nothing.
bool canBeRewritten(const Walk& walk) {
    const Chunk* data = find(walk.chunks, "data");
    if (!walk.toTheEnd || !data) { return false; }
    if (walk.container == Container::rf64) {
        const Chunk* sizes = find(walk.chunks, "ds64");
        if (!sizes || sizes->size < minDs64Bytes) { return false; }
        // The cut size would have to go into the table.
        if (walk.cutOff && walk.sizedElsewhere.back() && &walk.chunks.back() != data) { return false; }
    }
    // In a recording that was never closed, the bytes after `data` are sound, not chunks.
    return data->size > 0 || !walk.cutOff;
}

std::string fileHead(const FileHandle& source, Container container, uint64_t total) {
    std::string head(container == Container::w64 ? w64HeadBytes : riffHeadBytes, '\0');
    if (!source.readExactly(0, head.data(), head.size())) { refuse(); }
    if (container == Container::w64) { return head.replace(16, 8, le64(total)); }
    return head.replace(4, 4, le32(container == Container::riff ? uint32_t(total - 8) : 0xFFFFFFFF));
}

// `ds64` with the sizes of the new file. Its count of samples and its table stay.
std::string sizesChunk(const FileHandle& source, const Chunk& chunk, uint64_t total, uint64_t dataBytes) {
    std::string sizes = content(source, chunk, maxMetaBytes);
    if (sizes.size() != chunk.size) { refuse(); }
    return chunkOf(Container::rf64, "ds64", sizes.replace(0, 16, le64(total - 8) + le64(dataBytes)));
}

uint64_t newLength(const Walk& walk, uint64_t ourBytes) {
    uint64_t total = (walk.container == Container::w64 ? w64HeadBytes : riffHeadBytes) + ourBytes;
    for (const Chunk& chunk : walk.chunks) {
        if (isOurs(chunk)) { continue; }
        total += headerBytes(walk.container) + chunk.size + padding(walk.container, chunk.size);
    }
    if (walk.container == Container::riff && total - 8 > std::numeric_limits<uint32_t>::max()) {
        throw Error(ErrorKind::tooLargeForRiff, "File too large for RIFF");
    }
    return total;
}

struct Stored {
    SoundMeta meta;
    bool isWhole = false;
};

Stored load(const std::filesystem::path& path) {
    Stored stored;
    const FileHandle file(path);
    const std::optional<Walk> walked = walk(file);
    if (!walked) { return stored; }
    const std::vector<Chunk>& list = walked->chunks;
    std::string document;
    if (const Chunk* ixml = find(list, "iXML")) {
        document = repairUtf8(content(file, *ixml, maxMetaBytes));
        stored.meta = parseUSER(document);
    }
    if (stored.meta.description.empty()) { stored.meta.description = bextDescription(file, list); }
    stored.isWhole = isEmbeddedByUs(document);
    return stored;
}

}  // namespace

SoundMeta read(const std::filesystem::path& path) {
    try {
        return load(path).meta;
    } catch (const Error&) {
        return {};  // treat it like a file without metadata
    }
}

std::optional<SoundMeta> readRecord(const std::filesystem::path& path) {
    // These never had their metadata anywhere else.
    static constexpr std::array wave = {".wav", ".wave", ".bwf"};
    const bool always = std::ranges::find(wave, lowerAscii(path.extension().string())) != wave.end();
    const Stored stored = load(path);
    return always || stored.isWhole ? std::optional(stored.meta) : std::nullopt;
}

ino_t write(const SoundMeta& meta, const std::filesystem::path& path) {
    const std::filesystem::path target = followed(path);
    const FileHandle source(target);
    const std::optional<Walk> walked = walk(source);
    if (!walked || !canBeRewritten(*walked)) { refuse(); }
    const std::vector<Chunk>& list = walked->chunks;
    const Container container = walked->container;
    const std::string ours = chunkOf(container, "bext", bextPayload(source, list, meta)) +
                             chunkOf(container, "iXML", ixmlPayload(source, list, meta));
    const uint64_t total = newLength(*walked, ours.size());

    FileReplacement out(target, source);
    out.reserve(total);
    out.write(fileHead(source, container, total));
    const Chunk* data = find(list, "data");
    const Chunk* sizes = container == Container::rf64 ? find(list, "ds64") : nullptr;
    for (size_t i = 0; i < list.size(); ++i) {
        const Chunk& chunk = list[i];
        if (isOurs(chunk)) { continue; }
        if (&chunk == data) { out.write(ours); }
        if (&chunk == sizes) {
            out.write(sizesChunk(source, chunk, total, data->size));
            continue;
        }
        out.copy(chunk.offset - headerBytes(container), idBytes(container));
        out.write(walked->sizedElsewhere[i] ? le32(0xFFFFFFFF) : storedSize(container, chunk.size));
        out.copy(chunk.offset, chunk.size);
        out.write(std::string(padding(container, chunk.size), '\0'));
    }
    return out.commit();
}

}  // namespace brindlehum::RIFFMeta
