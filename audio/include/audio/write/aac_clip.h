// AacClip: a stretch of a sound as an M4A file in memory (AAC-LC, ISO/IEC 14496-3), for a service that takes one.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace brindlehum {

class SampleSource;

namespace AacClip {

inline constexpr double longest = 170;        // seconds; of a longer stretch its last ones
inline constexpr int bitsPerSecond = 192000;  // slow rates allow less: 12 bits a frame of both channels

struct Range {
    int64_t start = 0;  // frames
    int64_t end = 0;
};
// What is encoded of a stretch.
Range taken(int64_t start, int64_t end, double sampleRate);

// Two channels: the first, and the second or the first again; further ones are left out. The rate stays where AAC has
// it, else the clip has 48 kHz. The file states the encoder's delay, so that the clip starts at its first frame.
// `isStopped` is asked between blocks of 32768 frames; once it returns true, the result is empty. Throws Error
// clipFormat when no encoder takes the form, and the source's Error. Any thread.
std::string encode(SampleSource& samples, int64_t start, int64_t end, const std::function<bool()>& isStopped = {});

}  // namespace AacClip
}  // namespace brindlehum
