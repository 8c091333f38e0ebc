// The pieces of a probe on one open file, so that it is opened once only.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "audio/decode/audio_file.h"
#include "base/file_handle.h"

namespace brindlehum {

// As AudioFile::open; `path` names the file in errors and hints at raw streams.
std::unique_ptr<AudioFile> openAudioFile(const std::shared_ptr<FileHandle>& handle, const std::filesystem::path& path);

// As RIFFReader::bextDescription.
std::optional<std::string> bextDescription(const FileHandle& file, const std::filesystem::path& path);

}  // namespace brindlehum
