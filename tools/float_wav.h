// A WAV file of 32-bit floats, written beside its place and swapped in when complete.
#pragma once

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace brindlehum::cli {

// All that stands before the samples: WAVE_FORMAT_EXTENSIBLE, as RF64 (EBU Tech 3306) when the whole exceeds 4 GiB; of
// the same size either way. `mask` is a dwChannelMask; 0 says that the channels stand for no speakers.
std::string floatWavHeader(int channels, uint32_t sampleRate, uint32_t mask, int64_t frames);

// Every call throws Error.
class FloatWav {
public:
    FloatWav(std::filesystem::path target, int channels, double sampleRate, uint32_t mask);
    // Removes what wasn't committed.
    ~FloatWav();
    FloatWav(const FloatWav&) = delete;
    FloatWav& operator=(const FloatWav&) = delete;

    void write(const float* const* planes, int frames);
    // Makes the file durable and swaps it in, replacing what stood there.
    void commit();
    int64_t frames() const { return frames_; }

private:
    void writeHeader();
    [[noreturn]] void fail(const char* what) const;

    struct Close {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };
    std::filesystem::path target_;
    std::string temporary_;  // empty once committed
    std::unique_ptr<std::FILE, Close> file_;
    int channels_;
    uint32_t sampleRate_;
    uint32_t mask_;
    int64_t frames_ = 0;
    std::vector<float> interleaved_;
};

}  // namespace brindlehum::cli
