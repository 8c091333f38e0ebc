// TempoAnalyzer: tempo, beats and meter of the working signal (mono, 22 050 Hz). Stateless, any thread.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

#include "analysis/tempo/tempo_result.h"

namespace brindlehum::TempoAnalyzer {

// Whether a result shows a pulse at all: beats enough to speak of a period, and a score above what speech, noise and
// single hits reach in the same time, which falls with the square root of the duration.
bool hasPulse(const TempoResult& tempo);

// The range of tempi in BPM that is searched unless a caller widens it.
inline constexpr double slowest = 30;
inline constexpr double fastest = 240;

struct Envelopes {
    std::vector<float> full, low;
};

// None when no tempo can be found: the signal is too short or has no candidate. `hint` (BPM) narrows `range` around it
// and favours tempi near it. A flat envelope, such as silence, returns a result with score 0.
std::optional<TempoResult> analyze(std::span<const float> mono22k, std::optional<double> hint = std::nullopt,
                                   std::optional<std::pair<double, double>> range = std::nullopt);
// The same from the envelopes of a signal of `durationSec` seconds.
std::optional<TempoResult> analyze(Envelopes envelopes, double durationSec, std::optional<double> hint = std::nullopt,
                                   std::optional<std::pair<double, double>> range = std::nullopt);

// Log-spectral flux, smoothed, largest value 1; both are empty under 1792 samples.
Envelopes envelopes(std::span<const float> mono22k);

// At most 12 peaks of the envelope's periodicity between `lo` and `hi` BPM, best first. Of equal peaks the one nearer
// to the tempo `center` (BPM, 120 if none) ranks higher.
std::vector<TempoResult::Candidate> candidates(std::span<const float> env, double lo, double hi,
                                               std::optional<double> center);

struct MapScore {
    double t = 0;  // seconds, the centre of the window
    double bpm = 0;
    double score = 0;
};
// The best tempo near `bpm` in windows of `winSec` seconds, `hopSec` apart. Flat windows add no point.
std::vector<MapScore> tempoMap(std::span<const float> env, double bpm, double winSec, double hopSec);

struct Tracked {
    std::vector<double> beats;  // seconds, ascending
    double snapped = 0;         // share of the beats that moved to a peak, 0 to 1
};
// Follows the peaks of the envelope at the map's tempo, or at `bpm` when the map has fewer than 2 points.
Tracked trackBeats(std::span<const float> env, std::span<const MapScore> map, double bpm);

// The grouping of beats with the strongest contrast between its downbeats and the rest.
TempoResult::Meter meter(std::span<const double> beats, std::span<const float> low, std::span<const float> full);

// The accent of each beat, 0.65 low + 0.35 full at the beat's frame; none for empty envelopes.
std::vector<double> accents(std::span<const double> beats, std::span<const float> low, std::span<const float> full);

}  // namespace brindlehum::TempoAnalyzer
