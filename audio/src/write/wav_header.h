// The bytes of a WAVE file before its samples.
#pragma once

#include <cstdint>
#include <ctime>
#include <optional>
#include <string>

#include "audio/write/wav_form.h"

namespace brindlehum {

// A header of WAVE_FORMAT_EXTENSIBLE, `bext`, the further chunks and the head of `data`. Its sizes are 0.
struct WavHeader {
    static constexpr size_t usualBytes = 678;  // of 24 bits without further chunks and coding history
    static constexpr uint64_t riffSizeOffset = 4;

    // `form` has a rate and channels that fit. `created` is local time.
    WavHeader(const WavForm& form, const std::tm& created);

    std::string bytes;                         // the last four are the size of the samples
    std::optional<uint64_t> frameCountOffset;  // in `fact`, which only floats need
};

}  // namespace brindlehum
