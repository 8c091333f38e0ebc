// The description of a Broadcast Wave file, read through a handle that is open already.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "base/file_handle.h"

namespace brindlehum {

// As RIFFReader::bextDescription; the extension of `path` must be that of a WAVE file.
std::optional<std::string> bextDescription(const FileHandle& file, const std::filesystem::path& path);

}  // namespace brindlehum
