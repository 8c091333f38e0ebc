// InsertStage: the audio side of one insert, with its bypass and its guard against what isn't a number.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <vector>

#include "monitor/inserts/insert_plan.h"
#include "platform/plugin_host.h"

namespace brindlehum {

// The running instances of one insert, which outlive a change of the chain. Control side, except for the atomics.
struct InsertUnit {
    std::vector<std::unique_ptr<PluginInstance>> instances;  // as many as shares() says
    int width = 0;                                           // ports of each, of either direction
    std::atomic<bool> isBypassed = false;                    // control
    std::atomic<bool> isMuted = false;                       // audio: it made what isn't a number
    int latency() const noexcept;                            // frames, as reported now
};

// Frames of several channels that come out later.
class DelayLines {
public:
    DelayLines(int channels, int frames);
    // Audio thread. Writes `count` frames of a channel, and reads as many from `frames` before.
    void pass(int channel, const float* in, float* out, int32_t count) noexcept;
    void advance(int32_t count) noexcept { at_ = (at_ + uint32_t(count)) & mask_; }

private:
    uint32_t frames_;
    uint32_t mask_;
    uint32_t at_ = 0;
    std::vector<std::vector<float>> lines_;
};

// One insert in one chain, planned for the latency that its unit has now.
class InsertStage {
public:
    static constexpr double crossSeconds = 0.01;  // from the effect to what is bypassed, and back

    InsertStage(std::shared_ptr<InsertUnit> unit, int channels, double sampleRate);

    int latency() const { return latency_; }
    const InsertUnit& unit() const { return *unit_; }
    // Audio thread: never allocates, locks or throws. `in` and `out` are planes of `frames` frames each and don't
    // overlap.
    void process(const float* const* in, float* const* out, int32_t frames) noexcept;

private:
    void runInstances(const float* const* in, float* const* out) noexcept;
    void guard(float* const* out, int32_t frames) noexcept;

    const std::shared_ptr<InsertUnit> unit_;
    const int channels_;
    const int latency_;
    const float step_;  // of a level, in a frame
    const std::vector<InsertShare> shares_;
    DelayLines lines_;
    std::vector<float> delayed_;  // a plane
    std::vector<const float*> portsIn_;
    std::vector<float*> portsOut_;
    uint32_t frames_ = 0;
    // Levels of the effect and of what is bypassed, at the end of the last block.
    float wet_, dry_;
};

}  // namespace brindlehum
