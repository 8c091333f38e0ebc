// One damaged or damaging file through probe, open, read and seek: shared by the fuzzer and the replay of its corpus.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "audio/audio_file.h"
#include "audio/audio_file_info.h"
#include "audio/error.h"

namespace brindlehum::test {

// The extension that the first byte suggests: names decide on descriptions, raw streams and Ambisonics.
inline const char* suggestedExtension(uint8_t first) {
    switch (first) {
        case 'R':
        case 'B':
            return ".wav";
        case 0xFF:
        case 'I':
            return ".mp3";
        case 'F':
            return ".aiff";
        case 'c':
            return ".caf";
        case 'r':
            return ".w64";
        case 'f':
            return ".flac";
        case 0:
            return ".m4a";
        default:
            return ".amb";
    }
}

// Ends the program when a promise of AudioFile is broken.
inline void require(bool kept, const char* promise) {
    if (kept) return;
    std::fprintf(stderr, "broken promise: %s\n", promise);
    std::abort();
}

inline void readAround(AudioFile& file) {
    constexpr int blockFrames = 512;
    const AudioFileFacts& facts = file.facts();
    require(facts.channels >= 1 && facts.channels <= 65536 && facts.frames >= 0, "facts within range");
    require(facts.sampleRate > 0, "a rate above 0");
    std::vector<std::vector<float>> buffer(size_t(facts.channels), std::vector<float>(blockFrames));
    std::vector<float*> planes;
    for (auto& plane : buffer) planes.push_back(plane.data());
    const auto readAt = [&](int64_t position) {
        const int got = file.read(planes.data(), position, blockFrames);
        const int64_t left = std::clamp<int64_t>(facts.frames - position, 0, blockFrames);
        require(got >= 0 && got <= left, "no more frames than asked and left");
    };
    for (int64_t at = 0; at < 8 * blockFrames; at += blockFrames) readAt(at);
    for (const int64_t at : {facts.frames / 2, facts.frames - 10, int64_t(0), facts.frames, int64_t(7)}) {
        if (at >= 0) readAt(at);
    }
}

// Writes the bytes to a file in `folder` and looks at it as the system would. Errors are fine; anything else isn't.
inline void probeBytes(const uint8_t* data, size_t size, const std::filesystem::path& folder) {
    const std::filesystem::path path = folder / (std::string("input") + suggestedExtension(size > 0 ? data[0] : 0));
    std::FILE* out = std::fopen(path.c_str(), "wb");
    require(out != nullptr && std::fwrite(data, 1, size, out) == size, "a temporary file");
    std::fclose(out);
    try {
        (void)AudioFileInfo::load(path).summary();
        readAround(*AudioFile::open(path));
    } catch (const Error& error) {
        require(std::string(error.what()).find('\n') == std::string::npos, "an error of one line");
    }
}

}  // namespace brindlehum::test
