// What an edit would sound like: the few seconds in which an ear can judge it.
#pragma once

#include <string>

#include "editor/document/edit_commands.h"
#include "editor/document/macros.h"

// Pure but for the noise of the halls; any thread. Empty where the edit would change nothing.
namespace brindlehum::EditPreview {

inline constexpr double seconds = 10;  // of the document, at most

// The head of the range.
Sound ofEffect(const EditState& state, double sampleRate, const std::string& effect, const EditOps::Lanes& lanes);
// The head of the range; the end of it for what happens there; for the seamless loop the four seconds on either side of
// its seam.
Sound ofMacro(const EditState& state, double sampleRate, Macro macro, const PinnedLoop& pinned);

}  // namespace brindlehum::EditPreview
