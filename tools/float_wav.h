// FloatWav: a WAV file of 32-bit floats, written beside its place and swapped in when complete.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "base/file_replacement.h"

namespace brindlehum::cli {

// All bytes before the samples: WAVE_FORMAT_EXTENSIBLE, as RF64 (EBU Tech 3306) when the file exceeds 4 GiB; the size
// is the same in both forms. `mask` is a dwChannelMask; 0 means that the channels aren't speakers.
std::string floatWavHeader(int channels, uint32_t sampleRate, uint32_t mask, int64_t frames);

// Every call throws Error. The destructor removes the temporary file unless it was committed.
class FloatWav {
public:
    FloatWav(const std::filesystem::path& target, int channels, double sampleRate, uint32_t mask);

    void write(const float* const* planes, int frames);
    // Syncs the file to disk and swaps it in, replacing an existing one.
    void commit();
    int64_t frames() const { return frames_; }

private:
    void writeHeader();

    FileReplacement file_;
    int channels_;
    uint32_t sampleRate_;
    uint32_t mask_;
    int64_t frames_ = 0;
    std::vector<float> interleaved_;
};

}  // namespace brindlehum::cli
