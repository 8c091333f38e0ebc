// WholeSource: compares the file with its facts, and each read with what was asked for.
#include "whole_source.h"

#include "base/error.h"
#include "base/path.h"

namespace brindlehum {

WholeSource::WholeSource(const AudioFileInfo& info, const std::function<bool()>& stop, bool& brokenOff)
    : file_(info.url, stop), brokenOff_(brokenOff) {
    const ProcessingFormat format = file_.processingFormat();
    if (format.channels != info.channels || format.sampleRate != info.sampleRate || file_.length() != info.frames) {
        throw Error(printableName(info.url) + " has changed since it was loaded");
    }
}

int WholeSource::read(float* const* planes, int planeCount, int64_t position, int frames) {
    const int got = file_.read(planes, planeCount, position, frames);
    if (got < frames) { brokenOff_ = true; }
    return got;
}

}  // namespace brindlehum
