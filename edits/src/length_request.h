// LengthRequest: a length that is asked for, and what all plans for one have in common.
#pragma once

#include <string>
#include <vector>

#include "edits/edit_plan.h"
#include "piece_lines.h"

namespace brindlehum::TempEditPlanner {

struct LengthRequest {
    double seconds = 0;
    EditPlan::Kind kind = EditPlan::Kind::cutdown;  // or extended
    bool exactLength = true;
};

std::string nameOf(const LengthRequest& request);
// A plan with the name, the kind and the length.
EditPlan planFor(const LengthRequest& request);

// Of the output, with pauses.
int64_t framesOf(const std::vector<EditPlan::Span>& spans);
double shortSec(const LengthRequest& request, const std::vector<EditPlan::Span>& spans, double rate);
// With an exact length: cuts what is longer, and adds a little silence to what is nearly as long.
void setLength(EditPlan& plan, const LengthRequest& request, double rate);

// "b12", or "b12.3" for its third beat.
std::string entryText(const PieceLines& piece, const EditPlan::Span& span);
// "1.20 s pause".
std::string pauseText(const PieceLines& piece, int64_t frames);

}  // namespace brindlehum::TempEditPlanner
