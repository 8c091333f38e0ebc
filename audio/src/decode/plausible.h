// Limits a file's claimed length by the size of the file.
#pragma once

#include <cstdint>

namespace brindlehum {

// The densest readable coding is a constant FLAC block: 65,535 frames in some 12 bytes.
inline bool isPlausibleLength(int64_t frames, int64_t fileBytes) {
    return frames / 8192 <= fileBytes;
}

}  // namespace brindlehum
