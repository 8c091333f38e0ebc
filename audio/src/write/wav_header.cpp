// Writes the header's fields in file order.
#include "write/wav_header.h"

#include <array>
#include <cmath>
#include <cstdio>
#include <string_view>

#include "write/wav_cues.h"

namespace brindlehum {
namespace {

// KSDATAFORMAT_SUBTYPE_PCM and _IEEE_FLOAT differ in their first byte, the plain format tag.
constexpr std::string_view subFormatEnd("\x00\x00\x00\x00\x00\x10\x00\x80\x00\x00\xAA\x00\x38\x9B\x71", 15);
constexpr size_t bextBytes = 602;  // without a coding history

class Fields {
public:
    explicit Fields(std::string& bytes) : bytes_(bytes) {}
    void number(uint64_t value, int bytes) {
        for (int i = 0; i < bytes; ++i) { bytes_ += char(uint8_t(value >> (8 * i))); }
    }
    // Writes the text cut to the field's length, followed by zeros.
    void text(std::string_view value, size_t length) {
        value = value.substr(0, length);
        bytes_.append(value).append(length - value.size(), '\0');
    }
    void id(std::string_view four) { text(four, 4); }
    void zeros(size_t count) { bytes_.append(count, '\0'); }

private:
    std::string& bytes_;
};

template <typename... Numbers>
std::string formatted(const char* format, Numbers... numbers) {
    std::array<char, 48> text{};
    std::snprintf(text.data(), text.size(), format, numbers...);
    return text.data();
}

void writeFormat(Fields& fields, const WavForm& form) {
    const auto bits = uint32_t(8 * bytesOf(form.samples));
    const auto rate = uint32_t(std::lround(form.sampleRate));
    const auto frameBytes = uint32_t(form.channels * bytesOf(form.samples));
    fields.id("fmt ");
    fields.number(40, 4);
    fields.number(0xFFFE, 2);
    fields.number(uint32_t(form.channels), 2);
    fields.number(rate, 4);
    fields.number(rate * frameBytes, 4);
    fields.number(frameBytes, 2);
    fields.number(bits, 2);
    fields.number(22, 2);
    fields.number(bits, 2);
    fields.number(form.mask, 4);
    fields.number(form.samples == WavSamples::float32 ? 3 : 1, 1);
    fields.text(subFormatEnd, subFormatEnd.size());
}

void writeBext(Fields& fields, const WavNotes& notes, const std::tm& now) {
    fields.id("bext");
    fields.number(bextBytes + notes.codingHistory.size(), 4);
    fields.text(notes.description, 256);
    fields.text(notes.originator, 32);
    fields.text(notes.originatorReference, 32);
    fields.text(
        notes.date.empty() ? formatted("%04d-%02d-%02d", now.tm_year + 1900, now.tm_mon + 1, now.tm_mday) : notes.date,
        10);
    fields.text(notes.time.empty() ? formatted("%02d:%02d:%02d", now.tm_hour, now.tm_min, now.tm_sec) : notes.time, 8);
    fields.number(notes.timeReference.value_or(0), 8);
    fields.number(1, 2);
    fields.zeros(64 + 10 + 180);  // no UMID, no loudness, reserved
    fields.text(notes.codingHistory, notes.codingHistory.size() + notes.codingHistory.size() % 2);
}

}  // namespace

WavHeader::WavHeader(const WavForm& form, const std::tm& created) {
    Fields fields(bytes);
    fields.id("RIFF");
    fields.zeros(4);
    fields.id("WAVE");
    writeFormat(fields, form);
    writeBext(fields, form.notes, created);
    for (const std::string& chunks : {form.notes.chunks, cueChunks(form.notes.cues)}) {
        fields.text(chunks, chunks.size());
    }
    if (form.samples == WavSamples::float32) {
        fields.id("fact");
        fields.number(4, 4);
        frameCountOffset = bytes.size();
        fields.zeros(4);
    }
    fields.id("data");
    fields.zeros(4);
}

}  // namespace brindlehum
