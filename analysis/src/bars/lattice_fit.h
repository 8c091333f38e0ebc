// Lattice fit: whether a whole piece keeps one tempo, and the straight line through its onsets.
#pragma once

#include <span>

#include "bars/envelope.h"

namespace brindlehum::bars {

struct LatticeFit {
    double period = 0;     // seconds
    double phase = 0;      // seconds, from 0 to below the period
    double agreement = 0;  // share of the windows of about 12 s that follow the line, 0 to 1
    bool strong = false;   // the line collects half as much again as the envelope's mean
};
// The line within 0.6 % of `bpm` (above 0), in the envelope's time. Nothing under 8 s agrees.
LatticeFit fitLattice(std::span<const float> env, std::span<const Peak> peaks, double bpm);

}  // namespace brindlehum::bars
