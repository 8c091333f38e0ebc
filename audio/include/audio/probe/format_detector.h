// FormatDetector: decides how the channels of a file are to be read, from layout facts first and names second.
#pragma once

#include <cstdint>
#include <filesystem>
#include <vector>

#include "audio/speakers/source_format.h"

namespace brindlehum::FormatDetector {

// `layoutTag` is 0 without a layout. Pure; can't fail.
SourceFormat detect(const std::filesystem::path& path, int channels, const std::vector<uint32_t>& labels,
                    uint32_t layoutTag);

}  // namespace brindlehum::FormatDetector
