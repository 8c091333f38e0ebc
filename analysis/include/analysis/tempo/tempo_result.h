// TempoResult: the tempo, beats and meter of a piece.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace brindlehum {

struct TempoResult {
    struct Candidate {
        double bpm = 0;
        double score = 0;   // harmonic score at the integer lag, up to 1
        double ranked = 0;  // score weighted by nearness to the centre tempo
    };
    struct MapPoint {
        double t = 0;  // seconds, the centre of the window
        double bpm = 0;
    };
    // A tempo at a simple ratio to the chosen one.
    struct Alternative {
        double bpm = 0;        // to two decimals
        std::string relation;  // "÷2 half-time"
        double score = 0;      // score of the candidate at that tempo, 0 without one
    };
    struct Meter {
        std::string label = "?";
        int group = 4;        // beats per bar
        double contrast = 0;  // in standard deviations of the accents, to two decimals
        std::string confidence = "weak — ambiguous";
        int downbeatOffset = 0;  // index of the first downbeat in `beats`, less than `group`
    };

    double durationSec = 0;
    double bpm = 0;
    double score = 0;
    std::optional<double> twin;  // BPM of a second reading that is almost as good
    std::vector<Candidate> candidates;
    std::vector<Alternative> alternatives;
    std::vector<MapPoint> tempoMap;
    std::string drift;  // "STEADY", "BREATHING" or "RUBATO"
    double driftSpreadPct = 0;
    std::vector<double> beats;  // seconds, ascending
    double snappedPct = 0;      // share of the beats on a peak of the envelope
    Meter meter;
    double firstDownbeat = 0;  // seconds
    // Onset envelopes, 0 to 1, OnsetTime::frameRate entries per second: of the whole spectrum and of that below 250 Hz.
    std::vector<float> envFull;
    std::vector<float> envLow;
};

}  // namespace brindlehum
