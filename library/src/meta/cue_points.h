// The cue points of a WAVE file, cut to a part of it (Multimedia Programming Interface and Data Specifications 1.0).
#pragma once

#include <cstdint>
#include <string>

#include "base/file_handle.h"
#include "meta/riff_walk.h"

namespace brindlehum::RIFFMeta {

// A `cue ` chunk with the points from frame `lower` to before `upper`, counted from `lower`, and a `LIST` chunk of type
// `adtl` with what belongs to them; empty without such points.
std::string cuePoints(const FileHandle& file, const Walk& walk, int64_t lower, int64_t upper);

// A chunk of a plain WAV file, padded.
std::string riffChunk(const std::string& id, const std::string& body);

}  // namespace brindlehum::RIFFMeta
