// The edits of the user as pure steps: from one state of the document to the next.
#pragma once

#include <optional>
#include <string>

#include "dsp/edit_effects.h"
#include "dsp/sound.h"
#include "editor/document/marks.h"
#include "mix/config/frame_range.h"

namespace brindlehum {

// What an edit starts from. The selection is never empty and lies in the sound; 0 <= cursor <= frames.
struct EditState {
    Sound sound;
    std::optional<FrameRange> selection;
    int64_t cursor = 0;
    Marks marks = {};
    // The selection, or the whole sound without one.
    FrameRange range() const { return selection.value_or(FrameRange{0, sound.frames()}); }
};

struct EditStep {
    // Where time went or came: these frames of the sound before have become `by` frames.
    struct Moved {
        FrameRange frames;
        int64_t by = 0;
    };
    EditState state;
    const char* name = "";        // "Cut"
    std::optional<Moved> moved;   // none: every frame stayed in its place, and so did bars and beats
    bool showsFromStart = false;  // the view starts at the first frame, and shows all
};

// What is copied: a sound and its rate, so that it sounds the same wherever it is pasted.
struct Clip {
    Sound sound;
    double sampleRate = 0;  // Hz
};

// How the two sides of a cut are joined.
enum class CutStyle {
    exact,         // to the frame
    zeroCrossing,  // both ends move to the nearest rise through zero, by 5 ms at most
    crossfade,     // the two sides overlap by 4 ms; the length stays as exact
};

// Pure; any thread. Each returns none where it needs a selection or a clip and there is none.
namespace EditCommands {

std::optional<Clip> copy(const EditState& state, double sampleRate);
std::optional<EditStep> cut(const EditState& state, double sampleRate, CutStyle style);     // and copy first
std::optional<EditStep> remove(const EditState& state, double sampleRate, CutStyle style);  // "Delete"
// Over the selection, or at the cursor without one. A clip of another rate is converted; a clip of one channel goes to
// all channels, and channels that the clip lacks get silence.
std::optional<EditStep> paste(const EditState& state, double sampleRate, const Clip& clip);
std::optional<EditStep> trim(const EditState& state, double sampleRate, CutStyle style);
std::optional<EditStep> silence(const EditState& state);
// Before the cursor; none for less than a frame.
std::optional<EditStep> insertSilence(const EditState& state, int64_t frames);
// Scales the range so that its loudest sample in the lanes has this level, in dB of full scale.
std::optional<EditStep> normalize(const EditState& state, double peakDb, const EditOps::Lanes& lanes);
// None for an unknown id.
std::optional<EditStep> apply(const EditState& state, double sampleRate, const std::string& effect,
                              const EditOps::Lanes& lanes);

}  // namespace EditCommands

// Keeps what still fits after the sound has become another: a cursor moves to the end, a selection that reaches past
// the end goes.
EditState fitted(EditState state);

// The largest magnitude in the range.
float peakOf(const Sound& sound, const FrameRange& range);

// The frame within 5 ms at which the mean of the channels rises through zero, nearest to `frame`; `frame` without one.
int64_t risingZeroNear(const Sound& sound, int64_t frame, double sampleRate);

}  // namespace brindlehum
