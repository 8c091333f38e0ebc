// The bar line of the user under edits.
#include "editor/music/moved_bars.h"

#include <algorithm>

namespace brindlehum {

GivenBars following(GivenBars given, const EditStep::Moved& moved, std::span<const double> boundaries,
                    double sampleRate) {
    if (!given.downbeat) { return given; }
    const double from = double(moved.frames.lower) / sampleRate;
    const double to = double(moved.frames.upper) / sampleRate;
    if (*given.downbeat >= from && *given.downbeat < to) {
        const auto next = std::ranges::lower_bound(boundaries, to);
        if (next == boundaries.end()) {
            given.downbeat.reset();
            return given;
        }
        given.downbeat = *next;
    }
    if (*given.downbeat >= to) { *given.downbeat += double(moved.by - moved.frames.length()) / sampleRate; }
    return given;
}

}  // namespace brindlehum
