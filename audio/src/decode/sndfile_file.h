// Reads the PCM family and FLAC through libsndfile.
#pragma once

#include <memory>

#include "audio/decode/audio_file.h"
#include "base/file_handle.h"
#include "decode/container_layout.h"

namespace brindlehum {

// Null when libsndfile doesn't know the file or reads it worse than FFmpeg (MPEG audio, ALAC, an implausible length).
std::unique_ptr<AudioFile> openWithSndfile(const std::shared_ptr<FileHandle>& handle, Container container,
                                           const std::function<bool()>& stop);

}  // namespace brindlehum
