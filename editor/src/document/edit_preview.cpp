// Previews of effects and macros.
#include "editor/document/edit_preview.h"

#include <algorithm>

#include "dsp/edit_ops.h"

namespace brindlehum::EditPreview {
namespace {

constexpr double seamSeconds = 4;     // on either side
constexpr double textureSeconds = 3;  // which become eight times as long

FrameRange headOf(FrameRange range, double sampleRate, double most) {
    range.upper = std::min(range.upper, range.lower + int64_t(most * sampleRate));
    return range;
}

FrameRange tailOf(FrameRange range, double sampleRate) {
    range.lower = std::max(range.lower, range.upper - int64_t(seconds * sampleRate));
    return range;
}

FrameRange partFor(const EditState& state, double sampleRate, Macro macro) {
    switch (macro) {
        case Macro::topAndTails:
            return tailOf({0, state.sound.frames()}, sampleRate);
        case Macro::verbTail:
            return tailOf(state.range(), sampleRate);
        case Macro::texture:
            return headOf(state.range(), sampleRate, textureSeconds);
        default:
            return headOf(state.range(), sampleRate, seconds);
    }
}

Sound seamOf(const Sound& loop, double sampleRate) {
    const auto reach = std::min(int64_t(seamSeconds * sampleRate), loop.frames());
    const Sound end = EditOps::slice(loop, loop.frames() - reach, loop.frames());
    return EditOps::insert(end, reach, EditOps::slice(loop, 0, reach));
}

}  // namespace

Sound ofEffect(const EditState& state, double sampleRate, const std::string& effect, const EditOps::Lanes& lanes) {
    const FrameRange part = headOf(state.range(), sampleRate, seconds);
    const auto step = EditCommands::apply({state.sound, part, 0, {}}, sampleRate, effect, lanes);
    return step ? EditOps::slice(step->state.sound, part.lower, part.upper) : Sound();
}

Sound ofMacro(const EditState& state, double sampleRate, Macro macro, const PinnedLoop& pinned) {
    if (macro == Macro::seamlessLoop) {
        const auto step = run(macro, state, sampleRate, pinned);
        return step ? seamOf(step->state.sound, sampleRate) : Sound();
    }
    const FrameRange part = partFor(state, sampleRate, macro);
    const auto step =
        run(macro, {EditOps::slice(state.sound, part.lower, part.upper), std::nullopt, 0, {}}, sampleRate, {});
    return step ? step->state.sound : Sound();
}

}  // namespace brindlehum::EditPreview
