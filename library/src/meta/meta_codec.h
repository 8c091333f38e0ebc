// SoundMeta as the JSON text of a catalog row.
#pragma once

#include <string>
#include <string_view>

#include "library/meta/sound_meta.h"

namespace brindlehum {

// Returns "{}" when a text isn't UTF-8.
std::string encodeMeta(const SoundMeta& meta);
// Returns an empty record for a text that isn't a record in JSON.
SoundMeta decodeMeta(std::string_view json);

}  // namespace brindlehum
