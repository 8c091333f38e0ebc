// Edits in one piece: the end, backtimed; the head, faded.
#include "one_piece.h"

#include <algorithm>
#include <cmath>

#include "path_search.h"

namespace brindlehum::TempEditPlanner {
namespace {

constexpr double backtimedFadeInSec = 0.01;

// The end of the piece from a line on, without its bars being cut anywhere.
std::vector<Join> joinsFrom(int line, const PieceLines& piece) {
    std::vector<Join> joins;
    for (int at = line + 1; at < std::min(piece.count() - 1, piece.musicEnd()); ++at) {
        joins.push_back({at, at, (at - piece.pins.endingStart) % PathSearch::phraseBars == 0});
    }
    return joins;
}

// Starts earlier, on a beat; where beats are too slow for the length, pauses, too.
void fillBacktimed(EditPlan& plan, int line, double open, const PieceLines& piece, const LengthFit& fit) {
    auto& spans = plan.spans;
    const int beats = fit.beatsWithin(line, open);
    if (const auto time = fit.entryTime(line, beats)) {
        spans[0] = {piece.frameAt(*time), piece.totalFrames, 0, fit.beatNumber(line, beats)};
        open -= fit.beatsSec(line, beats);
    }
    if (open <= lengthTolerance) { return; }
    const auto joins = joinsFrom(line, piece);
    const auto filling = fit.find(joins, open);
    if (!filling || filling->beats > 0) { return; }
    const int64_t at = piece.frame(joins[filling->join].to);
    spans[0].end = at;
    spans.push_back({at, piece.totalFrames, int64_t(std::llround(filling->pauseSec * piece.rate))});
    plan.quality = 1 - filling->cost;
}

std::optional<EditPlan> backtimed(const LengthRequest& request, const PieceLines& piece, const LengthFit& fit) {
    const int end = piece.musicEnd();
    const double reach = request.seconds - piece.tailSec() + 0.001;
    for (int line = 0; line < std::min(piece.count(), end); ++line) {
        if (piece.lastSec() - piece.seconds(line) > reach) { continue; }
        EditPlan plan = planFor(request);
        plan.kind = EditPlan::Kind::backtimed;
        plan.spans = {{piece.frame(line), piece.totalFrames}};
        const double open = shortSec(request, plan.spans, piece.rate);
        if (request.exactLength && open > lengthTolerance) { fillBacktimed(plan, line, open, piece, fit); }
        setLength(plan, request, piece.rate);
        plan.fadeInFrames = int64_t(backtimedFadeInSec * piece.rate);
        const EditPlan::Span& first = plan.spans.front();
        plan.map = "Backtimed: " + entryText(piece, first) + "–" + barText(end) + " + ring-out (starts on " +
                   (first.beat == 1 ? "a downbeat)" : "beat " + std::to_string(first.beat) + ")");
        if (plan.spans.size() > 1) {
            plan.map += " · " + pauseText(piece, plan.spans[1].pause) + " before " + entryText(piece, plan.spans[1]);
        }
        return plan;
    }
    return std::nullopt;
}

// The head of a piece that fades out, faded at the wanted length: the end of such a piece, taken alone, is hardly
// heard. Starts at the body where the intro would take more than half. None where the piece fades too early.
std::optional<EditPlan> headAlone(const LengthRequest& request, const PieceLines& piece) {
    const Pins& pins = piece.pins;
    const bool longIntro = 2 * (piece.seconds(pins.introEnd) - pins.startTime) > request.seconds;
    const int first = longIntro ? pins.introEnd : 0;
    const int64_t start = longIntro ? piece.frame(first) : piece.startFrame;
    int line = first + 1;
    while (line < *piece.fadeStart && double(piece.frame(line) - start) < request.seconds * piece.rate) { ++line; }
    if (double(piece.frame(line) - start) < request.seconds * piece.rate) { return std::nullopt; }
    EditPlan plan = planFor(request);
    plan.spans = {{start, piece.frame(line)}};
    setLength(plan, request, piece.rate);
    if (!plan.cutAtSec) { plan.fadeOutFrames = piece.frame(line) - piece.frame(line - 1); }
    plan.map = barText(piece.nearest(start) + 1) + "–" + std::to_string(line) +
               " · faded out, as the source ends on a fade-out";
    return plan;
}

}  // namespace

std::optional<EditPlan> inOnePiece(const LengthRequest& request, const PieceLines& piece, const LengthFit& fit) {
    if (piece.fadeStart && request.kind == EditPlan::Kind::cutdown) {
        if (auto plan = headAlone(request, piece)) { return plan; }
    }
    return backtimed(request, piece, fit);
}

}  // namespace brindlehum::TempEditPlanner
