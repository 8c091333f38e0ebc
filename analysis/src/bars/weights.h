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
    {"beatLikeness", 3.33},
    {"lowOnBar", 2.863},
    {"lowOnMiddle", 0.7778},
    {"harmonyOnBar", 1.123},
    {"harmonyOnMiddle", 2.465},
    {"slowOnMiddle", -2.004},
    {"tempo", 0.9626},
    {"tempoSquared", -2.326},
    {"tempoInThree", 0.5254},
    {"secondPhase", -2.5},
    {"onsetOnBeats", 2.756},
    {"fourBars", 3.444},
    {"onsetOnThirds", -2.367},
    {"onsetOnQuarters", -2.569},
    {"startsOnBar", 2.689},
    {"accentOnBar", 1.054},
    {"onsetOnMiddle", -0.854},
}};

}  // namespace brindlehum::bars
