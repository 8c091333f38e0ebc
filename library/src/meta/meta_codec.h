// SoundMeta as the JSON text of a catalog row.
#pragma once

#include <string>
#include <string_view>

#include "library/meta/sound_meta.h"

namespace brindlehum {

// "{}" for texts that aren't UTF-8.
std::string encodeMeta(const SoundMeta& meta);
// An empty record for what isn't the JSON of one.
SoundMeta decodeMeta(std::string_view json);

}  // namespace brindlehum
