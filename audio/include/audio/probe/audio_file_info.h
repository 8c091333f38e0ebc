// AudioFileInfo: the facts of an audio file and the meaning of its channels; `load` is the program's only probe.
#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "audio/speakers/source_format.h"

namespace brindlehum {

struct AudioFileInfo {
    std::filesystem::path url;
    double sampleRate = 0;  // Hz
    int channels = 0;
    int64_t frames = 0;
    int bitDepth = 0;  // 0 for compressed formats
    bool isFloat = false;
    std::string codec;             // "PCM", "MP3", "AAC", "ALAC", "FLAC", "Vorbis", "Opus" or "Compressed"
    std::vector<uint32_t> labels;  // channel labels, may be empty
    SourceFormat detected = SourceFormat::discrete(0);
    std::optional<std::string> bextDescription;

    bool operator==(const AudioFileInfo&) const = default;

    // The extensions of files that count as audio, lower case, without the dot.
    static constexpr std::array<std::string_view, 18> audioExtensions = {"wav", "wave", "bwf", "aif", "aiff", "aifc",
                                                                         "caf", "mp3",  "m4a", "aac", "flac", "amb",
                                                                         "w64", "rf64", "mp4", "ogg", "oga",  "opus"};
    static bool isAudioPath(const std::filesystem::path& path);

    // Blocking I/O on the caller's thread; `stop` as for AudioFile::open. Throws Error when the file can't be opened.
    static AudioFileInfo load(const std::filesystem::path& url, const std::function<bool()>& stop = {});

    // "48 kHz · 24-bit · 6 ch".
    std::string summary() const;
};

}  // namespace brindlehum
