// SinkRecorder: records what a PipeWire sink plays, bit by bit, from its monitor.
#pragma once

#include <pipewire/filter.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <mutex>
#include <stdexcept>
#include <string>
#include <vector>

#include "support/pipewire/pipewire_client.h"

namespace brindlehum::test {

// Runs from the construction, which returns once audio flows, to stop(), and drops the sound after `seconds`. Keeps the
// sink's clock running, so that playback is recorded from its first block.
class SinkRecorder {
public:
    // With `also`, the first channel of that sink becomes one more plane, in step with the others.
    SinkRecorder(const std::string& sink, int sinkChannels, double seconds, const std::string& also = {})
        : planes_(size_t(sinkChannels) + (also.empty() ? 0 : 1), std::vector<float>(size_t(seconds * 48000))) {
        const auto channels = int(planes_.size());
        static pw_filter_events events{};
        events.version = PW_VERSION_FILTER_EVENTS;
        events.process = [](void* data, spa_io_position* position) {
            if (position) { static_cast<SinkRecorder*>(data)->process(position->clock); }
        };
        const std::lock_guard guard(client_);
        filter_ = pw_filter_new(client_.core(), "recorder",
                                pw_properties_new(PW_KEY_MEDIA_TYPE, "Audio", PW_KEY_MEDIA_CATEGORY, "Capture",
                                                  PW_KEY_MEDIA_ROLE, "DSP", PW_KEY_NODE_NAME, "recorder", nullptr));
        pw_filter_add_listener(filter_, &hook_, &events, this);
        for (int c = 0; c < channels; ++c) {
            const std::string name = "input_" + std::to_string(c);
            ports_.push_back(pw_filter_add_port(filter_, SPA_DIRECTION_INPUT, PW_FILTER_PORT_FLAG_MAP_BUFFERS,
                                                sizeof(void*),
                                                pw_properties_new(PW_KEY_FORMAT_DSP, "32 bit float mono audio",
                                                                  PW_KEY_PORT_NAME, name.c_str(), nullptr),
                                                nullptr, 0));
        }
        pw_filter_connect(filter_, PW_FILTER_FLAG_RT_PROCESS, nullptr, 0);
        const uint32_t from = client_.waitForNode(sink);
        std::vector<uint32_t> inputs;
        client_.waitFor("the recorder's ports", [&] {
            inputs = client_.ports(pw_filter_get_node_id(filter_), "in");
            return inputs.size() == size_t(channels);
        });
        std::vector<uint32_t> monitors = client_.ports(from, "out");
        std::vector<uint32_t> nodes(monitors.size(), from);
        if (!also.empty()) {
            nodes.push_back(client_.waitForNode(also));
            monitors.push_back(client_.ports(nodes.back(), "out").at(0));
        }
        for (size_t c = 0; c < inputs.size(); ++c) {
            pw_properties* properties = pw_properties_new(nullptr, nullptr);
            pw_properties_setf(properties, PW_KEY_LINK_OUTPUT_NODE, "%u", nodes.at(c));
            pw_properties_setf(properties, PW_KEY_LINK_OUTPUT_PORT, "%u", monitors.at(c));
            pw_properties_setf(properties, PW_KEY_LINK_INPUT_NODE, "%u", pw_filter_get_node_id(filter_));
            pw_properties_setf(properties, PW_KEY_LINK_INPUT_PORT, "%u", inputs[c]);
            links_.push_back(static_cast<pw_proxy*>(pw_core_create_object(
                client_.core(), "link-factory", PW_TYPE_INTERFACE_Link, PW_VERSION_LINK, &properties->dict, 0)));
            pw_properties_free(properties);
        }
        const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        while (frames_ == 0) {
            client_.sync();
            if (std::chrono::steady_clock::now() > limit) {
                throw std::runtime_error("PipeWire: no sound from " + sink);
            }
        }
    }
    ~SinkRecorder() { stop(); }
    SinkRecorder(const SinkRecorder&) = delete;
    SinkRecorder& operator=(const SinkRecorder&) = delete;

    // Frames recorded so far. Any thread.
    size_t frames() const { return frames_; }
    // Frames of the blocks in which not every sample was 0. Any thread.
    size_t soundingFrames() const { return sounding_; }
    // From now on waits for a frame of this channel that isn't 0, also after the recording is full. Any thread.
    void awaitSound(int channel) {
        soundAt_ = 0;
        awaited_ = channel;
    }
    // When the sink's clock reached that frame, in nanoseconds of the steady clock; 0 while it hasn't come. Any thread.
    int64_t soundAt() const { return soundAt_; }
    // Ends the recording and gives a plane a channel.
    std::vector<std::vector<float>> stop() {
        const std::lock_guard guard(client_);
        if (filter_) {
            for (pw_proxy* link : links_) { pw_proxy_destroy(link); }
            pw_filter_destroy(filter_);
            filter_ = nullptr;
            for (auto& plane : planes_) { plane.resize(std::min(plane.size(), frames_.load())); }
        }
        return planes_;
    }

private:
    void process(const spa_io_clock& clock) {
        const auto count = uint32_t(clock.duration);
        std::vector<const float*> sources;
        sources.reserve(ports_.size());
        for (void* port : ports_) {
            sources.push_back(static_cast<const float*>(pw_filter_get_dsp_buffer(port, count)));
        }
        // Records from the moment when all links are up.
        if (frames_ == 0 && std::ranges::count(sources, nullptr) > 0) { return; }
        hear(clock, sources);
        const size_t start = frames_;
        const size_t taken = std::min<size_t>(count, planes_[0].size() - start);
        bool sounds = false;
        for (size_t c = 0; c < sources.size(); ++c) {
            if (!sources[c]) { continue; }
            std::copy_n(sources[c], taken, planes_[c].begin() + long(start));
            sounds = sounds || std::any_of(sources[c], sources[c] + taken, [](float x) { return x != 0; });
        }
        if (sounds) { sounding_ += taken; }
        frames_ = start + taken;
    }
    void hear(const spa_io_clock& clock, const std::vector<const float*>& sources) {
        const int channel = awaited_;
        if (channel < 0 || !sources[size_t(channel)]) { return; }
        const float* const block = sources[size_t(channel)];
        const float* const end = block + clock.duration;
        const float* const first = std::find_if(block, end, [](float x) { return x != 0; });
        if (first == end) { return; }
        awaited_ = -1;
        soundAt_ = int64_t(clock.nsec) + (first - block) * 1'000'000'000 / 48000;
    }
    PipeWireClient client_;
    pw_filter* filter_ = nullptr;
    spa_hook hook_{};
    std::vector<void*> ports_;
    std::vector<pw_proxy*> links_;
    std::vector<std::vector<float>> planes_;
    std::atomic<size_t> frames_ = 0, sounding_ = 0;
    std::atomic<int> awaited_ = -1;
    std::atomic<int64_t> soundAt_ = 0;
};

}  // namespace brindlehum::test
