// The parts that both planners share: one side's ambience row, and the curves, turns and delays that finish a plan.
#pragma once

#include <vector>

#include "room.h"
#include "upmix/upmix_plan.h"

namespace brindlehum::UpmixPlanner {

// One side of a pair: its own speaker, the speakers that its ambience fills, and what each gives back to the side in
// the fold-down (N values).
struct Side {
    int own;
    std::vector<int> fills;  // ascending, without silenced ones
    std::vector<double> fold;
};

// N gains of a side's ambience. At strength 0 all of it stays on its own speaker; at 1 `frontAmbience` of its energy
// does, and the fills share the rest by their levels. An exact plan's fills fold down to a fixed part of the ambience,
// and the own speaker gets 0 here: the processor subtracts.
std::vector<float> ambienceRow(const Side& side, const Room& room, const UpmixParams& params);

// 0 to 1.
double strengthOf(const UpmixParams& params);
// The weight of ambience in the split.
float kappaOf(const UpmixParams& params);

// What the last steps must know of each output.
struct Roles {
    std::vector<bool> owned;         // plays a part of the source itself
    std::vector<bool> ambienceOnly;  // plays nothing direct
};

// Fills in curve, decorRe, decorIm and delay.
void finish(UpmixPlan& plan, const Room& room, const Roles& roles, const UpmixParams& params,
            const UpmixTransform& transform);

UpmixPlan stereoPlan(const UpmixRequest& request, const UpmixTransform& transform);
UpmixPlan layoutPlan(const UpmixRequest& request, const UpmixTransform& transform);

// The gains that fold `from` down to `to`: a row per speaker of `to`.
std::vector<std::vector<double>> foldDown(const SpeakerList& from, const SpeakerList& to);

// Appends as floats.
void append(std::vector<float>& list, const std::vector<double>& values);

}  // namespace brindlehum::UpmixPlanner
