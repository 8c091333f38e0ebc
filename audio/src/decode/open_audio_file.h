// Opens an audio file through an already open handle, so that a probe opens the file only once.
#pragma once

#include <filesystem>
#include <memory>

#include "audio/decode/audio_file.h"
#include "base/file_handle.h"

namespace brindlehum {

// As AudioFile::open; `path` names the file in errors and helps to recognise raw streams.
std::unique_ptr<AudioFile> openAudioFile(const std::shared_ptr<FileHandle>& handle, const std::filesystem::path& path,
                                         const std::function<bool()>& stop);

}  // namespace brindlehum
