// SampleSource: planar samples on demand, from a file or from memory, for work that goes through a sound in blocks.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "dsp/sound.h"

namespace brindlehum {

class AudioFile;

class SampleSource {
public:
    virtual ~SampleSource() = default;
    virtual double sampleRate() const = 0;  // Hz
    virtual int channels() const = 0;
    virtual int64_t frames() const = 0;
    // Points `planes`, one per channel, at up to `limit` frames from `position`; they last until the next call. Returns
    // the count: fewer than `limit` only at the end, 0 past it. Throws Error on a read error, and where the source
    // holds fewer frames than it states. One thread at a time.
    virtual int read(int64_t position, int limit, const float** planes) = 0;
};

// Arrays in memory, which are borrowed: one per channel, all equally long.
class MemorySamples : public SampleSource {
public:
    MemorySamples(const std::vector<std::vector<float>>& planes, double sampleRate)
        : planes_(planes), sampleRate_(sampleRate) {}
    double sampleRate() const override { return sampleRate_; }
    int channels() const override { return int(planes_.size()); }
    int64_t frames() const override { return planes_.empty() ? 0 : int64_t(planes_[0].size()); }
    int read(int64_t position, int limit, const float** planes) override;

private:
    const std::vector<std::vector<float>>& planes_;
    double sampleRate_;
};

// A snapshot of a document.
class SoundSamples : public SampleSource {
public:
    SoundSamples(Sound sound, double sampleRate)
        : sound_(std::move(sound)), sampleRate_(sampleRate), block_(size_t(sound_.channels())) {}
    double sampleRate() const override { return sampleRate_; }
    int channels() const override { return sound_.channels(); }
    int64_t frames() const override { return sound_.frames(); }
    int read(int64_t position, int limit, const float** planes) override;

private:
    Sound sound_;
    double sampleRate_;
    std::vector<std::vector<float>> block_;  // one array per channel
};

// A sound file, of which one block at a time is in memory.
class FileSamples : public SampleSource {
public:
    // `stop` as for AudioFile::open. Throws Error when the file can't be opened.
    explicit FileSamples(const std::filesystem::path& path, const std::function<bool()>& stop = {});
    ~FileSamples() override;
    double sampleRate() const override;
    int channels() const override;
    int64_t frames() const override;
    int read(int64_t position, int limit, const float** planes) override;

private:
    std::unique_ptr<AudioFile> file_;
    std::vector<std::vector<float>> block_;  // one array per channel
    std::vector<float*> planes_;
};

}  // namespace brindlehum
