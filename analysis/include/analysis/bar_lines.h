// BarLines: weighs the evidence for every tempo ratio, meter and place of the bar line together. Stateless, any thread.
#pragma once

#include <optional>

#include "analysis/grid_builder.h"
#include "analysis/harmony_frames.h"
#include "analysis/music_grid.h"
#include "analysis/tempo_result.h"

namespace brindlehum::BarLines {

// The user's own values.
struct Given {
    std::optional<double> bpm;                      // above 0
    std::optional<int> beatsPerBar;                 // 1 or more
    std::optional<double> downbeat = std::nullopt;  // seconds: a bar starts here
};

// The most likely grid; `firstGuess` is what GridBuilder made of the same signal, and stands where the music is too
// short to weigh. `downbeatConfidence` is the likelihood of the bar lines, 0 to 1; 1 where a downbeat is given.
MusicGrid choose(const MusicGrid& firstGuess, const TempoResult& tempo, const GridBuilder::PulseLevels& levels,
                 const HarmonyFrames& harmony, const Given& given = {});

}  // namespace brindlehum::BarLines
