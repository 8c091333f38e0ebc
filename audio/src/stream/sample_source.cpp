// SampleSource: reads blocks of a file, and refuses a file that holds less than its header states.
#include "audio/stream/sample_source.h"

#include <algorithm>

#include "audio/decode/audio_file.h"
#include "base/error.h"
#include "base/number_text.h"

namespace brindlehum {

int MemorySamples::read(int64_t position, int limit, const float** planes) {
    if (position < 0 || position >= frames()) { return 0; }
    for (size_t c = 0; c < planes_.size(); ++c) { planes[c] = planes_[c].data() + position; }
    return int(std::min<int64_t>(limit, frames() - position));
}

int SoundSamples::read(int64_t position, int limit, const float** planes) {
    if (position < 0 || position >= frames()) { return 0; }
    const int count = int(std::min<int64_t>(limit, frames() - position));
    for (size_t c = 0; c < block_.size(); ++c) {
        block_[c].resize(size_t(count));
        sound_.track(int(c)).read(position, block_[c]);
        planes[c] = block_[c].data();
    }
    return count;
}

FileSamples::FileSamples(const std::filesystem::path& path, const std::function<bool()>& stop)
    : file_(AudioFile::open(path, stop)), block_(size_t(file_->facts().channels)), planes_(block_.size()) {}
FileSamples::~FileSamples() = default;

double FileSamples::sampleRate() const {
    return file_->facts().sampleRate;
}

int FileSamples::channels() const {
    return file_->facts().channels;
}

int64_t FileSamples::frames() const {
    return file_->facts().frames;
}

int FileSamples::read(int64_t position, int limit, const float** planes) {
    if (position < 0 || position >= frames()) { return 0; }
    const int wanted = int(std::min<int64_t>(limit, frames() - position));
    for (size_t c = 0; c < block_.size(); ++c) {
        if (block_[c].size() < size_t(wanted)) { block_[c].resize(size_t(wanted)); }
        planes_[c] = block_[c].data();
        planes[c] = block_[c].data();
    }
    const int got = file_->read(planes_.data(), position, wanted);
    if (got < wanted) {
        throw Error("The file breaks off after " + fixed(double(position + std::max(got, 0)) / sampleRate(), 1) +
                    " of " + fixed(double(frames()) / sampleRate(), 1) + " seconds");
    }
    return got;
}

}  // namespace brindlehum
