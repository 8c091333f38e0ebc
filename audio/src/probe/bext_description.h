// Reads the description of a Broadcast Wave file through an already open handle.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "base/file_handle.h"

namespace brindlehum {

// As RIFFReader::bextDescription; `path` must have the extension of a WAVE file.
std::optional<std::string> bextDescription(const FileHandle& file, const std::filesystem::path& path);

}  // namespace brindlehum
