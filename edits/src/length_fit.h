// LengthFit: fills what whole bars leave open of a length, by an entry on another beat or by a pause on a bar line.
#pragma once

#include <algorithm>
#include <cstddef>
#include <optional>
#include <span>
#include <vector>

#include "edits/temp_edit_planner.h"
#include "piece_lines.h"

namespace brindlehum::TempEditPlanner {

// A bar line of the edit: the source is left at line `from` and entered at line `to`.
struct Join {
    int from = 0;
    int to = 0;
    bool isPhrase = false;  // a breath is expected here: between phrases, or before the ending
    bool isFirst = false;   // nothing sounds before it
};

// An edit may end this much before its length, in seconds.
inline constexpr double lengthTolerance = 0.5;

struct Filling {
    size_t join = 0;      // where it is
    int beats = 0;        // the entry is this many beats before the line `to`
    double pauseSec = 0;  // silence before the entry
    double cost = 0;      // 0 to 1, on the scale of JumpTable's
};

// Compares the beats that meet at an entry as JumpTable compares bars, and rates a pause by the level at which it cuts
// the music off. Both cost something beyond that: an entry makes a short bar, a pause holds the pulse. Borrows all
// arguments.
class LengthFit {
public:
    LengthFit(const PieceLines& piece, const MusicGrid& grid, const StructureResult& structure, const JumpTable& jumps);

    // The best filling that brings an edit with these joins from `shortSec` seconds short to within the tolerance. The
    // earliest of equally good ones. None if no place is good enough.
    std::optional<Filling> find(std::span<const Join> joins, double shortSec) const;

    // The time of the entry, some beats before a line, if those beats belong to one bar.
    std::optional<double> entryTime(int line, int beats) const;
    // The number of that beat in its bar, from 1.
    int beatNumber(int line, int beats) const;
    // The beats before a line that leave the least of `shortSec` open.
    int beatsWithin(int line, double shortSec) const;
    // How long some beats before a line last; 0 if they don't belong to one bar.
    double beatsSec(int line, int beats) const;

private:
    std::optional<double> entryCost(const Join& join, int beats) const;
    double pauseCost(const Join& join) const;
    int beatOf(int line) const { return beatOfLine_[size_t(std::clamp(line, 0, piece_.count() - 1))]; }

    const PieceLines& piece_;
    const MusicGrid& grid_;
    const StructureResult& structure_;
    const JumpTable& jumps_;
    std::vector<int> beatOfLine_;  // -1 where the grid has no beat
};

}  // namespace brindlehum::TempEditPlanner
