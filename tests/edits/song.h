// Song: music in whole bars of known place, at 120 BPM, with an intro, verses and choruses, an ending and its ring-out.
#pragma once

#include <cmath>
#include <numbers>
#include <vector>

#include "support/signals.h"

namespace brindlehum::test {

struct Song {
    static constexpr double rate = 44100;
    static constexpr int64_t barFrames = 88200;
    // Intro 4, verse 8, chorus 8, verse 8, chorus 8, verse 8, ending 4 with a final hit.
    static constexpr int bars = 48;
    std::vector<std::vector<float>> channels;

    // With `pickup` seconds before the first bar line.
    explicit Song(double pickup = 0) : start(int64_t(pickup * rate)) {
        const auto frames = size_t(start + bars * barFrames + int64_t(2.5 * rate));
        channels = {noise(frames, 21), noise(frames, 22)};
        for (auto& x : channels) {
            for (float& sample : x) { sample *= 0.0005F; }
        }
        for (int bar = 0; bar < bars; ++bar) { addBar(bar); }
    }
    int64_t line(int bar) const { return start + bar * barFrames; }

private:
    int64_t start;

    void addBar(int bar) {
        const bool intro = bar < 4;
        const bool ending = bar >= 44;
        const bool chorus = !intro && !ending && (bar - 4) / 8 % 2 == 1;
        const double level = intro ? 0.25 : chorus ? 0.7 : 0.5;
        static constexpr int verseRoots[] = {45, 50, 52, 45};
        static constexpr int chorusRoots[] = {48, 53, 55, 43};
        const int root = ending ? 45 : (chorus ? chorusRoots : verseRoots)[bar % 4];
        if (bar == bars - 1) {  // a hit that dies away
            addTone(line(bar), 55, 0.5, 0.3);
            addTone(line(bar), 220, 0.2, 0.3);
            addTone(line(bar), 1900, 0.2, 0.02);
            return;
        }
        for (int beat = 0; beat < 4; ++beat) {
            const int64_t at = line(bar) + beat * barFrames / 4;
            addTone(at, 2500, 0.3 * level, 0.02);
            if (beat == 0) { addTone(at, 60, 0.5 * level, 0.08); }
            if (beat == 2 && !intro) { addTone(at, 900, 0.3 * level, 0.04); }
            for (const int note : {0, bar % 2 == 0 ? 3 : 4, 7}) {
                addTone(at, 440 * std::exp2((root + 12 + note - 69) / 12.0), 0.08 * level, 0.25);
            }
        }
    }
    void addTone(int64_t from, double hz, double gain, double decaySeconds) {
        const auto end = std::min(from + int64_t(decaySeconds * 8 * rate), int64_t(channels[0].size()));
        for (int64_t i = from; i < end; ++i) {
            const double t = double(i - from) / rate;
            const double x = gain * std::exp(-t / decaySeconds) * std::sin(2 * std::numbers::pi * hz * t);
            channels[0][size_t(i)] += float(x);
            channels[1][size_t(i)] += float(0.8 * x);
        }
    }
};

}  // namespace brindlehum::test
