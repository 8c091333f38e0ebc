// RenderConfig: a MixConfig in the form that the render side reads.
#pragma once

#include <algorithm>
#include <vector>

#include "core/mn_mix.h"
#include "mix/config/mix_config.h"

namespace brindlehum {

// Owns the matrix that `record` points to; neither is changed once the record has been published.
struct RenderConfig {
    explicit RenderConfig(const MixConfig& config) : matrix(config.matrix) {
        const size_t cells = size_t(std::max(config.rows, 0)) * size_t(std::max(config.inChannels, 0));
        matrix.resize(std::max<size_t>(cells, 1));
        record.in_channels = config.inChannels;
        record.rows = config.rows;
        record.to_binaural = config.toBinaural ? 1 : 0;
        record.bin_left = config.binLeft;
        record.bin_right = config.binRight;
        record.matrix = matrix.data();
        record.upmix_offset = config.upmixOffset;
    }
    RenderConfig(const RenderConfig&) = delete;
    RenderConfig& operator=(const RenderConfig&) = delete;

    std::vector<float> matrix;
    mn_mix_config record{};
};

}  // namespace brindlehum
