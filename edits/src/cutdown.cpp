// Cutdown: chooses how many bars of the body fit, and which; where no choice works, the end of the piece alone.
#include "cutdown.h"

namespace brindlehum::TempEditPlanner {
namespace {

constexpr int maxBarsShort = 3;  // a plan may be this many bars too short to avoid a poor jump
constexpr double costPerBarShort = 0.05;
constexpr double roundLengthBonus = 0.04;
constexpr double goodPath = 0.2;
constexpr double goodPathAfterIntro = 0.45;  // a composed intro is worth keeping at a higher cost
constexpr double missingJump = 0.5;          // cost of a join that the table lacks
constexpr double backtimedFadeInSec = 0.01;

double secondsOf(const std::vector<EditPlan::Span>& spans, double rate) {
    int64_t frames = 0;
    for (const auto& span : spans) { frames += span.end - span.start; }
    return double(frames) / rate;
}

// The exact length, when the spans are longer than that.
std::optional<double> cutOf(const LengthRequest& request, const EditPlan& plan, double rate) {
    if (!request.exactLength || request.seconds >= secondsOf(plan.spans, rate)) { return std::nullopt; }
    return request.seconds;
}

std::optional<EditPlan> backtimed(const LengthRequest& request, const PieceLines& piece) {
    const int end = piece.musicEnd();
    const double reach = request.seconds - piece.tailSec() + 0.001;
    for (int line = 0; line < std::min(piece.count(), end); ++line) {
        if (piece.lastSec() - piece.seconds(line) > reach) { continue; }
        EditPlan plan;
        plan.name = nameOf(request);
        plan.kind = EditPlan::Kind::backtimed;
        plan.spans = {{piece.frame(line), piece.totalFrames}};
        plan.targetSec = request.seconds;
        plan.cutAtSec = cutOf(request, plan, piece.rate);
        plan.fadeInFrames = int64_t(backtimedFadeInSec * piece.rate);
        plan.map = "Backtimed: " + barText(line + 1) + "–" + barText(end) + " + ring-out (starts on a downbeat)";
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
    EditPlan plan;
    plan.name = nameOf(request);
    plan.kind = request.kind;
    plan.spans = {{start, piece.frame(line)}};
    plan.targetSec = request.seconds;
    plan.cutAtSec = cutOf(request, plan, piece.rate);
    if (!plan.cutAtSec) { plan.fadeOutFrames = piece.frame(line) - piece.frame(line - 1); }
    plan.map = barText(piece.nearest(start) + 1) + "–" + std::to_string(line) +
               " · faded out, as the source ends on a fade-out";
    return plan;
}

// Without a path through the body.
std::optional<EditPlan> inOnePiece(const LengthRequest& request, const PieceLines& piece) {
    if (piece.fadeStart && request.kind == EditPlan::Kind::cutdown) {
        if (auto plan = headAlone(request, piece)) { return plan; }
    }
    return backtimed(request, piece);
}

double bodyBarSec(const PieceLines& piece) {
    const Pins& pins = piece.pins;
    if (pins.endingStart <= pins.introEnd) { return piece.nominalBarSec; }
    return (piece.seconds(pins.endingStart) - piece.seconds(pins.introEnd)) / (pins.endingStart - pins.introEnd);
}

// The path of `most` bars, or of up to three fewer, with the lowest cost, which also rates its length.
std::optional<PathSearch::Path> bestPath(PathSearch& search, int most, bool anyEnd) {
    std::optional<PathSearch::Path> best;
    for (int count = most; count >= std::max(most - maxBarsShort, 0); --count) {
        auto path = search.find(count, anyEnd);
        if (!path) { continue; }
        path->cost += costPerBarShort * (most - count);
        if (count % PathSearch::phraseBars == 0) { path->cost -= roundLengthBonus; }
        if (!best || path->cost < best->cost) { best = std::move(path); }
    }
    return best;
}

// Collects the bars of a path between head and ending, with contiguous ones joined, and the costs of its splices.
class SpanList {
public:
    SpanList(const PieceLines& piece, const JumpTable& jumps) : piece_(piece), jumps_(jumps) {
        add(piece.startFrame, piece.frame(piece.pins.introEnd));
    }
    void playBar(int bar) {
        extendOrAdd(piece_.frame(bar), piece_.frame(bar + 1));
        goTo(bar);
        line_ = bar + 1;
    }
    void playEnding() {
        const Pins& pins = piece_.pins;
        if (!pins.loopFile) { goTo(pins.endingStart); }
        const int64_t start = piece_.frame(pins.endingStart);
        extendOrAdd(start, piece_.totalFrames);
        std::erase_if(spans, [](const auto& span) { return span.end <= span.start; });
        if (pins.loopFile) {
            std::erase_if(spans, [start](const auto& span) { return span.start >= start; });
        }
    }

    std::vector<EditPlan::Span> spans;
    double worstSplice = 0;

private:
    void add(int64_t start, int64_t end) { spans.push_back({start, end}); }
    void extendOrAdd(int64_t start, int64_t end) {
        if (spans.back().end == start) {
            spans.back().end = end;
        } else {
            add(start, end);
        }
    }
    void goTo(int line) {
        if (line != line_) { worstSplice = std::max(worstSplice, jumps_.cost(line_, line).value_or(missingJump)); }
    }
    const PieceLines& piece_;
    const JumpTable& jumps_;
    int line_ = piece_.pins.introEnd;
};

std::string mapOf(const std::vector<EditPlan::Span>& spans, const PieceLines& piece) {
    std::string out;
    for (const auto& span : spans) {
        if (!out.empty()) { out += " ↷ "; }
        const int first = piece.nearest(span.start) + 1;
        const int last = piece.nearest(span.end);
        out += barText(first);
        if (first < last) { out += "–" + std::to_string(last); }
        if (span.end == piece.totalFrames) { out += " + ring"; }
    }
    if (piece.pins.loopFile) { out += " · 1-bar fade out"; }
    return out;
}

}  // namespace

std::string nameOf(const LengthRequest& request) {
    return label(request.seconds) + (request.kind == EditPlan::Kind::extended ? " extended" : "");
}

std::optional<EditPlan> cutdown(const LengthRequest& request, const PieceLines& piece, const JumpTable& jumps,
                                PathSearch& search) {
    const Pins& pins = piece.pins;
    const double introSec = piece.seconds(pins.introEnd) - pins.startTime;
    const double endingSec = piece.lastSec() - piece.seconds(pins.endingStart);
    const double barSec = bodyBarSec(piece);
    const double bodySec = request.seconds - introSec - endingSec - piece.tailSec();
    if (bodySec < 0) {
        if (pins.loopFile || piece.musicEnd() == 0) { return std::nullopt; }
        return inOnePiece(request, piece);
    }
    const double fitting = std::floor(bodySec / barSec);
    const int most = fitting >= 0 ? int(std::min(fitting, double(PathSearch::maxEntries))) : 0;
    const auto path = bestPath(search, most, pins.loopFile);
    if (!path) { return pins.loopFile ? std::nullopt : inOnePiece(request, piece); }
    const double limit = barSec < introSec && pins.introEnd != 0 ? goodPathAfterIntro : goodPath;
    if (path->cost > limit && request.kind != EditPlan::Kind::extended && !pins.loopFile) {
        return inOnePiece(request, piece);
    }

    SpanList played(piece, jumps);
    for (const int bar : path->bars) { played.playBar(bar); }
    played.playEnding();
    if (played.spans.empty()) { return std::nullopt; }

    EditPlan plan;
    plan.name = nameOf(request);
    plan.kind = request.kind;
    plan.spans = std::move(played.spans);
    plan.targetSec = request.seconds;
    if (pins.loopFile) {
        plan.fadeOutFrames = int64_t(piece.rate * barSec);
    } else {
        plan.cutAtSec = cutOf(request, plan, piece.rate);
    }
    plan.map = mapOf(plan.spans, piece);
    plan.quality = std::max(0.0, 1 - played.worstSplice);
    return plan;
}

}  // namespace brindlehum::TempEditPlanner
