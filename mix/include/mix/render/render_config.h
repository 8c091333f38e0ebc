// RenderConfig: a MixConfig together with the flat record of it that the render side reads.
#pragma once

#include "core/mn_mix.h"
#include "mix/config/mix_config.h"

namespace brindlehum {

// Owns the matrix that `record` points to, and never changes once made. After publishing `record` through a slot, keep
// the object until the render side has moved on (see keepFor). Made on the control side.
struct RenderConfig {
    // `upmix` is the processor for config.upmix; it is ignored when the configuration asks for none, and must outlive
    // this object. A configuration that asks for an upmix and has no processor is silent at every width: its matrix
    // reads outputs that nobody makes.
    explicit RenderConfig(MixConfig config, mn_upmix* upmix = nullptr);
    RenderConfig(const RenderConfig&) = delete;
    RenderConfig& operator=(const RenderConfig&) = delete;

    const MixConfig config;
    const mn_mix_config record;
};

}  // namespace brindlehum
