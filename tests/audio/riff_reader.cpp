// The BWF description: found, cut, trimmed and repaired as the field is defined, among the first chunks only.
#include "audio/probe/riff_reader.h"

#include <gtest/gtest.h>

#include "support/audio_files.h"

namespace brindlehum {
namespace {

using namespace test;

std::string wave(const std::string& chunks, const std::string& id = "RIFF") {
    return id + le32(uint32_t(4 + chunks.size())) + "WAVE" + chunks;
}

std::string bext(std::string description) {
    description.resize(602, '\0');
    return riffChunk("bext", description);
}

std::string junk(int count) {
    std::string out;
    for (int i = 0; i < count; ++i) { out += riffChunk("JUNK", "odd"); }
    return out;
}

TEST(BextDescription, IsReadAsTheFieldIsDefined) {
    using Text = std::optional<std::string>;
    struct Case {
        const char* what;
        std::string name, bytes;
        Text expected;
    };
    const std::string full(256, 'x');
    const std::string rf64 = riffChunk("ds64", std::string(28, '\0'));
    const Case cases[] = {
        {"plain", "a.wav", wave(bext("Rain")), "Rain"},
        {"upper-case extension", "a.BWF", wave(bext("Rain")), "Rain"},
        {"RF64", "a.rf64", wave(rf64 + bext("Rain"), "RF64"), "Rain"},
        {"BW64", "a.amb", wave(bext("Rain"), "BW64"), "Rain"},
        {"whole field", "a.wav", wave(bext(full + "originator")), full},
        {"trimmed", "a.wav", wave(bext(" \r\n\tRain  on \xC2\xA0\n")), "Rain  on"},
        {"empty", "a.wav", wave(bext("")), Text()},
        {"bad bytes", "a.wav", wave(bext("R\xFF\xC3s \xE2\x82")), "R\uFFFD\uFFFDs \uFFFD"},
        {"short chunk", "a.wav", wave("bext" + le32(4) + "Rain"), "Rain"},
        {"behind odd chunks", "a.wav", wave(junk(63) + bext("Rain")), "Rain"},
        {"behind too many chunks", "a.wav", wave(junk(64) + bext("Rain")), Text()},
        {"behind the data", "a.wav", wave(riffChunk("data", "abcde") + bext("Rain")), "Rain"},
        {"behind 64-bit data", "a.wav", wave("data" + le32(0xFFFFFFFF) + bext("Rain"), "RF64"), Text()},
        {"size past the end", "a.wav", wave("JUNK" + le32(0xFFFFFFF0) + bext("Rain")), Text()},
        {"cut off", "a.wav", wave("").substr(0, 11), Text()},
    };
    const TempFolder folder;
    for (const Case& c : cases) {
        writeBytes(folder / c.name, c.bytes);
        EXPECT_EQ(RIFFReader::bextDescription(folder / c.name), c.expected) << c.what;
    }
    EXPECT_EQ(RIFFReader::bextDescription(folder / "missing.wav"), Text());
}

}  // namespace
}  // namespace brindlehum
