// TempEditPlanner: decides which bars of a piece, in which order, make a version of it. Stateless, any thread.
//
// A version keeps the head up to the body and the ending unchanged. Bars of the body fill the time between, with jumps
// only between bars that sound alike. Nothing is ever stretched.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "analysis/grid/music_grid.h"
#include "analysis/structure/structure.h"
#include "edits/edit_plan.h"

namespace brindlehum::TempEditPlanner {

// The label of a length: "15s", "1m00s", "2m05s".
std::string label(double seconds);

// All plans for a piece of `totalFrames` frames at `sampleRate` Hz, by the pins in `structure`: its sections first,
// then the lengths in the order of the options. Leaves out a length that can't be reached or whose name is already
// used. None for less than two bars, or when the intro ends after the ending starts.
std::vector<EditPlan> plans(const MusicGrid& grid, const StructureResult& structure, double sampleRate,
                            int64_t totalFrames, const TempEditOptions& options);

// The cost of a jump between two bar lines. A bar line is the index of the bar that starts there.
struct JumpTable {
    // The similarities are borrowed.
    JumpTable(const SimilarityMatrix& similarity, const Pins& pins);

    const SimilarityMatrix& sim;
    Pins pins;
    double threshold =
        0.8;  // the least mean similarity that allows a jump: 0.8 or the body's 85th percentile, the larger

    // How much the bars that meet differ, 0 to 1 - threshold; none where they differ too much. The jump from the loop's
    // end back to its start is always allowed, at a cost of 0.1 or less.
    std::optional<double> cost(int from, int to) const;
};

}  // namespace brindlehum::TempEditPlanner
