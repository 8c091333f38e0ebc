// The metadata that other programs' tags give, by a table of common names.
#pragma once

#include <filesystem>
#include <functional>

#include "library/meta/sound_meta.h"

namespace brindlehum {

// Description, title, designer, keywords and library. Never fails. Stops reading when `stop` returns true.
SoundMeta commonMetadata(const std::filesystem::path& file, const std::function<bool()>& stop);

}  // namespace brindlehum
