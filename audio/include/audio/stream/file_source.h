// FileSource: an audio file as a frame source.
#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <vector>

#include "audio/stream/frame_source.h"

namespace brindlehum {

class AudioFile;

class FileSource : public FrameSource {
public:
    // `stop` as for AudioFile::open. Throws Error when the file can't be opened.
    explicit FileSource(const std::filesystem::path& path, const std::function<bool()>& stop = {});
    ~FileSource() override;
    ProcessingFormat processingFormat() const override;
    int64_t length() const override;
    int read(float* const* planes, int planeCount, int64_t position, int frames) override;

private:
    std::unique_ptr<AudioFile> file_;
    std::vector<float*> planes_;   // one per channel of the file
    std::vector<float> unwanted_;  // receives the channels that the caller doesn't ask for
};

}  // namespace brindlehum
