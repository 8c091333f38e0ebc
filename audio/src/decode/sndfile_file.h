// Reading of the PCM family and FLAC through libsndfile.
#pragma once

#include <memory>

#include "audio/decode/audio_file.h"
#include "base/file_handle.h"
#include "decode/container_layout.h"

namespace brindlehum {

// Null when libsndfile doesn't know the file, or knows it less well than FFmpeg does (MPEG audio, ALAC, a length
// that can't be true).
std::unique_ptr<AudioFile> openWithSndfile(const std::shared_ptr<FileHandle>& handle, Container container,
                                           const std::function<bool()>& stop);

}  // namespace brindlehum
