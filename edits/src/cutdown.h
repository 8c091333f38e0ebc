// Cutdown: one version of a piece at a requested length.
#pragma once

#include <optional>

#include "path_search.h"
#include "piece_lines.h"

namespace brindlehum::TempEditPlanner {

struct LengthRequest {
    double seconds = 0;
    EditPlan::Kind kind = EditPlan::Kind::cutdown;  // or extended
    bool exactLength = true;
};

std::string nameOf(const LengthRequest& request);

// Head, a path through the body, ending; or, where no path is good enough, the end of the piece alone. `search` must
// run from the end of the intro to the start of the ending. None when the length can't be reached.
std::optional<EditPlan> cutdown(const LengthRequest& request, const PieceLines& piece, const JumpTable& jumps,
                                PathSearch& search);

}  // namespace brindlehum::TempEditPlanner
