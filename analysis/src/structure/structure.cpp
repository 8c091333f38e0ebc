// Structure: derives pins, candidates and notes from the bars.
#include "analysis/structure/structure.h"

#include <algorithm>

#include "analysis/structure/text.h"
#include "dsp/signal.h"
#include "structure/pin_scans.h"
#include "structure/seam.h"

namespace brindlehum::Structure {
namespace {

Piece measure(const SignalView& x, double sr, const MusicGrid& grid, std::span<const double> bounds,
              const SpectralFrames& frames) {
    Piece piece(x);
    piece.sr = sr;
    piece.bounds = bounds;
    piece.barSeconds = 60 / grid.bpm * grid.beatsPerBar;
    piece.profile = profile(x, sr, bounds);
    piece.similarity = similarity(barFeatures(frames, bounds));
    piece.novelty = novelty(piece.similarity, piece.similarity.size > 15 ? 4 : 2);
    piece.cooked = cook(x, sr);
    piece.end = std::min(int(bounds.size()) - 1, std::max(piece.profile.musicEndBar, piece.start() + 1));
    return piece;
}

int placeIntroEnd(const Piece& piece, std::vector<std::string>& notes) {
    if (const auto found = findIntroEnd(piece)) { return *found; }
    notes.emplace_back("No distinct intro: edits start straight into the body");
    return piece.start();
}

int placeEndingStart(const Piece& piece, int introEnd, std::optional<int> hit, std::vector<std::string>& notes) {
    const auto place = [&] {
        if (const auto found = findEndingStart(piece, introEnd)) { return *found; }
        if (hit) {
            notes.emplace_back("Ending is a single final hit");
            return *hit;
        }
        notes.emplace_back("No distinct ending section: using the last 2 bars");
        return std::max(piece.end - 2, introEnd + 1);
    };
    return std::max(std::min(piece.end, place()), introEnd + 1);
}

Pins loopFilePins(int lastBoundary) {
    Pins pins;
    pins.loopEnd = pins.endingStart = pins.musicEnd = pins.finalHit = lastBoundary;
    pins.loopFile = true;
    return pins;
}

}  // namespace

StructureResult analyze(const SignalView& x, double sr, const MusicGrid& grid, const SpectralFrames& frames,
                        std::string_view name) {
    const std::vector<double> bounds = grid.boundaries();
    StructureResult out;
    if (bounds.size() < 2) {
        out.novelty.assign(1, 0.0);
        return out;
    }
    Piece piece = measure(x, sr, grid, bounds, frames);
    Pins& pins = out.pins;
    if (const auto head = silentHead(piece)) {
        pins.startTime = *head;
        out.notes.push_back("Skipped " + fixed(*head, 1) + " s of silent head");
    }
    pins.introEnd = pins.loopStart = placeIntroEnd(piece, out.notes);
    out.fadeStart = findFadeStart(piece);
    if (out.fadeStart && (*out.fadeStart <= pins.introEnd || *out.fadeStart >= piece.end)) { out.fadeStart.reset(); }
    const auto hit = out.fadeStart ? std::nullopt : finalHitBar(x, sr, bounds, piece.profile, grid.beatsPerBar);
    // A fade is the ending: what is left of the music further on is softer than the body.
    pins.endingStart = out.fadeStart ? *out.fadeStart : placeEndingStart(piece, pins.introEnd, hit, out.notes);
    if (out.fadeStart || fadesOut(piece)) { out.notes.emplace_back("Source ends on a fade-out"); }
    pins.loopEnd = findLoopEnd(piece, pins.introEnd, pins.endingStart);
    pins.musicEnd = piece.end;
    pins.finalHit = out.fadeStart ? pins.endingStart : hit.value_or(std::max(piece.end - 1, pins.endingStart));

    // Candidates rate the music as analysed, even if the whole file turns out to be a loop.
    out.loopCandidates = loopCandidates(x, sr, bounds, piece.profile, pins.introEnd);
    out.exitCandidates = exitCandidates(x, sr, bounds, piece.profile, grid.beatsPerBar);
    if (out.fadeStart) {
        rateInFade(out.loopCandidates, *out.fadeStart, piece);
        rateInFade(out.exitCandidates, *out.fadeStart, piece);
    }
    if (isLoopFile(piece, name, hit.has_value())) {
        pins = loopFilePins(int(bounds.size()) - 1);
        out.fadeStart.reset();
        out.notes = {"Seamless loop file: no composed ending, so cutdowns end with a 1-bar fade"};
    }
    std::vector<double> beats = grid.beats;
    beats.push_back(grid.duration);
    out.beatFeatures = barFeatures(frames, beats);
    out.profile = std::move(piece.profile);
    out.similarity = std::move(piece.similarity);
    out.novelty = std::move(piece.novelty);
    return out;
}

}  // namespace brindlehum::Structure
