// WavForm: the shape of a WAV file, and what it says beside its samples.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace brindlehum {

enum class WavSamples : uint8_t {
    pcm24,          // 24-bit integers of equal size for +1 and -1: x 8388607
    pcm24Lossless,  // at the scale at which integers are read, x 8388608: those of up to 24 bits come out as they went
                    // in
    float32,        // as they are, beyond full scale too
};
constexpr int bytesOf(WavSamples samples) {
    return samples == WavSamples::float32 ? 4 : 3;
}

// A cue point (Multimedia Programming Interface and Data Specifications 1.0) with what belongs to it.
struct WavCue {
    uint32_t name = 0;      // unique in its file
    int64_t frame = 0;      // points beyond 32 bits aren't written
    int64_t length = 0;     // frames of the region that begins there; 0 without one
    std::string entries{};  // its labels, notes and regions: whole chunks of an `adtl` list
    bool operator==(const WavCue&) const = default;
};

// The fields of `bext` (EBU Tech 3285), in UTF-8 and each cut to its length, and further chunks.
struct WavNotes {
    std::string description = {};  // 256 bytes
    std::string originator = "Brindlehum";
    std::string originatorReference = {};
    std::string date = {};                       // "yyyy-mm-dd"; empty: today, in local time
    std::string time = {};                       // "hh:mm:ss"; empty: now
    std::optional<uint64_t> timeReference = {};  // frames from midnight to the first one; written as 0 if unknown
    std::string codingHistory = {};
    std::string chunks = {};  // whole chunks with their heads and padding, to stand before the samples
    std::vector<WavCue> cues = {};
    bool operator==(const WavNotes&) const = default;
};

struct WavForm {
    double sampleRate = 0;  // Hz, stored as the nearest integer
    int channels = 0;
    uint32_t mask = 0;  // dwChannelMask
    WavSamples samples = WavSamples::pcm24;
    WavNotes notes;
};

}  // namespace brindlehum
