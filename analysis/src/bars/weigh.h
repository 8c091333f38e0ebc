// Weigh: lays out every hypothesis about the bars of a piece, with its evidence.
#pragma once

#include <optional>
#include <vector>

#include "analysis/grid/grid_builder.h"
#include "analysis/tempo/tempo_result.h"
#include "bars/evidence.h"

namespace brindlehum::bars {

struct Weighed {
    std::vector<BeatBase> bases;
    std::vector<Pulse> pulses;
    std::vector<Hypothesis> hypotheses;
};
// `bpm` and `beatsPerBar` are the user's own values, which every hypothesis then has.
Weighed weigh(const TempoResult& tempo, const Sound& sound, const GridBuilder::PulseLevels& levels,
              std::optional<double> bpm, std::optional<int> beatsPerBar);

// The times of all bar lines of a hypothesis, seconds.
std::vector<double> barLines(const Pulse& pulse, const Hypothesis& hypothesis);

}  // namespace brindlehum::bars
