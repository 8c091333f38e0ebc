// A song in whole bars of known place, at 120 BPM: intro, verses and choruses, an ending with a final hit, its
// ring-out.
#pragma once

#include <cmath>
#include <vector>

#include "support/music.h"
#include "support/signals.h"

namespace brindlehum::test {

inline constexpr double songRate = 44100;  // Hz
inline constexpr double barFrames = 2 * songRate;

// Intro 4 bars, verse 8, chorus 8, verse 8, chorus 8, verse 8, ending 4; mono at songRate, with noise under it, so
// that no two places are equal. The first bar line is at `pickup` seconds.
inline std::vector<float> song(double pickup = 0) {
    constexpr int bars = 48;
    std::vector<float> x = noise(size_t((pickup + 2.5) * songRate + bars * barFrames), 21);
    for (float& sample : x) { sample *= 0.0005F; }
    for (int bar = 0; bar < bars; ++bar) {
        const auto tone = [&](double beat, double hz, double gain, double decaySeconds) {
            addTone(x, pickup + 2 * bar + beat / 2, hz, gain, decaySeconds, 0, songRate);
        };
        const bool intro = bar < 4;
        const bool ending = bar >= 44;
        const bool chorus = !intro && !ending && (bar - 4) / 8 % 2 == 1;
        const double level = intro ? 0.25 : chorus ? 0.7 : 0.5;
        static constexpr int verseRoots[] = {45, 50, 52, 45};
        static constexpr int chorusRoots[] = {48, 53, 55, 43};
        const auto inPhrase = size_t(bar) % 4;
        const int root = ending ? 45 : chorus ? chorusRoots[inPhrase] : verseRoots[inPhrase];
        if (bar == bars - 1) {  // a hit that dies away
            tone(0, 55, 0.5, 0.3);
            tone(0, 220, 0.2, 0.3);
            tone(0, 1900, 0.2, 0.02);
            continue;
        }
        tone(0, 60, 0.5 * level, 0.08);
        if (!intro) { tone(2, 900, 0.3 * level, 0.04); }
        for (int beat = 0; beat < 4; ++beat) {
            tone(beat, 2500, 0.3 * level, 0.02);
            for (const int note : {0, bar % 2 == 0 ? 3 : 4, 7}) {
                tone(beat, 440 * std::exp2((root + 12 + note - 69) / 12.0), 0.08 * level, 0.25);
            }
        }
    }
    return x;
}

}  // namespace brindlehum::test
