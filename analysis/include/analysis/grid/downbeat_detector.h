// DownbeatDetector: how clearly a signal pulses at a known tempo, and where its groove starts. Stateless, any thread.
#pragma once

#include <span>

namespace brindlehum::DownbeatDetector {

struct Result {
    double confidence = 0;   // 0 to 1
    double grooveStart = 0;  // seconds, 0 if none was found
};
// From samples, or from their RMS in windows of two hops of `hopSeconds`, of about 5 ms.
Result detect(std::span<const float> mono, double sampleRate, double bpm, int beatsPerBar);
Result detectLevels(std::span<const float> levels, double hopSeconds, double bpm, int beatsPerBar);

}  // namespace brindlehum::DownbeatDetector
