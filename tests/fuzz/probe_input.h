// One damaged or damaging file through probe, open, read and seek: shared by the fuzzer and the replay of its corpus.
#pragma once

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "audio/decode/audio_file.h"
#include "audio/probe/audio_file_info.h"
#include "base/error.h"
#include "fuzz/require.h"
#include "support/audio_files.h"

namespace brindlehum::test {

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
// The content draws any audio extension, since names decide on descriptions, raw streams and Ambisonics: its last byte,
// so that seeds stay unchanged files. Its middle draws a place in the piece, or one step outside of it.
inline void probeBytes(const std::string& bytes, const std::filesystem::path& folder) {
    const auto& extensions = AudioFileInfo::audioExtensions;
    std::string name = "input.";
    name += extensions[bytes.empty() ? 0 : uint8_t(bytes.back()) % extensions.size()];
    uint64_t drawn = 0;
    for (const char c : bytes.substr(bytes.size() / 2, 8)) { drawn = drawn << 8 | uint8_t(c); }
    writeBytes(folder / name, bytes);
    try {
        (void)AudioFileInfo::load(folder / name).summary();
        const auto file = AudioFile::open(folder / name);
        readAround(*file, int64_t(drawn % (uint64_t(file->facts().frames) + 3)) - 1);
    } catch (const Error& error) {
        require(std::string(error.what()).find('\n') == std::string::npos, "an error of one line");
    }
}

}  // namespace brindlehum::test
