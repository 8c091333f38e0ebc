// MusicGrid: the lattice of bars and beats that all later analysis uses.
#pragma once

#include <vector>

namespace brindlehum {

struct MusicGrid {
    double bpm = 0;  // of a steady grid: fitted to the whole file
    int beatsPerBar = 4;
    bool steady = false;            // `beats` is an exact lattice
    std::vector<double> beats;      // seconds, ascending
    std::vector<double> downbeats;  // seconds, ascending
    double duration = 0;            // seconds
    double downbeatConfidence = 0;  // 0 to 1: how clearly the music pulses
    double grooveStart = 0;         // seconds, 0 if none was found
    double attackShift = 0;         // seconds by which a steady grid was moved onto the attacks

    // The bar lines: bar i spans boundaries[i] to boundaries[i + 1]. The downbeats, and the end where a tail of more
    // than 1 ms follows the last of them.
    std::vector<double> boundaries() const;
};

}  // namespace brindlehum
