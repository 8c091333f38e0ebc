// TempEditPlanner: which bars of a piece, in which order, make a version of it. Stateless, callable on any thread.
//
// A version keeps the head up to the body and the ending unchanged; bars of the body fill the time between, with jumps
// only between bars that sound alike. Nothing is ever stretched.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "analysis/music_grid.h"
#include "analysis/structure.h"
#include "edits/edit_plan.h"

namespace brindlehum::TempEditPlanner {

// The name of a length: "15s", "1m00s", "2m05s".
std::string label(double seconds);

// All plans for a piece of `totalFrames` frames at `sampleRate` Hz, by the pins in `structure`: its sections first,
// then the lengths in the order of the options. A length that can't be reached is left out, and so is one whose name is
// taken already. Less than two bars, or an intro that ends after the ending starts: none.
std::vector<EditPlan> plans(const MusicGrid& grid, const StructureResult& structure, double sampleRate,
                            int64_t totalFrames, const TempEditOptions& options);

// The cost of a jump from one bar line to another. A bar line is the index of the bar that it starts.
struct JumpTable {
    // The similarities are borrowed.
    JumpTable(const SimilarityMatrix& similarity, const Pins& pins);

    const SimilarityMatrix& sim;
    Pins pins;
    double threshold =
        0.8;  // the least mean similarity that allows a jump: 0.8 or the body's 85th percentile, the larger

    // The difference of the bars that meet, 0 to 1 - threshold; none where they differ too much. The jump from the end
    // of the loop back to its start is always allowed, at 0.1 or less.
    std::optional<double> cost(int from, int to) const;
};

}  // namespace brindlehum::TempEditPlanner
