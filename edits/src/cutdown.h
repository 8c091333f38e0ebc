// Cutdown: one version of a piece at a requested length.
#pragma once

#include <optional>

#include "length_fit.h"
#include "length_request.h"
#include "path_search.h"
#include "piece_lines.h"

namespace brindlehum::TempEditPlanner {

// Head, a path through the body, ending; or, where no path is good enough, the end of the piece alone. `search` must
// run from the end of the intro to the start of the ending. With an exact length, an entry on another beat or a pause
// fills what whole bars leave open. None when the length can't be reached.
std::optional<EditPlan> cutdown(const LengthRequest& request, const PieceLines& piece, const JumpTable& jumps,
                                const LengthFit& fit, PathSearch& search);

}  // namespace brindlehum::TempEditPlanner
