// RenderConfig: the one place that turns the control side's value into the flat record.
#include "mix/render/render_config.h"

#include <algorithm>
#include <utility>

namespace brindlehum {
namespace {

// The same configuration with a matrix of exactly the size that the record states.
MixConfig withWholeMatrix(MixConfig config) {
    config.matrix.resize(size_t(std::max(config.rows, 0)) * size_t(std::max(config.inChannels, 0)));
    return config;
}

mn_mix_config recordOf(const MixConfig& config, mn_upmix* upmix) {
    const bool lacksProcessor = config.upmix && upmix == nullptr;
    return {.in_channels = config.inChannels,
            .rows = config.rows,
            .to_binaural = config.toBinaural ? 1 : 0,
            .bin_left = config.binLeft,
            .bin_right = config.binRight,
            .matrix = lacksProcessor ? nullptr : config.matrix.data(),
            .upmix = config.upmix ? upmix : nullptr,
            .upmix_offset = config.upmixOffset};
}

}  // namespace

RenderConfig::RenderConfig(MixConfig mix, mn_upmix* upmix)
    : config(withWholeMatrix(std::move(mix))), record(recordOf(config, upmix)) {}

}  // namespace brindlehum
