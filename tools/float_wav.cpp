// A WAV file of 32-bit floats.
#include "float_wav.h"

#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <bit>
#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <cstring>

#include "base/error.h"

namespace brindlehum::cli {
namespace {

static_assert(std::endian::native == std::endian::little, "samples are written as they lie in memory");

// Little-endian fields of a RIFF header.
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
constexpr uint64_t headerSize = 12 + 36 + 48 + 12 + 8;  // RIFF, ds64 or its place, fmt, fact, head of data
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
    h.number<uint32_t>(0);  // no further chunk sizes

    h.id("fmt ");
    h.number<uint32_t>(40);
    h.number(extensible);
    h.number(uint16_t(channels));
    h.number(sampleRate);
    h.number<uint32_t>(sampleRate * frameBytes);
    h.number(frameBytes);
    h.number<uint16_t>(32);  // bits a sample
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

FloatWav::FloatWav(std::filesystem::path target, int channels, double sampleRate, uint32_t mask)
    : target_(std::move(target)), channels_(channels), sampleRate_(uint32_t(std::lround(sampleRate))), mask_(mask) {
    std::string name = (target_.parent_path() / ".brindlehum-XXXXXX").native();
    const int descriptor = mkstemp(name.data());
    if (descriptor < 0) { fail("Couldn't write"); }
    temporary_ = name;
    const mode_t withheld = umask(0);
    umask(withheld);
    fchmod(descriptor, 0666 & ~withheld);
    file_.reset(fdopen(descriptor, "wb"));
    if (!file_) {
        const int reason = errno;
        close(descriptor);
        unlink(temporary_.c_str());
        errno = reason;
        fail("Couldn't write");
    }
    writeHeader();
}

FloatWav::~FloatWav() {
    if (!temporary_.empty()) { unlink(temporary_.c_str()); }
}

void FloatWav::fail(const char* what) const {
    throw Error(std::string(what) + " " + target_.native() + ": " + std::strerror(errno));
}

void FloatWav::writeHeader() {
    const std::string header = floatWavHeader(channels_, sampleRate_, mask_, frames_);
    if (std::fwrite(header.data(), 1, header.size(), file_.get()) != header.size()) { fail("Couldn't write"); }
}

void FloatWav::write(const float* const* planes, int frames) {
    const auto channels = size_t(channels_);
    interleaved_.resize(channels * size_t(frames));
    for (size_t c = 0; c < channels; ++c) {
        for (size_t i = 0; i < size_t(frames); ++i) { interleaved_[i * channels + c] = planes[c][i]; }
    }
    if (std::fwrite(interleaved_.data(), sizeof(float), interleaved_.size(), file_.get()) != interleaved_.size()) {
        fail("Couldn't write");
    }
    frames_ += frames;
}

void FloatWav::commit() {
    if (std::fseek(file_.get(), 0, SEEK_SET) != 0) { fail("Couldn't write"); }
    writeHeader();
    if (std::fflush(file_.get()) != 0 || fsync(fileno(file_.get())) != 0) { fail("Couldn't write"); }
    if (std::rename(temporary_.c_str(), target_.c_str()) != 0) { fail("Couldn't replace"); }
    temporary_.clear();
}

}  // namespace brindlehum::cli
