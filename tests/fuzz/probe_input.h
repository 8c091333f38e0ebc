// One damaged or damaging file through probe, open, read and seek: shared by the fuzzer and the replay of its corpus.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "audio/decode/audio_file.h"
#include "audio/probe/audio_file_info.h"
#include "base/error.h"
#include "fuzz/require.h"

namespace brindlehum::test {

// Any audio extension, whatever the content: names decide on descriptions, raw streams and Ambisonics. The last byte
// draws it, so that seeds stay unchanged files.
inline std::string drawnExtension(const uint8_t* data, size_t size) {
    const auto& extensions = AudioFileInfo::audioExtensions;
    std::string dotted(1, '.');
    dotted += extensions[size > 0 ? data[size - 1] % extensions.size() : 0];
    return dotted;
}

// A place in the piece, or one step outside of it, drawn from the middle of the content.
inline int64_t drawnPosition(const uint8_t* data, size_t size, int64_t frames) {
    uint64_t drawn = 0;
    for (size_t i = size / 2; i < std::min(size, size / 2 + 8); ++i) { drawn = drawn << 8 | data[i]; }
    return int64_t(drawn % (uint64_t(std::max<int64_t>(0, frames)) + 3)) - 1;
}

inline void writeInput(const std::filesystem::path& path, const void* data, size_t size) {
    std::FILE* out = std::fopen(path.c_str(), "wb");
    require(out != nullptr && std::fwrite(data, 1, size, out) == size, "a temporary file");
    std::fclose(out);
}

inline void readAround(AudioFile& file, int64_t drawn) {
    constexpr int blockFrames = 512;
    const AudioFileFacts& facts = file.facts();
    require(facts.channels >= 1 && facts.channels <= 65536 && facts.frames >= 0, "facts within range");
    require(facts.sampleRate > 0, "a rate above 0");
    std::vector<std::vector<float>> buffer(size_t(facts.channels), std::vector<float>(blockFrames));
    std::vector<float*> planes;
    for (auto& plane : buffer) { planes.push_back(plane.data()); }
    const auto readAt = [&](int64_t position) {
        const int got = file.read(planes.data(), position, blockFrames);
        const int64_t left = position < 0 ? 0 : std::clamp<int64_t>(facts.frames - position, 0, blockFrames);
        require(got >= 0 && got <= left, "no more frames than asked and left");
    };
    for (int64_t at = 0; at < 8 * blockFrames; at += blockFrames) { readAt(at); }
    const int64_t end = facts.frames;
    for (const int64_t at : {end / 2, end - 10, int64_t(0), end - 1, end, drawn, int64_t(7), int64_t(-1)}) {
        readAt(at);
    }
}

// Writes the bytes to a file in `folder`, then probes and reads it as the system would. May fail only with an Error.
inline void probeBytes(const uint8_t* data, size_t size, const std::filesystem::path& folder) {
    const std::filesystem::path path = folder / ("input" + drawnExtension(data, size));
    writeInput(path, data, size);
    try {
        (void)AudioFileInfo::load(path).summary();
        const auto file = AudioFile::open(path);
        readAround(*file, drawnPosition(data, size, file->facts().frames));
    } catch (const Error& error) {
        require(std::string(error.what()).find('\n') == std::string::npos, "an error of one line");
    }
}

}  // namespace brindlehum::test
