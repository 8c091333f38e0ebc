// RenderConfig: a MixConfig together with the flat record of it that the render side reads.
#pragma once

#include "core/mn_mix.h"
#include "mix/config/mix_config.h"

namespace brindlehum {

// Owns the matrix that `record` points to, and never changes after construction. Once `record` has been published
// through a slot, keep the object until the render side has moved on (see keepFor). Made on the control side.
struct RenderConfig {
    // `upmix` is the processor for config.upmix and must outlive this object; it is ignored when the configuration asks
    // for none. A configuration that asks for an upmix and has no processor is silent at every width, since its matrix
    // reads outputs that nothing produces.
    explicit RenderConfig(MixConfig config, mn_upmix* upmix = nullptr);
    RenderConfig(const RenderConfig&) = delete;
    RenderConfig& operator=(const RenderConfig&) = delete;

    const MixConfig config;
    const mn_mix_config record;
};

}  // namespace brindlehum
