// Peak key: how well each key fits the pitches of a piece.
#pragma once

#include <array>
#include <span>

#include "analysis/spectrum/pitch_sums.h"

namespace brindlehum {

// The 24 keys: C major, C minor, C# major and so on.
using KeyScores = std::array<double, 24>;

// Up to 1.15 each; all 0 without a pitch.
KeyScores keyScores(std::span<const PitchSums> pitches);

// Cells by which the piece is tuned above A at 440 Hz, -5 to 5.
double tuningOf(std::span<const PitchSums> pitches);

// Pearson correlation of a profile (the tonic comes first) with the chroma turned down by `shift` classes; 0 where
// either is flat.
double correlate(std::span<const double, 12> chroma, std::span<const double, 12> profile, size_t shift);

}  // namespace brindlehum
