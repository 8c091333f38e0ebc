// Writes a WAV file of 32-bit floats.
#include "float_wav.h"

#include <array>
#include <bit>
#include <cmath>

namespace brindlehum::cli {
namespace {

static_assert(std::endian::native == std::endian::little, "samples are written as they lie in memory");

// Builds the little-endian fields of a RIFF header.
class HeaderBytes {
public:
    void id(const char (&text)[5]) { bytes_.append(text, 4); }
    template <typename Number>
    void number(Number value) {
        bytes_.append(reinterpret_cast<const char*>(&value), sizeof value);
    }
    const std::string& bytes() const { return bytes_; }

private:
    std::string bytes_;
};

constexpr uint16_t extensible = 0xFFFE;
// KSDATAFORMAT_SUBTYPE_IEEE_FLOAT
constexpr std::array<uint8_t, 16> floatGuid = {3, 0, 0, 0, 0, 0, 0x10, 0, 0x80, 0, 0, 0xAA, 0, 0x38, 0x9B, 0x71};
constexpr uint64_t headerSize = 12 + 36 + 48 + 12 + 8;  // RIFF, ds64 or its placeholder, fmt, fact, head of data
constexpr uint32_t inDs64 = 0xFFFFFFFF;

}  // namespace

std::string floatWavHeader(int channels, uint32_t sampleRate, uint32_t mask, int64_t frames) {
    const auto frameBytes = uint16_t(channels * 4);
    const uint64_t dataSize = uint64_t(frames) * frameBytes;
    const uint64_t riffSize = headerSize - 8 + dataSize;
    const bool large = riffSize >= inDs64;

    HeaderBytes h;
    large ? h.id("RF64") : h.id("RIFF");
    h.number(large ? inDs64 : uint32_t(riffSize));
    h.id("WAVE");
    large ? h.id("ds64") : h.id("JUNK");
    h.number<uint32_t>(28);
    h.number<uint64_t>(large ? riffSize : 0);
    h.number<uint64_t>(large ? dataSize : 0);
    h.number<uint64_t>(large ? uint64_t(frames) : 0);
    h.number<uint32_t>(0);  // no other chunk sizes

    h.id("fmt ");
    h.number<uint32_t>(40);
    h.number(extensible);
    h.number(uint16_t(channels));
    h.number(sampleRate);
    h.number<uint32_t>(sampleRate * frameBytes);
    h.number(frameBytes);
    h.number<uint16_t>(32);  // bits per sample
    h.number<uint16_t>(22);  // bytes that follow
    h.number<uint16_t>(32);  // valid bits
    h.number(mask);
    h.number(floatGuid);

    h.id("fact");
    h.number<uint32_t>(4);
    h.number(large ? inDs64 : uint32_t(frames));
    h.id("data");
    h.number(large ? inDs64 : uint32_t(dataSize));
    return h.bytes();
}

FloatWav::FloatWav(const std::filesystem::path& target, int channels, double sampleRate, uint32_t mask)
    : file_(target), channels_(channels), sampleRate_(uint32_t(std::lround(sampleRate))), mask_(mask) {
    writeHeader();
}

void FloatWav::writeHeader() {
    file_.writeAt(0, floatWavHeader(channels_, sampleRate_, mask_, frames_));
}

void FloatWav::write(const float* const* planes, int frames) {
    const auto channels = size_t(channels_);
    interleaved_.resize(channels * size_t(frames));
    for (size_t c = 0; c < channels; ++c) {
        for (size_t i = 0; i < size_t(frames); ++i) { interleaved_[i * channels + c] = planes[c][i]; }
    }
    file_.write({reinterpret_cast<const char*>(interleaved_.data()), interleaved_.size() * sizeof(float)});
    frames_ += frames;
}

void FloatWav::commit() {
    writeHeader();
    file_.commit();
}

}  // namespace brindlehum::cli
