// FrameSource: anything that delivers planar float frames at a given position.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <vector>

#include "audio/decode/audio_file.h"

namespace brindlehum {

// Shape of the frames: deinterleaved 32-bit float.
struct ProcessingFormat {
    double sampleRate = 0;  // Hz
    int channels = 0;
    std::optional<ChannelLayout> layout;
};

class FrameSource {
public:
    virtual ~FrameSource() = default;
    virtual ProcessingFormat processingFormat() const = 0;
    virtual int64_t length() const = 0;
    // Fills `planes` (`planeCount` of them; those beyond the source's channels are cleared) from `position`.
    // Gives the frames delivered: 0 at or past the end and on any error. One thread at a time.
    virtual int read(float* const* planes, int planeCount, int64_t position, int frames) = 0;
};

class FileSource : public FrameSource {
public:
    // Throws Error when the file can't be opened.
    explicit FileSource(const std::filesystem::path& url);
    ProcessingFormat processingFormat() const override;
    int64_t length() const override;
    int read(float* const* planes, int planeCount, int64_t position, int frames) override;

private:
    std::unique_ptr<AudioFile> file_;
    std::vector<float*> planes_;   // one a channel of the file
    std::vector<float> unwanted_;  // takes the channels that the caller doesn't ask for
};

// A metronome click at a frame of the source.
struct Click {
    int64_t frame = 0;
    bool accent = false;
};

// Arrays in memory, with metronome clicks mixed into the first two channels on request.
class MemorySource : public FrameSource {
public:
    // One equally long array a channel; throws std::invalid_argument for unequal ones.
    MemorySource(std::vector<std::vector<float>> channels, double sampleRate, std::vector<Click> clicks = {});
    ProcessingFormat processingFormat() const override;
    int64_t length() const override;
    int read(float* const* planes, int planeCount, int64_t position, int frames) override;

private:
    void addClicks(float* const* planes, int planeCount, int64_t position, int frames) const;

    std::vector<std::vector<float>> channels_;
    double sampleRate_;
    std::vector<Click> clicks_;  // sorted by frame
    std::vector<float> tick_;
    std::vector<float> tock_;
};

}  // namespace brindlehum
