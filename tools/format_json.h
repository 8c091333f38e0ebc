// Writes source formats and metadata as JSON.
#pragma once

#include "audio/speakers/source_format.h"
#include "command.h"
#include "library/meta/sound_meta.h"

namespace brindlehum::cli {

// `kind` is "speakers" with `speakers`, "ambisonic" with `order` and `norm`, or "discrete" with `channels`;
// `displayName` is always there. Enumerations by raw value.
Json toJson(const SourceFormat& format);
// The fields under their own names, and `rating`.
Json toJson(const SoundMeta& meta);

}  // namespace brindlehum::cli
