// DownbeatDetector: how clearly a signal pulses at a known tempo, and where its groove starts. Stateless, any thread.
#pragma once

#include <span>

namespace brindlehum::DownbeatDetector {

struct Result {
    double confidence = 0;   // 0 to 1
    double grooveStart = 0;  // seconds, 0 if none was found
};
Result detect(std::span<const float> mono, double sampleRate, double bpm, int beatsPerBar);

}  // namespace brindlehum::DownbeatDetector
