// A length as one stretch of the piece: its end, or the head of a piece that fades out.
#pragma once

#include <optional>

#include "length_fit.h"
#include "length_request.h"

namespace brindlehum::TempEditPlanner {

// For a length that no path through the body reaches. None when the piece has no such stretch.
std::optional<EditPlan> inOnePiece(const LengthRequest& request, const PieceLines& piece, const LengthFit& fit);

}  // namespace brindlehum::TempEditPlanner
