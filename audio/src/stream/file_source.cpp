// FileSource: an audio file as a frame source, where a read error is the end.
#include <algorithm>

#include "audio/stream/frame_source.h"
#include "base/error.h"

namespace brindlehum {

FileSource::FileSource(const std::filesystem::path& url) : file_(AudioFile::open(url)) {
    planes_.resize(size_t(file_->facts().channels));
}

ProcessingFormat FileSource::processingFormat() const {
    const AudioFileFacts& facts = file_->facts();
    return {facts.sampleRate, facts.channels, facts.layout};
}

int64_t FileSource::length() const {
    return file_->facts().frames;
}

int FileSource::read(float* const* planes, int planeCount, int64_t position, int frames) {
    if (position < 0 || frames < 1) { return 0; }
    const int channels = file_->facts().channels;
    const int wanted = std::clamp(planeCount, 0, channels);
    if (wanted < channels && unwanted_.size() < size_t(frames)) { unwanted_.resize(size_t(frames)); }
    std::copy_n(planes, wanted, planes_.begin());
    std::fill(planes_.begin() + wanted, planes_.end(), unwanted_.data());
    int got = 0;
    try {
        got = file_->read(planes_.data(), position, frames);
    } catch (const Error&) {
        return 0;  // whoever plays or draws can do no more than stop here
    }
    for (int plane = wanted; plane < planeCount; ++plane) { std::fill_n(planes[plane], got, 0.0F); }
    return got;
}

}  // namespace brindlehum
