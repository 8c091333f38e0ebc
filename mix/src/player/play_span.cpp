// The rules for starts and selections.
#include "mix/player/play_span.h"

#include <algorithm>

namespace brindlehum {

PlaySpan playSpan(int64_t from, const std::optional<FrameRange>& selection, int64_t frames) {
    const FrameRange range = selection.value_or(FrameRange{0, frames});
    const bool outside = (selection && from < range.lower) || from >= range.upper;
    return {outside ? range.lower : from, range};
}

std::optional<FrameRange> validSelection(FrameRange range, int64_t frames, double sampleRate) {
    constexpr double maxIgnoredSeconds = 0.01;
    range.lower = std::clamp<int64_t>(range.lower, 0, frames);
    range.upper = std::clamp<int64_t>(range.upper, range.lower, frames);
    return range.length() > int64_t(sampleRate * maxIgnoredSeconds) ? std::optional(range) : std::nullopt;
}

}  // namespace brindlehum
