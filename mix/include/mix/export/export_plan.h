// ExportPlan: how the channels of an exported file come about and what they are called. Pure.
#pragma once

#include <cstdint>
#include <string>

#include "mix/config/mix_config.h"
#include "mix/export/exporter.h"

namespace brindlehum {

struct ExportPlan {
    MixConfig config;  // to a device that has the file's channels in the file's order
    int channels = 0;
    uint32_t mask = 0;  // dwChannelMask; 0 for channels that it can't name
    WavSamples samples = WavSamples::pcm24;
    std::string label;
    int64_t frames = 0;      // of the file
    bool remembers = false;  // what is heard depends on the sound before it

    uint64_t frameBytes() const { return uint64_t(channels) * uint64_t(bytesOf(samples)); }

    // Throws Error: noBinaural for a source without directions, noUpmix where no upmix applies.
    static ExportPlan of(const Exporter::Request& request, const FrameRange& range);
};

}  // namespace brindlehum
