// How the bars that a user has given follow the edits of the sound.
#pragma once

#include <span>

#include "analysis/bars/given_bars.h"
#include "editor/document/edit_commands.h"

namespace brindlehum {

// The same after an edit: the bar line moves with its sound. Where that was cut away, the next bar line behind the edit
// takes over, of `boundaries` in seconds before the edit; without one the bar line is found anew.
GivenBars following(GivenBars given, const EditStep::Moved& moved, std::span<const double> boundaries,
                    double sampleRate);

}  // namespace brindlehum
