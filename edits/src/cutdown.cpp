// Cutdown: chooses how many bars of the body fit, and which, and how to fill what they leave open; where no choice
// works, the end of the piece alone.
#include "cutdown.h"

#include <algorithm>
#include <cmath>

#include "one_piece.h"

namespace brindlehum::TempEditPlanner {
namespace {

constexpr int maxBarsOff = 3;  // a plan may be this many bars too short to avoid a poor jump
constexpr double costPerBarOff = 0.05;
constexpr double roundLengthBonus = 0.04;
constexpr double goodPath = 0.2;
constexpr double goodPathAfterIntro = 0.45;  // a composed intro is worth keeping at a higher cost
constexpr double missingJump = 0.5;          // cost of a join that the table lacks

double bodyBarSec(const PieceLines& piece) {
    const Pins& pins = piece.pins;
    if (pins.endingStart <= pins.introEnd) { return piece.nominalBarSec; }
    return (piece.seconds(pins.endingStart) - piece.seconds(pins.introEnd)) / (pins.endingStart - pins.introEnd);
}

// Every line between head and ending at which the edit could be filled.
std::vector<Join> joinsOf(const PathSearch::Path& path, const PieceLines& piece) {
    const Pins& pins = piece.pins;
    std::vector<Join> joins;
    int line = pins.introEnd;
    for (size_t i = 0; i < path.bars.size(); ++i) {
        const bool isFirst = i == 0 && piece.frame(pins.introEnd) <= piece.startFrame;
        joins.push_back({line, path.bars[i], i % PathSearch::phraseBars == 0, isFirst});
        line = path.bars[i] + 1;
    }
    if (!pins.loopFile && piece.frame(pins.endingStart) < piece.totalFrames) {
        joins.push_back({line, pins.endingStart, true});
    }
    return joins;
}

// Collects the bars of a path between head and ending, with contiguous ones joined, and the costs of its splices.
class SpanList {
public:
    SpanList(const PieceLines& piece, const JumpTable& jumps, const LengthFit& fit, std::optional<Filling> filling)
        : piece_(piece), jumps_(jumps), fit_(fit), filling_(filling) {
        spans.push_back({piece.startFrame, piece.frame(piece.pins.introEnd)});
    }
    void playBar(int bar) {
        enter(bar, piece_.frame(bar + 1));
        line_ = bar + 1;
    }
    void playEnding() {
        const Pins& pins = piece_.pins;
        const int64_t start = piece_.frame(pins.endingStart);
        if (pins.loopFile) {
            std::erase_if(spans, [start](const auto& span) { return span.start >= start; });
        } else {
            enter(pins.endingStart, piece_.totalFrames);
        }
        std::erase_if(spans, [](const auto& span) { return span.end <= span.start; });
    }

    std::vector<EditPlan::Span> spans;
    double worstSplice = 0;

private:
    // Plays the source from a line to a frame.
    void enter(int line, int64_t end) {
        const bool isFilled = filling_ && filling_->join == joins_;
        ++joins_;
        if (isFilled) {
            worstSplice = std::max(worstSplice, filling_->cost);
            const auto entry = fit_.entryTime(line, filling_->beats);
            const auto pause = int64_t(std::llround(filling_->pauseSec * piece_.rate));
            spans.push_back({entry ? piece_.frameAt(*entry) : piece_.frame(line), end, pause,
                             entry ? fit_.beatNumber(line, filling_->beats) : 1});
            return;
        }
        if (line != line_) { worstSplice = std::max(worstSplice, jumps_.cost(line_, line).value_or(missingJump)); }
        const int64_t start = piece_.frame(line);
        if (spans.back().end == start) {
            spans.back().end = end;
        } else {
            spans.push_back({start, end});
        }
    }
    const PieceLines& piece_;
    const JumpTable& jumps_;
    const LengthFit& fit_;
    const std::optional<Filling> filling_;
    size_t joins_ = 0;
    int line_ = piece_.pins.introEnd;
};

std::string mapOf(const std::vector<EditPlan::Span>& spans, const PieceLines& piece) {
    std::string out;
    for (const auto& span : spans) {
        if (!out.empty()) { out += span.pause > 0 ? " · " + pauseText(piece, span.pause) + " · " : " ↷ "; }
        const int first = span.beat == 1 ? piece.nearest(span.start) + 1 : piece.lineBefore(span.start) + 1;
        const int last = piece.nearest(span.end);
        out += entryText(piece, span);
        if (first < last) { out += "–" + std::to_string(last); }
        if (span.end == piece.totalFrames) { out += " + ring"; }
    }
    if (piece.pins.loopFile) { out += " · 1-bar fade out"; }
    return out;
}

// A loop file has no ending, so that its fade may end anywhere in a bar.
void trim(std::vector<EditPlan::Span>& spans, int64_t frames) {
    int64_t over = framesOf(spans) - frames;
    while (over > 0 && !spans.empty()) {
        auto& last = spans.back();
        const int64_t part = std::min(over, last.end - last.start);
        last.end -= part;
        over -= part;
        if (last.end == last.start) { spans.pop_back(); }
    }
}

// The cost of the path also rates its number of bars; the whole cost also what fills it.
struct Choice {
    std::vector<EditPlan::Span> spans;
    double worstSplice = 0;
    double pathCost = 0;
    double cost = 0;
};

class BodyCut {
public:
    // Plans whose path costs more than `limit` are poor.
    BodyCut(const LengthRequest& request, const PieceLines& piece, const JumpTable& jumps, const LengthFit& fit,
            double limit)
        : request_(request),
          piece_(piece),
          jumps_(jumps),
          fit_(fit),
          limit_(limit),
          isLoop_(piece.pins.loopFile),
          mustCut_(isLoop_ || request.kind == EditPlan::Kind::extended) {}

    // The best plan over `fitting` bars of the body, or a few fewer; of a loop file, which is trimmed, a few more.
    std::optional<Choice> best(PathSearch& search, double fitting) const {
        std::optional<Choice> best;
        if (isTrimmed() && fitting < 1) { return best; }
        for (int off = 0; off <= maxBarsOff; ++off) {
            const int count = isTrimmed() ? int(std::ceil(fitting)) + off : int(std::floor(fitting)) - off;
            if (count < 0) { break; }
            auto path = search.find(count, isLoop_);
            if (!path) { continue; }
            path->cost += costPerBarOff * off;
            if (count % PathSearch::phraseBars == 0) { path->cost -= roundLengthBonus; }
            Choice choice = along(*path);
            if (!isGood(choice)) { choice.cost += poorPath; }
            if (!best || choice.cost < best->cost) { best = std::move(choice); }
        }
        return best;
    }
    // A poor path is taken only where there is nothing better to take instead.
    bool isGood(const Choice& choice) const { return choice.pathCost <= limit_ || mustCut_; }

    EditPlan planOf(const Choice& choice) const {
        EditPlan plan = planFor(request_);
        plan.spans = choice.spans;
        plan.quality = std::max(0.0, 1 - choice.worstSplice);
        plan.map = mapOf(plan.spans, piece_);
        if (isLoop_) {
            plan.fadeOutFrames = int64_t(piece_.rate * bodyBarSec(piece_));
        } else {
            setLength(plan, request_, piece_.rate);
        }
        return plan;
    }

private:
    bool isTrimmed() const { return isLoop_ && request_.exactLength; }

    Choice played(const PathSearch::Path& path, std::optional<Filling> filling) const {
        SpanList list(piece_, jumps_, fit_, filling);
        for (const int bar : path.bars) { list.playBar(bar); }
        list.playEnding();
        return {std::move(list.spans), list.worstSplice, path.cost, path.cost};
    }

    Choice along(const PathSearch::Path& path) const {
        Choice plain = played(path, std::nullopt);
        if (isTrimmed()) { trim(plain.spans, int64_t(request_.seconds * piece_.rate)); }
        const double open = shortSec(request_, plain.spans, piece_.rate);
        if (!request_.exactLength || isLoop_ || open <= lengthTolerance) { return plain; }
        const auto filling = fit_.find(joinsOf(path, piece_), open);
        Choice choice = filling ? played(path, filling) : std::move(plain);
        choice.cost += filling ? filling->cost : missedLength;
        return choice;
    }

    static constexpr double missedLength = 1;  // any plan that has its length is better
    static constexpr double poorPath = 10;     // and any that has a good path

    const LengthRequest& request_;
    const PieceLines& piece_;
    const JumpTable& jumps_;
    const LengthFit& fit_;
    const double limit_;
    const bool isLoop_;
    const bool mustCut_;  // the alternatives in one piece are no such plans
};

}  // namespace

std::optional<EditPlan> cutdown(const LengthRequest& request, const PieceLines& piece, const JumpTable& jumps,
                                const LengthFit& fit, PathSearch& search) {
    const Pins& pins = piece.pins;
    const double introSec = piece.seconds(pins.introEnd) - pins.startTime;
    const double endingSec = piece.lastSec() - piece.seconds(pins.endingStart);
    const double barSec = bodyBarSec(piece);
    const double bodySec = request.seconds - introSec - endingSec - piece.tailSec();
    if (bodySec < 0) {
        if (pins.loopFile || piece.musicEnd() == 0) { return std::nullopt; }
        return inOnePiece(request, piece, fit);
    }
    const double fitting = std::clamp(bodySec / barSec, 0.0, double(PathSearch::maxEntries));
    const double limit = barSec < introSec && pins.introEnd != 0 ? goodPathAfterIntro : goodPath;
    const BodyCut cut(request, piece, jumps, fit, limit);
    const auto choice = cut.best(search, fitting);
    if (!choice || !cut.isGood(*choice)) { return pins.loopFile ? std::nullopt : inOnePiece(request, piece, fit); }
    if (choice->spans.empty()) { return std::nullopt; }
    return cut.planOf(*choice);
}

}  // namespace brindlehum::TempEditPlanner
