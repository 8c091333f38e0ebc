// WaveDetail: decides what to read, and reads it.
#include "mix/player/wave_detail.h"

#include <algorithm>
#include <bit>
#include <cmath>

namespace brindlehum {
namespace {

// Frames on either side of the picture: half a page, but little enough that a wide one isn't kept waiting.
constexpr double maxMargin = 1 << 19;

bool serves(const WaveformSpan& span, const VisibleRange& range, int64_t bucketFrames) {
    return span.bucketFrames == bucketFrames && double(span.first) <= range.first &&
           double(span.first + span.frames) >= std::min(range.end(), double(range.total));
}

}  // namespace

std::optional<WaveformSpan> detailSpan(const VisibleRange& range, int columns, int64_t overviewBucketFrames) {
    if (columns < 1 || range.length <= 0) { return std::nullopt; }
    const auto perColumn = uint64_t(std::max(range.length / columns, 1.0));
    const auto bucketFrames = int64_t(std::bit_floor(perColumn));
    if (int64_t(perColumn) >= overviewBucketFrames) { return std::nullopt; }
    const double margin = std::min(range.length / 2, maxMargin);
    const int64_t first = std::max(int64_t(range.first - margin), int64_t{0}) / bucketFrames * bucketFrames;
    const int64_t end = std::min(int64_t(std::ceil(range.end() + margin)), range.total);
    return WaveformSpan{first, end - first, bucketFrames};
}

void WaveDetail::setSource(Open open) {
    open_ = std::move(open);
    line_.cancel();
    wanted_.reset();
    data_ = nullptr;
}

void WaveDetail::want(const VisibleRange& range, int columns, int64_t overviewBucketFrames) {
    const auto span = detailSpan(range, columns, overviewBucketFrames);
    if (!span || !open_ || (wanted_ && serves(*wanted_, range, span->bucketFrames))) { return; }
    wanted_ = span;
    reads_.run(
        line_,
        [this, open = open_, span = *span](const Background::Task& task) {
            const auto stop = [token = task.token()] { return token.stop_requested(); };
            const auto source = open(stop);
            const auto grown = [&](WaveformPtr data) { task.tell([this, data = std::move(data)] { show(data); }); };
            return waveformDetail(*source, span, grown, stop, steadySeconds);
        },
        [this](WaveformPtr data) { show(std::move(data)); }, [](const std::exception&) {});
}

void WaveDetail::show(WaveformPtr data) {
    if (!data) { return; }
    data_ = std::move(data);
    Q_EMIT changed();
}

}  // namespace brindlehum
