// BarLines: weighs the evidence for every tempo ratio, meter and place of the bar line together. Stateless, any thread.
#pragma once

#include "analysis/bars/given_bars.h"
#include "analysis/grid/grid_builder.h"
#include "analysis/grid/music_grid.h"
#include "analysis/spectrum/harmony_frames.h"
#include "analysis/tempo/tempo_result.h"

namespace brindlehum::BarLines {

using Given = GivenBars;

// The most likely grid; `firstGuess` is what GridBuilder made of the same signal, and stands where the music is too
// short to weigh. `downbeatConfidence` is the likelihood of the bar lines, 0 to 1; 1 where a downbeat is given.
MusicGrid choose(const MusicGrid& firstGuess, const TempoResult& tempo, const GridBuilder::PulseLevels& levels,
                 const HarmonyFrames& harmony, const Given& given = {});

}  // namespace brindlehum::BarLines
