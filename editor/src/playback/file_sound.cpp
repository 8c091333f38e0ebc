// Reads a file and fits it to a document.
#include "editor/playback/file_sound.h"

#include <algorithm>
#include <vector>

#include "audio/stream/sample_source.h"
#include "base/error.h"
#include "dsp/signal.h"

namespace brindlehum {
namespace {

constexpr int blockFrames = 65536;
constexpr double longest = 1800;  // seconds

using Channels = std::vector<std::vector<float>>;

Channels fitted(Channels planes, int channels) {
    if (channels == 1) { return {Signal::mono(planes)}; }
    if (planes.size() == 1) { planes.push_back(planes[0]); }
    planes.resize(size_t(channels), std::vector<float>(planes[0].size()));
    return planes;
}

}  // namespace

Sound fileSound(const std::filesystem::path& file, double sampleRate, int channels,
                const std::function<bool()>& isStopped) {
    FileSamples samples(file, isStopped);
    if (double(samples.frames()) > longest * samples.sampleRate()) {
        throw Error("The file is too long to be heard here");
    }
    Channels planes(size_t(samples.channels()));
    std::vector<const float*> block(planes.size());
    for (int64_t at = 0; at < samples.frames() && !isStopped();) {
        const int count = samples.read(at, blockFrames, block.data());
        if (count == 0) { break; }
        for (size_t c = 0; c < planes.size(); ++c) { planes[c].insert(planes[c].end(), block[c], block[c] + count); }
        at += count;
    }
    for (auto& plane : planes) { plane = Signal::resample(std::move(plane), samples.sampleRate(), sampleRate); }
    return Sound(fitted(std::move(planes), channels));
}

}  // namespace brindlehum
