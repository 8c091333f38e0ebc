// Source formats and metadata as JSON.
#pragma once

#include "audio/speakers/source_format.h"
#include "command.h"
#include "library/meta/sound_meta.h"

namespace brindlehum::cli {

// `kind` "speakers" with `speakers`, "ambisonic" with `order` and `norm`, or "discrete" with `channels`; always
// with `displayName`. Enumerations by raw value.
Json toJson(const SourceFormat& format);
// The fields by their names, and `rating`.
Json toJson(const SoundMeta& meta);

}  // namespace brindlehum::cli
