// FileSource: reads an audio file as a frame source and treats a read error as the end.
#include "audio/stream/file_source.h"

#include <algorithm>

#include "audio/decode/audio_file.h"
#include "base/error.h"

namespace brindlehum {

FileSource::FileSource(const std::filesystem::path& path, const std::function<bool()>& stop)
    : file_(AudioFile::open(path, stop)) {
    planes_.resize(size_t(file_->facts().channels));
}

FileSource::~FileSource() = default;

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
        return 0;  // a player or an overview can only stop at an error
    }
    for (int plane = wanted; plane < planeCount; ++plane) { std::fill_n(planes[plane], got, 0.0F); }
    return got;
}

}  // namespace brindlehum
