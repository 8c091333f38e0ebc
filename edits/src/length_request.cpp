// LengthRequest: names, lengths and texts of its plans.
#include "length_request.h"

#include <algorithm>

#include "base/number_text.h"
#include "edits/temp_edit_planner.h"
#include "length_fit.h"

namespace brindlehum::TempEditPlanner {

std::string nameOf(const LengthRequest& request) {
    return label(request.seconds) + (request.kind == EditPlan::Kind::extended ? " extended" : "");
}

int64_t framesOf(const std::vector<EditPlan::Span>& spans) {
    int64_t frames = 0;
    for (const auto& span : spans) { frames += span.pause + span.end - span.start; }
    return frames;
}

double shortSec(const LengthRequest& request, const std::vector<EditPlan::Span>& spans, double rate) {
    return request.seconds - double(framesOf(spans)) / rate;
}

void setLength(EditPlan& plan, const LengthRequest& request, double rate) {
    if (!request.exactLength) { return; }
    const double open = shortSec(request, plan.spans, rate);
    // A pause that fills all of it may be off by a rounding.
    if (open * rate < -0.5) {
        plan.cutAtSec = request.seconds;
    } else if (open <= lengthTolerance) {
        plan.padFrames = std::max<int64_t>(int64_t(request.seconds * rate) - framesOf(plan.spans), 0);
    }
}

EditPlan planFor(const LengthRequest& request) {
    EditPlan plan;
    plan.name = nameOf(request);
    plan.kind = request.kind;
    plan.targetSec = request.seconds;
    return plan;
}

std::string entryText(const PieceLines& piece, const EditPlan::Span& span) {
    if (span.beat == 1) { return barText(piece.nearest(span.start) + 1); }
    return barText(piece.lineBefore(span.start) + 1) + "." + std::to_string(span.beat);
}

std::string pauseText(const PieceLines& piece, int64_t frames) {
    return fixed(double(frames) / piece.rate, 2) + " s pause";
}

}  // namespace brindlehum::TempEditPlanner
