// Given bar: lays the bars of a grid anew, so that one starts where the user says.
#pragma once

#include "analysis/grid/music_grid.h"

namespace brindlehum::bars {

// How far from a bar line the user's word may be and still mean it, in beats.
inline constexpr double sameBeat = 0.15;

// The beat at `seconds` becomes a bar line; without one that near, all beats move until one is there. A grid without
// beats stays.
void startBarAt(MusicGrid& grid, double seconds);

}  // namespace brindlehum::bars
