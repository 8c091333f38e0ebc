// Reads the cue points of a part of a WAVE file (Multimedia Programming Interface and Data Specifications 1.0).
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "audio/write/wav_form.h"
#include "base/file_handle.h"
#include "meta/riff_walk.h"

namespace brindlehum::RIFFMeta {

// The points from frame `lower` to before `upper`, counted from `lower`, in the order of the file. Regions end at
// `upper`.
std::vector<WavCue> cuePoints(const FileHandle& file, const Walk& walk, int64_t lower, int64_t upper);

// A chunk of a plain WAV file, padded.
std::string riffChunk(const std::string& id, const std::string& body);

}  // namespace brindlehum::RIFFMeta
