// Evidence: plain numbers that speak for or against one hypothesis about the bars.
#pragma once

#include <array>
#include <span>
#include <vector>

#include "bars/pulse.h"
#include "bars/segment_means.h"

namespace brindlehum::bars {

// In the order of the weights in weights.h.
enum Evidence : size_t {
    beatLikeness,     // likeness of the onset envelope to itself a beat later
    twoBeatLikeness,  // the same two beats later
    lowBarLikeness,   // likeness of the low onset envelope to itself a bar later
    lowOnBar,         // low level in the first half of the beat on the bar line; by place in the bar, standardised
    lowOnMiddle,      // the same on the third beat of four
    harmonyOnBar,     // change of harmony at the bar line, over a beat to either side
    harmonyOnMiddle,  // the same on the third beat of four
    slowOnMiddle,     // the same over two beats to either side
    tempo,            // octaves above 115 BPM
    tempoSquared,
    tempoInThree,     // `tempo` where a bar has three beats
    secondPhase,      // 1 when another phase of the pulse is stronger
    onsetOnBeats,     // log of the mean onset on beats over the envelope's mean
    fourBars,         // likeness of bars four apart, less the mean of two and three apart; 0 below seven bars
    onsetOnThirds,    // onset at thirds of a beat, over that on beats
    onsetOnQuarters,  // the same at quarters
    startsOnBar,      // 1 when the first attack lies on a bar line, within 15 % of a beat
    accentOnBar,      // low onset on the bar line; by place in the bar, standardised
    onsetOnMiddle,    // full onset on the third beat of four
    evidenceCount
};
using EvidenceRow = std::array<double, evidenceCount>;

// What is read; it borrows the envelopes.
struct Sound {
    std::span<const float> full, low;  // onset envelopes
    double fullMean = 0;
    SegmentMeans<12> chroma;
    SegmentMeans<1> lowLevel;
    MusicSpan music;
};
Sound soundOf(std::span<const float> full, std::span<const float> low, const HarmonyFrames& harmony, double duration);

// Bars of `beatsPerBar` on a pulse, the first bar line among its beats with music at from + `place`.
struct Hypothesis {
    size_t pulse = 0;  // index
    int beatsPerBar = 4;
    int place = 0;  // below beatsPerBar
    EvidenceRow evidence{};
};
// One for every meter in `meters` and every place of its bar line that has one in the piece.
std::vector<Hypothesis> hypotheses(const Pulse& pulse, size_t index, const Sound& sound, std::span<const int> meters);

// 1 less the cosine between the means of the `reach` seconds before and after `t`, each 30 ms away from it; 0 where
// either is silent or too short.
double novelty(const SegmentMeans<12>& chroma, double t, double reach);

}  // namespace brindlehum::bars
