// Opening an audio file through a handle that is open already, so that a probe opens it only once.
#pragma once

#include <filesystem>
#include <memory>

#include "audio/decode/audio_file.h"
#include "base/file_handle.h"

namespace brindlehum {

// As AudioFile::open; `path` names the file in errors and hints at raw streams.
std::unique_ptr<AudioFile> openAudioFile(const std::shared_ptr<FileHandle>& handle, const std::filesystem::path& path,
                                         const std::function<bool()>& stop);

}  // namespace brindlehum
