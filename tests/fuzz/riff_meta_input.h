// One damaged or damaging WAV file through reading and rewriting its metadata: shared by the fuzzer and the replay of
// its corpus.
#pragma once

#include <algorithm>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "base/error.h"
#include "fuzz/require.h"
#include "library/meta/riff_meta.h"
#include "support/audio_files.h"

namespace brindlehum::test {

inline uint64_t statedSize(const std::string& bytes, size_t at) {
    uint64_t size = 0;
    for (size_t i = 0; i < 4; ++i) { size |= uint64_t(uint8_t(bytes[at + i])) << 8 * i; }
    return size;
}

// Whether a chunk with a readable id that fits begins there.
inline bool startsChunk(const std::string& bytes, size_t at) {
    if (at + 8 > bytes.size() || statedSize(bytes, at + 4) > bytes.size() - at - 8) { return false; }
    const std::string id = bytes.substr(at, 4);
    return std::ranges::all_of(id, [](char c) { return c >= ' ' && c <= '~'; });
}

// The raw id and content of every chunk that a rewrite must keep. A pad byte may be missing.
inline std::vector<std::pair<std::string, std::string>> foreignChunks(const std::string& bytes) {
    std::vector<std::pair<std::string, std::string>> found;
    for (size_t at = 12; at + 8 <= bytes.size();) {
        const uint64_t size = statedSize(bytes, at + 4);
        const std::string id = bytes.substr(at, 4);
        if (id != "bext" && id != "iXML") { found.emplace_back(id, bytes.substr(at + 8, size)); }
        at += 8 + size;
        if (size % 2 == 1 && (startsChunk(bytes, at + 1) || !startsChunk(bytes, at))) { ++at; }
    }
    return found;
}

// The description comes from the input too.
inline SoundMeta drawnMeta(const std::string& bytes) {
    SoundMeta meta;
    meta.description = bytes.substr(bytes.size() / 2, 300);
    meta.fxName = "a<b>&amp;";
    meta.rating = 2;
    return meta;
}

inline void riffMetaBytes(const std::string& bytes, const std::filesystem::path& folder) {
    const std::filesystem::path path = folder / "input.wav";
    writeBytes(path, bytes);
    const auto list = RIFFMeta::chunks(FileHandle(path));
    uint64_t end = 12;
    for (const auto& chunk : list.value_or(std::vector<RIFFMeta::Chunk>())) {
        require(chunk.offset >= end + 8, "chunks one behind the other");
        end = chunk.offset + chunk.size;
        require(end <= bytes.size(), "chunks inside of the file");
    }
    (void)RIFFMeta::read(path);
    try {
        RIFFMeta::write(drawnMeta(bytes), path);
    } catch (const Error& error) {
        require(error.kind() == ErrorKind::notWritableWav && readBytes(path) == bytes, "a refused file is left alone");
        return;
    }
    const std::string written = readBytes(path);
    if (!bytes.starts_with("RIFF")) { return; }  // sizes that stand elsewhere
    require(foreignChunks(written) == foreignChunks(bytes), "all other chunks as they were");
    require(statedSize(written, 4) == written.size() - 8, "the size of the new file");
    require(RIFFMeta::chunks(FileHandle(path)).has_value(), "a file that can be read again");
    require(std::distance(std::filesystem::directory_iterator(folder), {}) == 1, "nothing left beside the file");
}

}  // namespace brindlehum::test
