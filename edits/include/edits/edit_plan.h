// EditPlan: one version of a piece of music as a list of its bars. Plain values, no audio.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brindlehum {

struct EditPlan {
    enum class Kind {
        piece,     // an unchanged section of the source
        loop,      // a section meant to repeat
        cutdown,   // shortened to a length
        extended,  // lengthened to a length
        backtimed  // the end of the piece, started late enough to reach a length
    };
    // Frames of the source, the end exclusive.
    struct Span {
        int64_t start = 0;
        int64_t end = 0;
        int64_t pause = 0;  // frames of silence before it
        int beat = 1;       // of its bar on which it starts; 1 for a bar line
        bool operator==(const Span&) const = default;
    };

    std::string name;  // unique within one list of plans; part of the file's name
    Kind kind = Kind::piece;
    std::vector<Span> spans;          // in playing order
    std::optional<double> targetSec;  // the length asked for, seconds
    std::optional<double> cutAtSec;   // the render is faded out and cut at this length, seconds
    int64_t fadeInFrames = 0;         // at the output's start; 0 for none
    int64_t fadeOutFrames = 0;
    std::string map;             // for the user, in bar numbers from 1
    double quality = 1;          // 0 to 1: how well the worst splice matches; 1 without a splice
    bool carryLoopTail = false;  // the loop's ring-out is added to its start
    int64_t padFrames = 0;       // of silence behind the sound, up to the length asked for
};

// "piece", "loop", "cutdown", "extended", "backtimed".
std::string_view rawValue(EditPlan::Kind kind);
std::optional<EditPlan::Kind> editPlanKind(std::string_view raw);

// The user's choices for a batch of plans.
struct TempEditOptions {
    std::vector<double> targets = {15, 30, 60, 120};  // seconds
    std::optional<double> extended = 180;             // seconds
    bool exactLength = true;
    double crossfadeMs = 30;
};

}  // namespace brindlehum
