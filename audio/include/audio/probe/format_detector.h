// FormatDetector: decides what the channels of a file mean, first by its layout, then by its name.
#pragma once

#include <cstdint>
#include <filesystem>
#include <vector>

#include "audio/speakers/source_format.h"

namespace brindlehum::FormatDetector {

// `layoutTag` is 0 when there is no layout. Pure; can't fail.
SourceFormat detect(const std::filesystem::path& path, int channels, const std::vector<uint32_t>& labels,
                    uint32_t layoutTag);

}  // namespace brindlehum::FormatDetector
