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
    {"beatLikeness", 3.306},
    {"lowOnBar", 2.908},
    {"lowOnMiddle", 0.8313},
    {"harmonyOnBar", 1.117},
    {"harmonyOnMiddle", 2.329},
    {"slowOnMiddle", -2.019},
    {"tempo", 0.9672},
    {"tempoSquared", -2.353},
    {"tempoInThree", 0.4438},
    {"secondPhase", -2.534},
    {"onsetOnBeats", 2.758},
    {"fourBars", 3.431},
    {"onsetOnThirds", -2.419},
    {"onsetOnQuarters", -2.804},
    {"startsOnBar", 2.784},
    {"accentOnBar", 1.12},
    {"onsetOnMiddle", -0.9186},
}};

}  // namespace brindlehum::bars
