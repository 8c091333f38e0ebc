// The macros on documents.
#include "editor/document/macros.h"

#include <algorithm>

namespace brindlehum {
namespace {

constexpr std::array table = {
    MacroInfo{Macro::topAndTails, "top-and-tails", "Top & Tails", EditOps::topAndTailsDescription, "Fading the ends…"},
    MacroInfo{Macro::verbTail, "verb-tail", "Verb Tail", EditOps::verbTailDescription, "Ringing it out…", false},
    MacroInfo{Macro::seamlessLoop, "seamless-loop", "Seamless Loop", EditOps::seamlessLoopDescription,
              "Closing the loop…"},
    MacroInfo{Macro::hiPass, "hi-pass", "Hi-Pass 200", "Takes out what lies below 200 Hz: rumble, wind, handling",
              "Filtering…"},
    MacroInfo{Macro::texture, "texture", "Texture", EditOps::textureDescription, "Dissolving…", false},
    MacroInfo{Macro::mono, "mono", "Mono", "Every channel becomes the mean of all", "Folding…"},
    MacroInfo{Macro::swap, "swap", "Swap L/R", "The first two channels change places", "Swapping…"},
};

// None when the making was stopped.
std::optional<EditStep> withRange(const EditState& state, const Sound& made, const char* name, Marks marks) {
    if (made.channels() == 0) { return std::nullopt; }
    const FrameRange range = state.range();
    EditState next = state;
    next.marks = std::move(marks);
    next.sound = EditOps::replaceRegion(state.sound, range.lower, range.upper, made);
    if (state.selection) { next.selection = FrameRange{range.lower, range.lower + made.frames()}; }
    return EditStep{fitted(std::move(next)), name, EditStep::Moved{range, made.frames()}};
}

std::optional<EditStep> looped(const EditState& state, double sampleRate, const PinnedLoop& pinned) {
    const FrameRange range = state.selection ? *state.selection : pinned.range.value_or(state.range());
    auto loop = EditOps::seamlessLoop(state.sound, sampleRate, range.lower, range.upper, pinned.carryTail);
    if (!loop) { return std::nullopt; }
    return EditStep{{Sound(loop->channels), std::nullopt, 0, trimmed(state.marks, range, state.sound.frames())},
                    "Seamless Loop",
                    EditStep::Moved{{0, range.lower}, 0},
                    true};
}

}  // namespace

std::span<const MacroInfo> macros() {
    return table;
}

std::optional<EditStep> run(Macro macro, const EditState& state, double sampleRate, const PinnedLoop& pinned,
                            EditOps::RandomEngine random, const EditOps::Progress& progress) {
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
        case Macro::verbTail: {
            // The tail follows the sound, which stays where it is.
            const Sound made(EditOps::verbTail(state.sound.gather(range.lower, range.upper), sampleRate, 0,
                                               range.length(), random, progress));
            return withRange(state, made, "Verb Tail",
                             replaced(state.marks, {range.upper, range.upper}, made.frames() - range.length()));
        }
        case Macro::texture: {
            const Sound made(EditOps::texture(state.sound.gather(range.lower, range.upper), sampleRate, 0,
                                              range.length(), random, progress));
            return withRange(state, made, "Texture", replaced(state.marks, range, made.frames()));
        }
        case Macro::seamlessLoop:
            return looped(state, sampleRate, pinned);
    }
    return EditStep{std::move(next), table[size_t(macro)].title, std::nullopt};
}

}  // namespace brindlehum
