// readPlanar: reads a whole audio file into memory, one array per channel.
#pragma once

#include <filesystem>
#include <vector>

namespace brindlehum::Signal {

struct Planar {
    std::vector<std::vector<float>> channels;  // of equal length; at least one
    double sampleRate = 0;                     // Hz, the file's own
};
// Blocking I/O on the caller's thread. Throws the reader's Error, or Error (tooLargeToLoad) "File too large to load".
Planar readPlanar(const std::filesystem::path& path);

}  // namespace brindlehum::Signal
