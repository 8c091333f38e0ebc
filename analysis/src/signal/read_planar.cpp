// readPlanar: memory grows with the samples read, so that a header's claim alone fills none.
#include "analysis/signal/read_planar.h"

#include <algorithm>
#include <new>
#include <stdexcept>

#include "audio/decode/audio_file.h"
#include "base/error.h"

namespace brindlehum::Signal {
namespace {

void readAll(AudioFile& file, Planar& out) {
    constexpr int64_t block = 65536;
    const int64_t frames = file.facts().frames;
    // Safe to reserve: the system commits the memory only where samples are written.
    for (auto& channel : out.channels) { channel.reserve(size_t(std::max<int64_t>(frames, 0))); }
    std::vector<float*> planes(out.channels.size());
    for (int64_t at = 0; at < frames;) {
        const auto want = int(std::min(block, frames - at));
        for (size_t c = 0; c < planes.size(); ++c) {
            out.channels[c].resize(size_t(at + want));
            planes[c] = out.channels[c].data() + at;
        }
        const int got = std::clamp(file.read(planes.data(), at, want), 0, want);
        at += got;
        if (got < want) {
            for (auto& channel : out.channels) { channel.resize(size_t(at)); }
            if (got == 0) { break; }
        }
    }
}

}  // namespace

Planar readPlanar(const std::filesystem::path& path) {
    const auto file = AudioFile::open(path);
    Planar out{std::vector<std::vector<float>>(size_t(std::max(file->facts().channels, 1))), file->facts().sampleRate};
    try {
        readAll(*file, out);
    } catch (const std::bad_alloc&) {
        throw Error(ErrorKind::tooLargeToLoad, "File too large to load");
    } catch (const std::length_error&) { throw Error(ErrorKind::tooLargeToLoad, "File too large to load"); }
    return out;
}

}  // namespace brindlehum::Signal
