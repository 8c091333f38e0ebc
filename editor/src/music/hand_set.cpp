// HandSet: the bar line of the user under edits.
#include "editor/music/hand_set.h"

#include <algorithm>

namespace brindlehum {

HandSet following(HandSet set, const EditStep::Moved& moved, std::span<const double> boundaries, double sampleRate) {
    if (!set.downbeat) { return set; }
    const double from = double(moved.frames.lower) / sampleRate;
    const double to = double(moved.frames.upper) / sampleRate;
    if (*set.downbeat >= from && *set.downbeat < to) {
        const auto next = std::ranges::lower_bound(boundaries, to);
        if (next == boundaries.end()) {
            set.downbeat.reset();
            return set;
        }
        set.downbeat = *next;
    }
    if (*set.downbeat >= to) { *set.downbeat += double(moved.by - moved.frames.length()) / sampleRate; }
    return set;
}

}  // namespace brindlehum
