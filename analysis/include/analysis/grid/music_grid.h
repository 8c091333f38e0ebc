// MusicGrid: the lattice of bars and beats that all later stages use.
#pragma once

#include <vector>

namespace brindlehum {

struct MusicGrid {
    double bpm = 0;  // on a steady grid: fitted to the whole file
    int beatsPerBar = 4;
    bool steady = false;            // `beats` is an exact lattice
    std::vector<double> beats;      // seconds, ascending
    std::vector<double> downbeats;  // seconds, ascending
    double duration = 0;            // seconds
    // How likely the bar lines are right, 0 to 1. As GridBuilder leaves it: how clearly the music pulses.
    double downbeatConfidence = 0;
    double grooveStart = 0;  // seconds, 0 if none was found
    double attackShift = 0;  // seconds that a steady grid was moved to meet the attacks

    // The bar lines: bar i spans boundaries[i] to boundaries[i + 1]. They are the downbeats, plus the end of the piece
    // when more than 1 ms follows the last downbeat.
    std::vector<double> boundaries() const;

    // Surfaces and sheets then say so, since edits stand on the bar lines.
    bool barLinesUncertain() const { return downbeatConfidence < 0.6; }
};

}  // namespace brindlehum
