// readPlanar: a whole audio file in memory, one array a channel.
#pragma once

#include <filesystem>
#include <vector>

namespace brindlehum::Signal {

struct Planar {
    std::vector<std::vector<float>> channels;  // of equal length; at least one
    double sampleRate = 0;                     // Hz, the file's own
};
// Blocking I/O on the caller's thread. Throws Error: the reader's own, or tooLargeToLoad "File too large to load".
Planar readPlanar(const std::filesystem::path& path);

}  // namespace brindlehum::Signal
