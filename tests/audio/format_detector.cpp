// The format that each kind of evidence leads to, and the probe's summary line.
#include "audio/probe/format_detector.h"

#include <gtest/gtest.h>

#include <numeric>

#include "audio/probe/audio_file_info.h"

namespace brindlehum {
namespace {

struct Case {
    const char* name;
    int channels;
    std::vector<uint32_t> labels;
    uint32_t tag;
    const char* expected;  // display name
};

std::vector<uint32_t> family(uint32_t upper, uint32_t count) {
    std::vector<uint32_t> out(count);
    std::iota(out.begin(), out.end(), upper << 16);
    return out;
}

TEST(Detection, WeighsFactsAboveNamesAboveCounts) {
    constexpr uint32_t bFormat = 0x6B0004;
    const Case cases[] = {
        // Layout facts.
        {"x.wav", 4, {}, bFormat, "FuMa 1st order"},
        {"x.wav", 6, {}, bFormat, "5.1"},
        {"sn3d.wav", 4, {}, 190U << 16 | 4, "AmbiX 1st order"},
        {"x.wav", 9, {}, 191U << 16 | 9, "ACN/N3D 2nd order"},
        {"x.wav", 8, {}, 190U << 16 | 8, "7.1"},
        {"x.wav", 16, family(3, 16), 0, "ACN/N3D 3rd order"},
        {"x.wav", 4, {0x20000, 0x30001, 0x20002, 0x20003}, 0, "Quad"},
        {"x.wav", 4, {203, 200, 202, 201}, 0, "FuMa 1st order"},
        // Names.
        {"rain.amb", 4, {}, 0, "FuMa 1st order"},
        {"rain ambix.AMB", 4, {}, 0, "FuMa 1st order"},
        {"rain.amb", 9, {}, 0, "AmbiX 2nd order"},
        {"FuMa_take.wav", 4, {}, 0, "FuMa 1st order"},
        {"fuma_take.wav", 16, {}, 0, "9.1.6"},
        {"rain_acn_n3d.wav", 4, {}, 0, "ACN/N3D 1st order"},
        {"take foa.wav", 4, {1, 2, 5, 6}, 0, "AmbiX 1st order"},
        {"takefoa.wav", 4, {}, 0, "Quad"},
        {"ambix.d/take.wav", 4, {}, 0, "Quad"},
        {"take.ambix", 4, {}, 0, "Quad"},
        {"ambix.wav", 6, {}, 0, "5.1"},
        // One and two channels, against all other evidence.
        {"x.wav", 2, {2, 1}, 0, "Stereo"},
        {"x.wav", 1, {4}, 0, "Mono"},
        // Labels, then counts.
        {"x.wav", 6, {1, 3, 2, 5, 6, 4}, 0, "5.1 Film"},
        {"x.wav", 3, {1, 2, 3}, 0, "3-ch bed"},
        // The orders that a WAV file's channel mask asks for.
        {"x.wav", 8, {1, 2, 3, 4, 5, 6, 10, 11}, 0, "7.1 (WAVE order)"},
        {"x.wav", 12, {1, 2, 3, 4, 5, 6, 10, 11, 13, 15, 16, 18}, 0, "7.1.4 (WAVE order)"},
        {"x.wav", 10, {1, 2, 3, 4, 5, 6, 13, 15, 16, 18}, 0, "5.1.4"},
        {"x.wav", 12, {1, 2, 3, 4, 10, 11, 5, 6, 13, 15, 16, 18}, 0, "7.1.4"},
        {"x.wav", 6, {1, 3, 2, 5, 6, 14}, 0, "5.1"},
        {"x.wav", 16, {}, 0, "9.1.6"},
        {"x.wav", 65, {}, 0, "65-ch discrete"},
        {"x.wav", 0, {}, 0, "0-ch discrete"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(FormatDetector::detect(c.name, c.channels, c.labels, c.tag).displayName(), c.expected)
            << c.name << ", " << c.channels << " channels, tag " << c.tag;
    }
}

TEST(Detection, EachKeywordCountsByItself) {
    for (const char* word : {"ambix", "ambisonic", "b-format", "bformat", "b_format", "x_foa", "x foa", "foa_", "x_hoa",
                             "x hoa", "hoa_", "sn3d", "x_acn", "soundfield"}) {
        EXPECT_EQ(FormatDetector::detect(std::string("A ") + word + ".WAV", 16, {}, 0),
                  SourceFormat::ambisonic(3, AmbiNorm::sn3d))
            << word;
    }
}

TEST(Summary, NamesRateDepthAndChannels) {
    const auto line = [](const char* codec, double rate, int bits, bool isFloat, int channels) {
        AudioFileInfo info;
        info.codec = codec;
        info.sampleRate = rate;
        info.bitDepth = bits;
        info.isFloat = isFloat;
        info.channels = channels;
        return info.summary();
    };
    EXPECT_EQ(line("PCM", 48000, 24, false, 6), "48 kHz · 24-bit · 6 ch");
    EXPECT_EQ(line("PCM", 44100, 32, true, 1), "44.1 kHz · 32-bit float · mono");
    EXPECT_EQ(line("MP3", 192000, 0, false, 2), "192 kHz · MP3 · 2 ch");
}

TEST(AudioPaths, AreKnownByExtensionInAnyCase) {
    for (const char* name : {"a.wav", "A.WAV", "x.tar.mp4"}) { EXPECT_TRUE(AudioFileInfo::isAudioPath(name)); }
    for (const char* name : {"wav", ".wav", "a.", "a.wma", "a.wavx", "a.wav/b"}) {
        EXPECT_FALSE(AudioFileInfo::isAudioPath(name)) << name;
    }
}

}  // namespace
}  // namespace brindlehum
