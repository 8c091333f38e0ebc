// The silence before and after a piece, as encoders state it in headers.
#pragma once

#include <cstdint>
#include <optional>

#include "base/file_handle.h"

namespace brindlehum {

struct EncodedExtent {
    int64_t delay = 0;   // decoded frames before the first of the piece, the decoder's own delay included
    int64_t frames = 0;  // of the piece; 0 when only the delay is known
};

// The Xing or Info header of an MP3 file with its LAME extension: frame count, encoder delay and padding. None
// without such a header or without a frame count in it.
std::optional<EncodedExtent> mp3Extent(const FileHandle& file);

// The gapless record "iTunSMPB" of AAC files: hexadecimal fields; the second to fourth are delay, padding and
// length.
std::optional<EncodedExtent> gaplessRecord(const char* text);

// The packet table of a CAF file, when it counts priming or remainder frames.
std::optional<EncodedExtent> cafExtent(const FileHandle& file);

}  // namespace brindlehum
