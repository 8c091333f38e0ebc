// SinkRecorder: records what a PipeWire sink plays, bit by bit, from its monitor.
#pragma once

#include <pipewire/filter.h>

#include <atomic>
#include <string>
#include <vector>

#include "support/pipewire/pipewire_client.h"

namespace brindlehum::test {

// Runs from the construction, which returns once audio flows, to stop(), and drops the sound after `seconds`. Keeps the
// sink's clock running, so that playback is recorded from its first block.
class SinkRecorder {
public:
    SinkRecorder(const std::string& sink, int channels, double seconds);
    ~SinkRecorder();
    SinkRecorder(const SinkRecorder&) = delete;
    SinkRecorder& operator=(const SinkRecorder&) = delete;

    // Frames recorded so far. Any thread.
    size_t frames() const { return frames_; }
    // Frames of the blocks in which not every sample was 0. Any thread.
    size_t soundingFrames() const { return sounding_; }
    // Ends the recording and gives a plane a channel.
    std::vector<std::vector<float>> stop();

private:
    void process(uint32_t count);
    PipeWireClient client_;
    pw_filter* filter_ = nullptr;
    spa_hook hook_{};
    std::vector<void*> ports_;
    std::vector<pw_proxy*> links_;
    std::vector<std::vector<float>> planes_;
    std::atomic<size_t> frames_ = 0, sounding_ = 0;
};

}  // namespace brindlehum::test
