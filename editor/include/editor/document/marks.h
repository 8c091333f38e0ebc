// Marks: the cue points of a document and the place of its first frame in the source, moved along with its edits.
#pragma once

#include <cstdint>
#include <vector>

#include "audio/write/wav_form.h"
#include "mix/config/frame_range.h"

namespace brindlehum {

struct Marks {
    std::vector<WavCue> cues;
    int64_t start = 0;  // of the document's first frame on the source's time line; below 0 before it
    bool operator==(const Marks&) const = default;
};

// Pure; any thread. Ranges are in frames of the document before.

// The range becomes `by` frames: points in it go, those after it move, and regions around it grow or shrink. The sound
// after it keeps its time when what changes is the beginning.
Marks replaced(Marks marks, const FrameRange& range, int64_t by);
// Nothing but the range, of a document of `total` frames, is left.
Marks trimmed(const Marks& marks, const FrameRange& range, int64_t total);
// What a file with these marks says of itself.
WavNotes noted(WavNotes source, const Marks& marks);
// The range plays backwards. Regions that reach over its ends stay.
Marks reversed(Marks marks, const FrameRange& range);

}  // namespace brindlehum
