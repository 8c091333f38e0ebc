// TempEditPlanner: the whole list of plans for a piece, sections first, then lengths.
#include <algorithm>
#include <cmath>

#include "cutdown.h"

namespace brindlehum::TempEditPlanner {
namespace {

constexpr double shortestIntroSec = 0.25;
constexpr double pickupSec = 0.05;          // a first downbeat later than this follows an upbeat
constexpr double shortestToExtendSec = 30;  // seconds of music

void addSection(std::vector<EditPlan>& out, const char* name, EditPlan::Kind kind, EditPlan::Span span, std::string map,
                bool carryLoopTail = false) {
    if (span.end <= span.start) { return; }
    EditPlan plan;
    plan.name = name;
    plan.kind = kind;
    plan.spans = {span};
    plan.map = std::move(map);
    plan.carryLoopTail = carryLoopTail;
    out.push_back(std::move(plan));
}

void addSections(std::vector<EditPlan>& out, const PieceLines& piece) {
    using Kind = EditPlan::Kind;
    const Pins& pins = piece.pins;
    const int64_t introEnd = piece.frame(pins.introEnd);
    if (introEnd - piece.startFrame > int64_t(shortestIntroSec * piece.rate)) {
        const bool pickup = piece.firstDownbeat - pins.startTime > pickupSec;
        addSection(out, "Intro", Kind::piece, {piece.startFrame, introEnd},
                   std::string("Intro ") + (pickup ? "pickup + " : "") + "b1–" + barText(pins.introEnd) +
                       " · cut on the downbeat of " + barText(pins.introEnd + 1));
    }
    if (pins.loopStart < pins.loopEnd) {
        addSection(out, "Loop", Kind::loop, {piece.frame(pins.loopStart), piece.frame(pins.loopEnd)},
                   "Loop " + barText(pins.loopStart + 1) + "–" + barText(pins.loopEnd) + " (" +
                       std::to_string(pins.loopEnd - pins.loopStart) + " bars), wraps seamlessly",
                   pins.loopEnd >= pins.musicEnd);
    }
    addSection(out, "Ending", Kind::piece, {piece.frame(pins.endingStart), piece.totalFrames},
               "Ending " + barText(pins.endingStart + 1) + "–" +
                   barText(std::max(pins.endingStart, pins.musicEnd - 1) + 1) +
                   (piece.fadeStart ? " · fades out" : " + ring-out"));
    if (pins.endingStart < pins.finalHit && pins.finalHit < piece.count() - 1) {
        addSection(out, "Sting", Kind::piece, {piece.frame(pins.finalHit), piece.totalFrames},
                   "Sting: final hit at " + barText(pins.finalHit + 1) + " + ring-out");
    }
}

// Leaves out cutdowns to a length clearly longer than the piece, and extensions to a length near its own.
std::vector<LengthRequest> requestsFor(const PieceLines& piece, const TempEditOptions& options) {
    const double seconds = double(piece.totalFrames - piece.startFrame) / piece.rate;
    std::vector<LengthRequest> out;
    for (const double target : options.targets) {
        if (target <= seconds + 0.5 * piece.nominalBarSec) {
            out.push_back({target, EditPlan::Kind::cutdown, options.exactLength});
        }
    }
    if (options.extended && std::isfinite(*options.extended) && seconds >= shortestToExtendSec &&
        seconds < *options.extended - piece.nominalBarSec) {
        out.push_back({*options.extended, EditPlan::Kind::extended, options.exactLength});
    }
    return out;
}

}  // namespace

std::string label(double seconds) {
    const auto whole = std::llround(seconds);
    if (whole < 60) { return std::to_string(whole) + "s"; }
    const std::string rest = std::to_string(whole % 60);
    return std::to_string(whole / 60) + "m" + (rest.size() < 2 ? "0" : "") + rest + "s";
}

std::vector<EditPlan> plans(const MusicGrid& grid, const StructureResult& structure, double sampleRate,
                            int64_t totalFrames, const TempEditOptions& options) {
    const PieceLines piece(grid, structure.pins, structure.fadeStart, sampleRate, totalFrames);
    const Pins& pins = piece.pins;
    std::vector<EditPlan> out;
    if (piece.count() < 3 || pins.introEnd > pins.endingStart) { return out; }
    if (pins.loopFile) {
        addSection(out, "Loop", EditPlan::Kind::loop, {0, totalFrames},
                   "The whole file (" + std::to_string(piece.count() - 1) + " bars), wrap guarded");
    } else {
        addSections(out, piece);
    }
    const JumpTable jumps(structure.similarity, pins);
    const LengthFit fit(piece, grid, structure, jumps);
    PathSearch search(jumps, pins.introEnd, pins.endingStart);
    for (const LengthRequest& request : requestsFor(piece, options)) {
        const auto named = [&request](const EditPlan& plan) { return plan.targetSec && plan.name == nameOf(request); };
        if (std::ranges::any_of(out, named)) { continue; }
        if (auto plan = cutdown(request, piece, jumps, fit, search)) { out.push_back(std::move(*plan)); }
    }
    return out;
}

}  // namespace brindlehum::TempEditPlanner
