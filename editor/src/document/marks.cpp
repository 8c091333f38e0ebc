// Marks: points and regions after an edit.
#include "editor/document/marks.h"

#include <algorithm>

namespace brindlehum {

Marks replaced(Marks marks, const FrameRange& range, int64_t by) {
    std::erase_if(marks.cues, [&](const WavCue& cue) { return range.contains(cue.frame); });
    const auto moved = [&](int64_t frame) { return frame - range.length() + by; };
    for (WavCue& cue : marks.cues) {
        int64_t end = cue.frame + cue.length;
        if (end > range.lower) { end = end < range.upper ? range.lower : moved(end); }
        if (cue.frame >= range.upper) { cue.frame = moved(cue.frame); }
        cue.length = std::max<int64_t>(end - cue.frame, 0);
    }
    if (range.lower == 0) { marks.start += range.upper - by; }
    return marks;
}

Marks trimmed(const Marks& marks, const FrameRange& range, int64_t total) {
    Marks head = replaced(marks, {range.upper, total}, 0);
    // A point at the very end of the document marks its end, but not that of a part.
    if (range.upper < total) {
        std::erase_if(head.cues, [&](const WavCue& cue) { return cue.frame >= range.upper; });
    }
    return replaced(std::move(head), {0, range.lower}, 0);
}

Marks reversed(Marks marks, const FrameRange& range) {
    for (WavCue& cue : marks.cues) {
        if (!range.contains(cue.frame) || cue.frame + cue.length > range.upper) { continue; }
        const int64_t last = cue.frame + std::max<int64_t>(cue.length, 1);
        cue.frame = range.lower + range.upper - last;
    }
    return marks;
}

WavNotes noted(WavNotes source, const Marks& marks) {
    source.cues = marks.cues;
    if (source.timeReference) {
        source.timeReference = uint64_t(std::max<int64_t>(int64_t(*source.timeReference) + marks.start, 0));
    }
    return source;
}

}  // namespace brindlehum
