// The macros on documents.
#include "editor/document/macros.h"

#include <algorithm>

namespace brindlehum {
namespace {

constexpr std::array table = {
    MacroInfo{Macro::topAndTails, "Top & Tails", EditOps::topAndTailsDescription, "Fading the ends…"},
    MacroInfo{Macro::verbTail, "Verb Tail", EditOps::verbTailDescription, "Ringing it out…", false},
    MacroInfo{Macro::seamlessLoop, "Seamless Loop", EditOps::seamlessLoopDescription, "Closing the loop…"},
    MacroInfo{Macro::hiPass, "Hi-Pass 200", "Takes out what lies below 200 Hz: rumble, wind, handling", "Filtering…"},
    MacroInfo{Macro::texture, "Texture", EditOps::textureDescription, "Dissolving…", false},
    MacroInfo{Macro::mono, "Mono", "Every channel becomes the mean of all", "Folding…"},
    MacroInfo{Macro::swap, "Swap L/R", "The first two channels change places", "Swapping…"},
};

// None when the making was stopped.
std::optional<EditStep> withRange(const EditState& state, const EditOps::Channels& channels, const char* name) {
    if (channels.empty()) { return std::nullopt; }
    const Sound made(channels);
    const FrameRange range = state.range();
    EditState next = state;
    next.sound = EditOps::replaceRegion(state.sound, range.lower, range.upper, made);
    if (state.selection) { next.selection = FrameRange{range.lower, range.lower + made.frames()}; }
    return EditStep{fitted(std::move(next)), name, EditStep::Moved{range, made.frames()}};
}

std::optional<EditStep> looped(const EditState& state, double sampleRate, const PinnedLoop& pinned) {
    const FrameRange range = state.selection ? *state.selection : pinned.range.value_or(state.range());
    // The loop reads what lies around the range, up to its longest tail.
    const int64_t around = int64_t(sampleRate * 3) + 1;
    const int64_t first = std::max<int64_t>(range.lower - around, 0);
    const int64_t last = std::min(range.upper + around, state.sound.frames());
    auto loop = EditOps::seamlessLoop(state.sound.gather(first, last), sampleRate, range.lower - first,
                                      range.upper - first, pinned.carryTail);
    if (!loop) { return std::nullopt; }
    return EditStep{
        {Sound(loop->channels), std::nullopt, 0}, "Seamless Loop", EditStep::Moved{{0, range.lower}, 0}, true};
}

}  // namespace

std::span<const MacroInfo> macros() {
    return table;
}

std::optional<EditStep> run(Macro macro, const EditState& state, double sampleRate, const PinnedLoop& pinned,
                            const EditOps::Progress& progress) {
    if (state.sound.frames() == 0) { return std::nullopt; }
    const FrameRange range = state.range();
    EditState next = state;
    switch (macro) {
        case Macro::topAndTails:
            next.sound = EditOps::topAndTails(state.sound, sampleRate);
            break;
        case Macro::hiPass:
            next.sound = EditOps::hiPass200(state.sound, sampleRate);
            break;
        case Macro::mono:
            next.sound = EditOps::monoFold(state.sound, range.lower, range.upper);
            break;
        case Macro::swap:
            next.sound = EditOps::swapLR(state.sound, range.lower, range.upper);
            break;
        case Macro::verbTail:
            return withRange(state,
                             EditOps::verbTail(state.sound.gather(range.lower, range.upper), sampleRate, 0,
                                               range.length(), progress),
                             "Verb Tail");
        case Macro::texture:
            return withRange(
                state,
                EditOps::texture(state.sound.gather(range.lower, range.upper), sampleRate, 0, range.length(), progress),
                "Texture");
        case Macro::seamlessLoop:
            return looped(state, sampleRate, pinned);
    }
    return EditStep{std::move(next), table[size_t(macro)].title, std::nullopt};
}

}  // namespace brindlehum
