// OnsetTime: the time base that all onset envelopes share.
#pragma once

namespace brindlehum::OnsetTime {

inline constexpr int frameSize = 1024;  // samples at 22 050 Hz
inline constexpr int hop = 256;
inline constexpr double frameRate = 22050.0 / hop;  // envelope entries per second

// Frames of one beat at `bpm`, and the tempo of a lag of `frames`: both are the same quotient.
inline constexpr double framesPerMinute = 60 * frameRate;
constexpr double period(double bpm) {
    return framesPerMinute / bpm;
}
constexpr double tempo(double frames) {
    return framesPerMinute / frames;
}

}  // namespace brindlehum::OnsetTime
