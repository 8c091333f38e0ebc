// Beat bases: the beats, at the attacks, on which all hypotheses are laid out.
#pragma once

#include <optional>
#include <span>
#include <vector>

#include "analysis/grid/grid_builder.h"
#include "analysis/tempo/tempo_result.h"

namespace brindlehum::bars {

struct BeatBase {
    std::vector<double> beats;  // seconds, ascending, at least 8
    double period = 0;          // seconds, the median
    bool steady = false;        // `beats` is an exact lattice
    double attackShift = 0;     // seconds from the envelope's peaks to the attacks
};

// Up to three steady bases whose tempi aren't simple ratios of each other; one that follows the envelope when nothing
// is steady; none without beats. `bpm` is the user's tempo.
std::vector<BeatBase> beatBases(const TempoResult& tempo, const GridBuilder::PulseLevels& levels, double duration,
                                std::optional<double> bpm);

}  // namespace brindlehum::bars
