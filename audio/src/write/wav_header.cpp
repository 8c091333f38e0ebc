// Writes the header's fields in file order.
#include "write/wav_header.h"

#include <algorithm>
#include <cstdio>
#include <string>

namespace brindlehum::WavHeader {
namespace {

constexpr std::string_view pcmSubFormat("\x01\x00\x00\x00\x00\x00\x10\x00\x80\x00\x00\xAA\x00\x38\x9B\x71", 16);

class Fields {
public:
    explicit Fields(std::array<uint8_t, size>& bytes) : next_(bytes.data()) {}
    void number(uint32_t value, int bytes) {
        for (int i = 0; i < bytes; ++i) { *next_++ = uint8_t(value >> (8 * i)); }
    }
    // Writes the text cut to the field's length, followed by zeros.
    void text(std::string_view value, size_t length) {
        std::copy_n(value.begin(), std::min(value.size(), length), next_);
        next_ += length;
    }
    void id(std::string_view four) { text(four, 4); }
    void zeros(size_t count) { next_ += count; }

private:
    uint8_t* next_;
};

template <typename... Numbers>
std::string formatted(const char* format, Numbers... numbers) {
    std::array<char, 48> text{};
    std::snprintf(text.data(), text.size(), format, numbers...);
    return text.data();
}

}  // namespace

std::array<uint8_t, size> make(const WavShape& shape, std::string_view description, const std::tm& created) {
    std::array<uint8_t, size> bytes{};
    Fields fields(bytes);
    const auto frameBytes = uint32_t(shape.channels * bytesPerSample);
    fields.id("RIFF");
    fields.zeros(4);
    fields.id("WAVE");

    fields.id("fmt ");
    fields.number(40, 4);
    fields.number(0xFFFE, 2);
    fields.number(uint32_t(shape.channels), 2);
    fields.number(shape.rate, 4);
    fields.number(shape.rate * frameBytes, 4);
    fields.number(frameBytes, 2);
    fields.number(8 * bytesPerSample, 2);
    fields.number(22, 2);
    fields.number(8 * bytesPerSample, 2);
    fields.number(shape.mask, 4);
    fields.text(pcmSubFormat, pcmSubFormat.size());

    fields.id("bext");
    fields.number(602, 4);
    fields.text(description, 256);
    fields.text("Brindlehum", 32);
    fields.zeros(32);  // reference
    fields.text(formatted("%04d-%02d-%02d", created.tm_year + 1900, created.tm_mon + 1, created.tm_mday), 10);
    fields.text(formatted("%02d:%02d:%02d", created.tm_hour, created.tm_min, created.tm_sec), 8);
    fields.zeros(8);  // time reference: midnight
    fields.number(1, 2);
    fields.zeros(64 + 10 + 180);  // no UMID, no loudness, reserved

    fields.id("data");
    return bytes;
}

}  // namespace brindlehum::WavHeader
