// AudioFile: reads any audio file as planar float, with sample-accurate position and length.
//
// libsndfile reads the PCM family and FLAC, the FFmpeg libraries read the rest; the content decides, not the name. A
// seek is exact to the sample. Encoder delay and padding are cut off where the file states them (Xing header, edit
// list, gapless record, packet table). Raw AAC and MP3 without a Xing header don't state them, so everything decoded is
// kept: the piece starts late by its encoder's delay (usually 1024 and 1105 frames), and opening reads all of the
// file's packets once to find the length.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>

#include "audio/speakers/channel_layout.h"

namespace brindlehum {

// Four characters as a big-endian number: fourCC("lpcm").
constexpr uint32_t fourCC(const char (&text)[5]) {
    return (uint32_t(uint8_t(text[0])) << 24) | (uint32_t(uint8_t(text[1])) << 16) | (uint32_t(uint8_t(text[2])) << 8) |
           uint32_t(uint8_t(text[3]));
}

// The facts that the container and its codec state, before any interpretation.
struct AudioFileFacts {
    uint32_t formatID = 0;  // 'lpcm', '.mp3', 'aac ', 'alac', 'flac', 'opus', another codec's or '????'
    double sampleRate = 0;  // Hz
    int channels = 0;
    int64_t frames = 0;  // exact, without delay and padding
    int bitDepth = 0;    // of the stored samples; 0 for compressed formats (including ALAC and FLAC)
    bool isFloat = false;
    std::optional<ChannelLayout> layout;
};

// One open file, for one thread at a time; blocking I/O.
class AudioFile {
public:
    virtual ~AudioFile() = default;

    // Throws Error with a one-line text when the path isn't a regular, readable audio file with 1 channel or more and a
    // rate above 0. Never crashes or hangs on damaged data. `stop`, if any, is called on the reading thread before each
    // read; once it returns true, every read fails, which abandons a long opening or seek.
    static std::unique_ptr<AudioFile> open(const std::filesystem::path& path, const std::function<bool()>& stop = {});

    const AudioFileFacts& facts() const { return facts_; }

    // Reads up to `frames` frames from `position` into `planes` (one pointer per channel, facts().channels of them).
    // Returns the count read: fewer than `frames` only at the end or where the data breaks off, 0 at or past the end.
    // Throws Error on a read error. Consecutive reads don't allocate in the steady state.
    virtual int read(float* const* planes, int64_t position, int frames) = 0;

protected:
    AudioFileFacts facts_;
};

}  // namespace brindlehum
