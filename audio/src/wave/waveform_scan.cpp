// WaveformScan: chooses the bucket size and reduces the blocks.
#include "wave/waveform_scan.h"

#include <algorithm>
#include <limits>

#include "base/error.h"
#include "wave/extremes.h"

namespace brindlehum {

namespace {

constexpr int maxLanes = 16;
constexpr int64_t wantedBuckets = 6000;
constexpr int64_t wantedBlock = 65536;  // frames

int64_t wholeBuckets(int64_t frames, int64_t bucketFrames) {
    return (frames + bucketFrames - 1) / bucketFrames;
}

WaveformSpan wholeOf(const FrameSource& source) {
    const int64_t length = std::max<int64_t>(source.length(), 1);
    return {0, length, std::max<int64_t>(length / wantedBuckets, 1)};
}

}  // namespace

WaveformScan::WaveformScan(FrameSource& source) : WaveformScan(source, wholeOf(source)) {}

WaveformScan::WaveformScan(FrameSource& source, const WaveformSpan& span)
    : source_(source),
      end_(span.first + span.frames),
      blockFrames_(std::max<int64_t>(std::min(wantedBlock, span.frames) / span.bucketFrames, 1) * span.bucketFrames) {
    data_.channels = std::min(source.processingFormat().channels, maxLanes);
    data_.firstFrame = span.first;
    data_.bucketFrames = span.bucketFrames;
    data_.bucketCount = int(wholeBuckets(span.frames, span.bucketFrames));
    if (blockFrames_ > std::numeric_limits<int>::max()) { throw Error("The file is too long for an overview"); }
    const auto lanes = size_t(data_.channels);
    const std::vector<float> zeros(size_t(data_.bucketCount));
    data_.mins.assign(lanes, zeros);
    data_.maxs.assign(lanes, zeros);
    samples_.resize(lanes * size_t(blockFrames_));
    for (size_t lane = 0; lane < lanes; ++lane) { planes_.push_back(samples_.data() + lane * size_t(blockFrames_)); }
}

bool WaveformScan::step() {
    if (data_.isComplete()) { return false; }
    const int64_t position = data_.loadedEnd();
    const auto wanted = int(std::min(blockFrames_, end_ - position));
    const int64_t frames = source_.read(planes_.data(), data_.channels, position, wanted);
    if (frames < 1) { return false; }
    for (int lane = 0; lane < data_.channels; ++lane) { reduce(lane, frames); }
    const int64_t loaded = data_.loadedBuckets + wholeBuckets(frames, data_.bucketFrames);
    data_.loadedBuckets = int(std::min<int64_t>(loaded, data_.bucketCount));
    return true;
}

void WaveformScan::reduce(int lane, int64_t frames) {
    const auto plane = size_t(lane);
    auto bucket = size_t(data_.loadedBuckets);
    const auto end = size_t(data_.bucketCount);
    for (int64_t at = 0; at < frames && bucket < end; at += data_.bucketFrames, ++bucket) {
        const Extremes found = extremes(planes_[plane] + at, std::min(frames - at, data_.bucketFrames));
        data_.mins[plane][bucket] = found.min;
        data_.maxs[plane][bucket] = found.max;
    }
}

WaveformPtr WaveformScan::finish() {
    data_.loadedBuckets = data_.bucketCount;
    return std::make_shared<const WaveformData>(std::move(data_));
}

}  // namespace brindlehum
