// VisibleRange: keeps every result within the sound.
#include "mix/player/visible_range.h"

#include <algorithm>

namespace brindlehum {
namespace {

constexpr double showMargin = 0.05;  // of the span, on either side
constexpr double pageMargin = 0.05;  // of the page, before the frame that it was turned for

VisibleRange within(VisibleRange range) {
    const auto total = double(range.total);
    range.length = std::clamp(range.length, std::min(VisibleRange::minLength, total), total);
    range.first = std::clamp(range.first, 0.0, total - range.length);
    return range;
}

}  // namespace

VisibleRange zoomed(const VisibleRange& range, double factor, double share) {
    if (!(factor > 0)) { return range; }
    VisibleRange next = range;
    next.length = range.length / factor;
    next = within(next);
    next.first = range.frameAt(share) - share * next.length;
    next.follows = false;
    return within(next);
}

VisibleRange scrolled(const VisibleRange& range, double frames) {
    return within({range.total, range.first + frames, range.length, false});
}

VisibleRange showing(const VisibleRange& range, const FrameRange& span) {
    const double margin = double(span.length()) * showMargin;
    VisibleRange next{range.total, double(span.lower) - margin, double(span.length()) + 2 * margin, false};
    const double middle = next.frameAt(0.5);
    next.length = within(next).length;
    next.first = middle - next.length / 2;
    return within(next);
}

VisibleRange revealing(const VisibleRange& range, double frame) {
    const double first = range.contains(frame) ? range.first : frame - pageMargin * range.length;
    return within({range.total, first, range.length, true});
}

VisibleRange followed(const VisibleRange& range, double playhead) {
    return range.follows || range.contains(playhead) ? revealing(range, playhead) : range;
}

}  // namespace brindlehum
