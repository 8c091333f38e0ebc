// MixBuilder: decides how the channels of a source reach the outputs of a profile.
#pragma once

#include <optional>

#include "mix/config/mix_config.h"
#include "settings/output_profile.h"
#include "spatial/layout_matrix.h"

namespace brindlehum::MixBuilder {

// The speakers that an upmix of this source would play on; none when it would fill none, and for a source wider than
// the processor takes. On headphones it plays in a virtual 7.1.4 room.
std::optional<SpeakerList> upmixRoom(const SourceFormat& source, int channels, const OutputProfile& profile);

// The matrix from `channels` source channels, laid out as `source`, to a device of `deviceChannels` channels (values
// below 1 count as 1). `upmix` is used only where it is enabled and applies. Pure; any thread but the render thread,
// since an Ambisonic source on speakers costs an AllRAD build.
MixConfig config(const SourceFormat& source, int channels, const OutputProfile& profile, int deviceChannels,
                 ListenMode listen, const Rotation& rotation, bool monoToCenter,
                 const std::optional<UpmixSettings>& upmix);

}  // namespace brindlehum::MixBuilder
