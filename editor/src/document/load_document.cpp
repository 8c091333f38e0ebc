// Loads a file block by block, so that progress can be shown and a load be ended.
#include "editor/document/load_document.h"

#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <new>
#include <span>

#include "audio/stream/sample_source.h"
#include "audio/wave/waveform.h"
#include "base/error.h"
#include "base/memory_left.h"

namespace brindlehum {
namespace {

constexpr int blockFrames = int(SoundBlock::longest);
constexpr double showSeconds = 1.0 / 20;

void refuseIfTooLarge(int channels, int64_t frames) {
    const double memory = double(::sysconf(_SC_PHYS_PAGES)) * double(::sysconf(_SC_PAGESIZE));
    // Some must be left for edits. An allocation doesn't fail: the system would end the program later.
    const double most = std::min(memory / 2, double(memoryLeft()) * 0.8);
    if (double(channels) * double(frames) * sizeof(float) > most) {
        throw Error(ErrorKind::tooLargeToLoad, "File too large to load");
    }
}

// Appends a block; infinite samples and those that are no numbers become 0. Returns how many there were.
int64_t appendClean(SoundBuilder& builder, std::vector<const float*>& planes, int count,
                    std::vector<std::vector<float>>& cleaned) {
    int64_t replaced = 0;
    for (size_t c = 0; c < planes.size(); ++c) {
        const std::span x(planes[c], size_t(count));
        if (std::ranges::all_of(x, [](float each) { return std::isfinite(each); })) { continue; }
        cleaned[c].assign(x.begin(), x.end());
        for (float& each : cleaned[c]) {
            if (!std::isfinite(each)) { each = 0, ++replaced; }
        }
        planes[c] = cleaned[c].data();
    }
    builder.append(planes.data(), count);
    return replaced;
}

}  // namespace

LoadedDocument loadDocument(const std::filesystem::path& path, const std::function<void(double)>& progress,
                            const std::function<bool()>& stop, const ShowLoading& shown) {
    LoadedDocument out{AudioFileInfo::load(path, stop), {}, 0, {}};
    FileSamples samples(path, stop);
    if (samples.sampleRate() > 0 && double(samples.frames()) / samples.sampleRate() >= longestDocument) {
        throw Error(ErrorKind::tooLong, "Files over 30 minutes don't open in the editor");
    }
    refuseIfTooLarge(samples.channels(), samples.frames());
    double nextShown = 0;
    try {
        SoundBuilder builder(samples.channels());
        std::vector<const float*> planes(size_t(samples.channels()));
        std::vector<std::vector<float>> cleaned(planes.size());
        for (int64_t at = 0; at < samples.frames() && !stop();) {
            const int count = samples.read(at, blockFrames, planes.data());
            out.notNumbers += appendClean(builder, planes, count, cleaned);
            at += count;
            progress(double(at) / double(samples.frames()));
            if (const double now = steadySeconds(); shown && now >= nextShown) {
                shown(out.info, builder.soFar(), samples.frames());
                nextShown = now + showSeconds;
            }
        }
        out.sound = builder.finish();
    } catch (const std::bad_alloc&) { throw Error(ErrorKind::tooLargeToLoad, "File too large to load"); }
    out.info.sampleRate = samples.sampleRate();
    return out;
}

}  // namespace brindlehum
