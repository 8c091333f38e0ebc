// A source format as JSON.
#pragma once

#include "audio/source_format.h"
#include "command.h"

namespace brindlehum::cli {

// `kind` "speakers" with `speakers`, "ambisonic" with `order` and `norm`, or "discrete" with `channels`; always
// with `displayName`. Enumerations by raw value.
Json toJson(const SourceFormat& format);

}  // namespace brindlehum::cli
