// RenderBench: a render context with rings, configurations and a device of plain vectors, all owned by the test.
#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "core/mn_ring.h"
#include "mix/render/render_config.h"
#include "mix/render/render_context.h"
#include "upmix/upmixer.h"

namespace brindlehum::test {

class RenderBench {
public:
    explicit RenderBench(int deviceChannels) : device_(size_t(deviceChannels)) {}

    // A ring of `channels` planes, frame i of channel c holding signal(i, c) and standing at position 2 i.
    mn_ring* ring(int channels, int frames, const std::function<float(int frame, int channel)>& signal) {
        rings_.emplace_back(mn_ring_create(channels, std::max(frames, 1)), mn_ring_destroy);
        auto samples = std::vector<std::vector<float>>(size_t(channels), std::vector<float>(size_t(frames)));
        std::vector<const float*> planes;
        auto positions = std::vector<double>(size_t(frames));
        for (int i = 0; i < frames; ++i) { positions[size_t(i)] = 2.0 * i; }
        for (int c = 0; c < channels; ++c) {
            for (int i = 0; i < frames; ++i) { samples[size_t(c)][size_t(i)] = signal(i, c); }
            planes.push_back(samples[size_t(c)].data());
        }
        mn_ring_write(rings_.back().get(), planes.data(), positions.data(), frames);
        return rings_.back().get();
    }

    const mn_mix_config* config(MixConfig config) {
        configs_.push_back(std::make_unique<RenderConfig>(std::move(config)));
        return &configs_.back()->record;
    }
    // One that runs behind the upmixer and asks for what that does.
    const mn_mix_config* config(MixConfig config, const Upmixer& upmixer) {
        config.upmix = upmixer.request();
        configs_.push_back(std::make_unique<RenderConfig>(std::move(config), upmixer.raw()));
        return &configs_.back()->record;
    }
    const mn_mix_config* config(int inputs, int rows, std::vector<float> gains) {
        return config(mixConfig(inputs, rows, std::move(gains)));
    }
    const mn_mix_config* binaural(int inputs, int rows, std::vector<float> gains, int left = 0, int right = 1) {
        MixConfig headphones = mixConfig(inputs, rows, std::move(gains));
        headphones.toBinaural = true;
        headphones.binLeft = left;
        headphones.binRight = right;
        return config(std::move(headphones));
    }
    static MixConfig mixConfig(int inputs, int rows, std::vector<float> gains) {
        MixConfig config;
        config.inChannels = inputs;
        config.rows = rows;
        config.matrix = std::move(gains);
        return config;
    }

    // Publishes both; the next block fades to them.
    void play(mn_ring* ring, const mn_mix_config* config) {
        context.setRing(ring);
        context.setConfig(config);
    }

    // Renders a block into planes that hold other values before; the planes named in `absent` are null.
    const std::vector<std::vector<float>>& render(int frames, const std::vector<int>& absent = {}) {
        std::vector<float*> planes;
        for (auto& plane : device_) {
            plane.assign(size_t(frames), 7);
            planes.push_back(plane.data());
        }
        for (const int c : absent) { planes[size_t(c)] = nullptr; }
        status = context.render(uint32_t(frames), {planes.data(), int32_t(planes.size()), uint32_t(frames)});
        for (size_t c = 0; c < heard_.size(); ++c) {
            heard_[c].insert(heard_[c].end(), device_[c].begin(), device_[c].end());
        }
        return device_;
    }
    // From now on collects the sound of the first `channels` channels.
    void listen(int channels) { heard_.assign(size_t(channels), {}); }
    const std::vector<float>& heard(int channel) const { return heard_[size_t(channel)]; }

    RenderContext context;
    int32_t status = -1;

private:
    std::vector<std::vector<float>> device_;
    std::vector<std::vector<float>> heard_;
    std::vector<std::unique_ptr<mn_ring, decltype(&mn_ring_destroy)>> rings_;
    std::vector<std::unique_ptr<RenderConfig>> configs_;
};

}  // namespace brindlehum::test
