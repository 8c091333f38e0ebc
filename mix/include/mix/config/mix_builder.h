// MixBuilder: decides how the channels of a source reach the outputs of a profile.
#pragma once

#include <optional>

#include "mix/config/mix_config.h"
#include "settings/output_profile.h"
#include "spatial/layout_matrix.h"

namespace brindlehum::MixBuilder {

// Pure; costs an AllRAD build for an Ambisonic source on speakers, so it stays off the render thread.
MixConfig config(const SourceFormat& source, int channels, const OutputProfile& profile, int deviceChannels,
                 ListenMode listen, const Rotation& rotation, bool monoToCenter,
                 const std::optional<UpmixSettings>& upmix);

}  // namespace brindlehum::MixBuilder
