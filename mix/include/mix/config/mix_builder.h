// MixBuilder: decides how the channels of a source reach the outputs of a profile.
#pragma once

#include <optional>

#include "mix/config/mix_config.h"
#include "settings/output_profile.h"
#include "spatial/layout_matrix.h"

namespace brindlehum::MixBuilder {

// The matrix from `channels` source channels, which mean `source`, to a device of `deviceChannels` channels (at least 1
// is assumed). `upmix` counts only where it is enabled and applies. Pure; any thread but the render thread, since an
// Ambisonic source on speakers costs an AllRAD build.
MixConfig config(const SourceFormat& source, int channels, const OutputProfile& profile, int deviceChannels,
                 ListenMode listen, const Rotation& rotation, bool monoToCenter,
                 const std::optional<UpmixSettings>& upmix);

}  // namespace brindlehum::MixBuilder
