// The editor's seven macros: their table, and what each makes of a document.
#pragma once

#include <array>
#include <optional>

#include "editor/document/edit_commands.h"

namespace brindlehum {

enum class Macro { topAndTails, verbTail, seamlessLoop, hiPass, texture, mono, swap };

struct MacroInfo {
    Macro macro;
    const char* id;  // the stable key
    const char* title;
    const char* tip;
    const char* status;   // while it works
    bool isQuick = true;  // false: takes a second or more, whatever the range
};
// In the order of menus.
std::span<const MacroInfo> macros();

// The loop that the pins mark, for the seamless loop without a selection.
struct PinnedLoop {
    std::optional<FrameRange> range;
    bool carryTail = true;  // nothing of the music lies behind it
};

// Pure; any thread. The halls are made from `random`. None for a loop that is too short, where there is no sound, and
// when `progress` has returned false.
std::optional<EditStep> run(Macro macro, const EditState& state, double sampleRate, const PinnedLoop& pinned,
                            EditOps::RandomEngine random = EditOps::systemSeeded(),
                            const EditOps::Progress& progress = {});
inline constexpr const char* tooShortToLoop = "Selection is too short to loop";

}  // namespace brindlehum
