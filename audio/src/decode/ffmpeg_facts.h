// The coding of a compressed stream, its length, and the time at which the piece begins in it.
#pragma once

#include "audio/decode/audio_file.h"
#include "decode/container_layout.h"
#include "decode/ffmpeg_input.h"

namespace brindlehum {

struct StreamFacts {
    AudioFileFacts facts;
    int64_t origin = 0;  // time of the piece's first frame, in frames, on the clock of the packets
};

// May read the whole file once (without decoding) when no header states the length.
StreamFacts streamFacts(FFmpegInput& input, const FileHandle& file, Container container);

}  // namespace brindlehum
