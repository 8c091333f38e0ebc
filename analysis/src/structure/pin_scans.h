// The scans that place single pins. Each answers one question and has a stated fallback.
#pragma once

#include <optional>
#include <span>

#include "analysis/structure/structure.h"

namespace brindlehum::Structure {

// The input of all scans. The music stops at the boundary `end`.
struct Piece {
    explicit Piece(const SignalView& signal) : mono(signal) {}

    const SignalView& mono;
    double sr = 0;
    std::span<const double> bounds;
    double barSeconds = 0;
    BarProfile profile;
    SimilarityMatrix similarity;
    std::vector<double> novelty;
    Cooked cooked;
    int end = 0;

    int start() const { return profile.musicStartBar; }
    double active() const { return profile.activeLevel; }
    // The level of a bar; 0 for a bar that doesn't exist.
    double level(int bar) const {
        return bar >= 0 && bar < int(profile.rms.size()) ? double(profile.rms[size_t(bar)]) : 0;
    }
};

// Seconds of silence before the first bar of music.
std::optional<double> silentHead(const Piece& piece);
// The boundary in the first 16 bars where the music opens up most clearly.
std::optional<int> findIntroEnd(const Piece& piece);
// The boundary in the last 8 bars where the music turns to its end most clearly.
std::optional<int> findEndingStart(const Piece& piece, int introEnd);
// The boundary from which the level falls over 4 bars or more until the end, by 9 dB or more, while notes go on. The
// ring of a last chord is no fade.
std::optional<int> findFadeStart(const Piece& piece);
// Rates candidates that lie in the fade-out by the level that is left there, and sorts again.
void rateInFade(std::vector<LoopCandidate>& candidates, int fadeStart, const Piece& piece);
// True when the last 5 bars fall steadily by more than 9 dB.
bool fadesOut(const Piece& piece);
// The boundary up to `endingStart` from which a jump back to `introEnd` sounds best.
int findLoopEnd(const Piece& piece, int introEnd, int endingStart);
// True when the music runs to the end of the file, and its name or its edges show a loop.
bool isLoopFile(const Piece& piece, std::string_view name, bool finalHit);

}  // namespace brindlehum::Structure
