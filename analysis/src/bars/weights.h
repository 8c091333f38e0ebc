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
    {"beatLikeness", 2.884}, {"twoBeatLikeness", 1.449}, {"lowBarLikeness", 4.039},  {"lowOnBar", 1.555},
    {"lowOnMiddle", 0.4119}, {"harmonyOnBar", 1.421},    {"harmonyOnMiddle", 3.117}, {"slowOnMiddle", -2.184},
    {"tempo", 1.153},        {"tempoSquared", -2.407},   {"tempoInThree", 0.7658},   {"secondPhase", -2.173},
    {"onsetOnBeats", 2.339}, {"fourBars", 2.679},        {"onsetOnThirds", -2.68},   {"onsetOnQuarters", -3.409},
    {"startsOnBar", 2.057},  {"accentOnBar", 0.6196},    {"onsetOnMiddle", -1.235},
}};

}  // namespace brindlehum::bars
