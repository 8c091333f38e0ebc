// The silence that encoders add before and after a piece, as their headers state it.
#pragma once

#include <cstdint>
#include <optional>

#include "base/file_handle.h"

namespace brindlehum {

struct EncodedExtent {
    int64_t delay = 0;   // decoded frames before the first frame of the piece, including the decoder's own delay
    int64_t frames = 0;  // length of the piece; 0 when only the delay is known
};

// Reads the Xing or Info header of an MP3 file with its LAME extension: frame count, encoder delay and padding. None
// without such a header or without a frame count in it.
std::optional<EncodedExtent> mp3Extent(const FileHandle& file);

// Reads the gapless record "iTunSMPB" of AAC files: hexadecimal fields, of which the second to fourth are delay,
// padding and length.
std::optional<EncodedExtent> gaplessRecord(const char* text);

// Reads the packet table of a CAF file, if it counts priming or remainder frames.
std::optional<EncodedExtent> cafExtent(const FileHandle& file);

}  // namespace brindlehum
