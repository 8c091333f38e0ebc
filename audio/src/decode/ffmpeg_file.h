// Reads MP3, AAC, ALAC, MP4 and all other files that libsndfile doesn't read, through the FFmpeg libraries.
#pragma once

#include <memory>

#include "audio/decode/audio_file.h"
#include "base/file_handle.h"
#include "decode/container_layout.h"

namespace brindlehum {

// Null when FFmpeg finds no audio in the file, or none with a channel count and a rate. FFmpegInput::open explains
// `trustWeakEvidence`.
std::unique_ptr<AudioFile> openWithFFmpeg(const std::shared_ptr<FileHandle>& handle, Container container,
                                          bool trustWeakEvidence, const std::function<bool()>& stop);

}  // namespace brindlehum
