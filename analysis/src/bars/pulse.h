// Pulse: one series of beats that the music may have, before bars are laid on it.
#pragma once

#include <span>
#include <vector>

#include "bars/beat_bases.h"

namespace brindlehum::bars {

struct Pulse {
    std::vector<double> beats;  // seconds, from 60 ms before the start to 50 ms before the end
    double period = 0;          // seconds
    double attackShift = 0;     // seconds from the envelope's peaks to the beats
    size_t from = 0, to = 0;    // beats [from, to) lie where there is music; at least 8
    double strength = 0;        // mean onset on the beats
    bool second = false;        // another phase of the same period is stronger
    size_t base = 0;            // index of its base
};

struct MusicSpan {
    double first = 0, last = 0;  // seconds, the first and the last attack
    double duration = 0;         // seconds
};

// The pulses whose periods are simple ratios to that of `base`, from 45 to 230 BPM (or that of the base alone, when
// `onlyItsOwn`), each in the best phase and in the best other one that is at least a fifth of a beat away and half as
// strong.
std::vector<Pulse> pulses(const BeatBase& base, size_t index, std::span<const float> env, const MusicSpan& music,
                          bool onlyItsOwn);

}  // namespace brindlehum::bars
