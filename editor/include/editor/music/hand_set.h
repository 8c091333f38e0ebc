// HandSet: what the user has said of a piece's tempo and bars, and how it follows the edits.
#pragma once

#include <optional>
#include <span>

#include "editor/document/edit_commands.h"

namespace brindlehum {

struct HandSet {
    std::optional<double> bpm;
    std::optional<int> beatsPerBar;
    std::optional<double> downbeat;  // seconds: a bar starts here
    bool operator==(const HandSet&) const = default;
    bool isEmpty() const { return *this == HandSet(); }
};

// The same after an edit: the bar line moves with its sound. Where that was cut away, the next bar line behind the edit
// takes over, of `boundaries` in seconds before the edit; without one the bar line is found anew.
HandSet following(HandSet set, const EditStep::Moved& moved, std::span<const double> boundaries, double sampleRate);

}  // namespace brindlehum
