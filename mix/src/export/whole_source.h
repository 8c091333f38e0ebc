// WholeSource: a file that is read for an export, which must be whole.
#pragma once

#include <filesystem>
#include <functional>
#include <memory>

#include "audio/probe/audio_file_info.h"
#include "audio/stream/file_source.h"

namespace brindlehum {

// Notes what a stream would pass over: that the file breaks off, or that a read failed.
class WholeSource : public FrameSource {
public:
    // Throws Error when the file can't be opened, or isn't the one any more that `info` describes. `brokenOff` is set
    // by reads and must outlive this object.
    WholeSource(const AudioFileInfo& info, const std::function<bool()>& stop, bool& brokenOff);

    ProcessingFormat processingFormat() const override { return file_.processingFormat(); }
    int64_t length() const override { return file_.length(); }
    int read(float* const* planes, int planeCount, int64_t position, int frames) override;

private:
    FileSource file_;
    bool& brokenOff_;
};

}  // namespace brindlehum
