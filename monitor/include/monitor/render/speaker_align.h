// SpeakerAlign: delay and polarity of each output channel, changed without a click.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <vector>

namespace brindlehum {

class SpeakerAlign {
public:
    static constexpr double maxMs = 100;
    // A change crossfades over this time. Changes meanwhile wait for its end.
    static constexpr double fadeSeconds = 0.02;

    // Control side, only while no render runs: room for `channels` outputs at `sampleRate` (Hz) in blocks of up to
    // `blockFrames`. All are off, and nothing has been heard.
    void open(int channels, double sampleRate, int blockFrames);
    // Control side, at any time after open. Delays are rounded to frames, and kept between 0 and maxMs.
    void set(int channel, double delayMs, bool inverted) noexcept;

    // Render thread, for each channel in each block; a null plane counts as silence. Never allocates, locks, logs or
    // throws. Channels that are off come out bit by bit.
    void process(int32_t channel, float* plane, int32_t frames) noexcept;

private:
    struct Tap {
        uint32_t frames = 0;
        bool inverted = false;
        bool operator==(const Tap&) const = default;
    };
    struct Lane {
        std::atomic<Tap> wanted;
        // Render thread:
        Tap from, to;
        uint32_t faded = 0;  // frames of the crossfade that are done
        uint32_t at = 0;     // where the next frame is written
        std::vector<float> heard;
    };
    void keep(Lane& lane, const float* plane, uint32_t frames) const noexcept;
    void play(const Lane& lane, uint32_t start, float* plane, uint32_t frames) const noexcept;
    float tapped(const Lane& lane, const Tap& tap, uint32_t now) const noexcept;

    std::unique_ptr<Lane[]> lanes_;
    int32_t channels_ = 0;
    uint32_t mask_ = 0;  // of the lanes' length, a power of two
    uint32_t fadeFrames_ = 1;
    double framesPerMs_ = 48;
};

}  // namespace brindlehum
