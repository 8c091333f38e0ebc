// LiveLoudness: the loudness by ITU-R BS.1770-4 of a signal that goes on for hours.
#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "analysis/loudness/loudness.h"

namespace brindlehum {

// One thread at a time. Its memory doesn't grow.
class LiveLoudness {
public:
    struct Reading {
        double momentary = LoudnessResult::floor;   // LUFS, of the last 400 ms
        double shortTerm = LoudnessResult::floor;   // LUFS, of the last 3 s, or of what there is
        double integrated = LoudnessResult::floor;  // LUFS, gated, since the start or the last reset
        double seconds = 0;                         // that the integrated value covers
        // K-weighted mean squares of the channels over the last 3 s, without channel weights.
        std::vector<double> powers;
        bool operator==(const Reading&) const = default;
    };

    LiveLoudness();
    ~LiveLoudness();
    LiveLoudness(const LiveLoudness&) = delete;
    LiveLoudness& operator=(const LiveLoudness&) = delete;

    // The format of what is pushed from now on: rate in Hz, above 0. What has been integrated stays.
    void open(double sampleRate, const SpeakerList& speakers);
    // One plane per speaker. Samples that aren't usable numbers count as silence.
    void push(const float* const* planes, int frames);
    // Begins the integrated value anew.
    void reset();
    Reading reading() const;

private:
    struct Parts;
    std::unique_ptr<Parts> parts_;
};

}  // namespace brindlehum
