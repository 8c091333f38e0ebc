// The bytes of a WAVE file before its samples.
#pragma once

#include <array>
#include <cstdint>
#include <ctime>
#include <string_view>

namespace brindlehum {

struct WavShape {
    int channels = 0;
    uint32_t rate = 0;  // Hz
    uint32_t mask = 0;  // dwChannelMask
};

namespace WavHeader {
inline constexpr int bytesPerSample = 3;
inline constexpr uint64_t riffSizeOffset = 4;
inline constexpr uint64_t dataSizeOffset = 674;
inline constexpr size_t size = 678;

// A header for 24-bit WAVE_FORMAT_EXTENSIBLE with a `bext` chunk made at `created` (local time). The sizes of the RIFF
// and of the data are 0.
std::array<uint8_t, size> make(const WavShape& shape, std::string_view description, const std::tm& created);
}  // namespace WavHeader

}  // namespace brindlehum
