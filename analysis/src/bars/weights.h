// Weights: how much each piece of evidence counts.
#pragma once

#include "bars/evidence.h"

namespace brindlehum::bars {

struct Weight {
    const char* name;
    double perUnit;  // multiplies the evidence as it is
};

// Fitted by bench/analysis/fit_bars.py to the accompaniments of docs/decisions/0030-bars-weighed-together.md.
inline constexpr std::array<Weight, evidenceCount> weights = {{
    {"beatLikeness", 2.427},
    {"lowOnBar", 1.576},
    {"lowOnMiddle", 1.122},
    {"harmonyOnBar", 1.823},
    {"harmonyOnMiddle", 0.4339},
    {"slowOnMiddle", -2.944},
    {"tempo", 0.6695},
    {"tempoSquared", -1.226},
    {"tempoInThree", 0.9501},
    {"secondPhase", -1.358},
    {"onsetOnBeats", 1.78},
    {"fourBars", 3.165},
    {"onsetOnThirds", -1.781},
    {"onsetOnQuarters", -2.04},
    {"startsOnBar", 1.682},
    {"accentOnBar", 0.8189},
    {"onsetOnMiddle", -0.9532},
}};

}  // namespace brindlehum::bars
