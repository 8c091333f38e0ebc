// The coding of a compressed stream, its length, and where the piece begins in it.
#pragma once

#include "audio/decode/audio_file.h"
#include "decode/container_layout.h"
#include "decode/ffmpeg_input.h"

namespace brindlehum {

struct StreamFacts {
    AudioFileFacts facts;
    int64_t origin = 0;  // time in frames, as the packets count it, of the piece's first frame
};

// May read the whole file once (without decoding) where no header tells the length.
StreamFacts streamFacts(FFmpegInput& input, const FileHandle& file, Container container);

}  // namespace brindlehum
