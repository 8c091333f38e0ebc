// Channel layouts that FFmpeg and hand-made headers write, read back from the container.
#include <gtest/gtest.h>

#include <complex>

#include "audio/probe/audio_file_info.h"
#include "caf_bytes.h"
#include "reading.h"

namespace brindlehum {
namespace {

using namespace test;

std::string detected(const std::filesystem::path& path) {
    return AudioFileInfo::load(path).detected.displayName();
}

// Channel c of FFmpeg's native order gets a tone of 300 + 100 c Hz, so that a layout in another order than its samples
// shows, and not only a wrong set of speakers.
std::string toneExpression(int channels) {
    std::string out;
    for (int c = 0; c < channels; ++c) {
        if (c > 0) { out += '|'; }
        out.append("sin(2*PI*t*").append(std::to_string(300 + 100 * c)).append(")/2");
    }
    return out;
}

// The tone that a channel holds.
int loudestTone(const std::vector<float>& x, int tones, double rate) {
    std::vector<double> levels;
    for (int t = 0; t < tones; ++t) {
        std::complex<double> sum;
        for (size_t i = 0; i < x.size(); ++i) {
            sum += double(x[i]) * std::polar(1.0, 6.283185307 * (300 + 100 * t) * double(i) / rate);
        }
        levels.push_back(std::abs(sum));
    }
    return int(std::ranges::max_element(levels) - levels.begin());
}

TEST(ContainerLayouts, NameTheSpeakerThatEachChannelWasWrittenFor) {
    using enum SpeakerID;
    const SpeakerList surround = {L, R, C, LFE, Ls, Rs};
    const SpeakerList seven = {L, R, C, LFE, Lrs, Rrs, Ls, Rs};
    const std::tuple<const char*, SpeakerList, std::vector<const char*>> layouts[] = {
        {"5.1", surround, {"a.wav", "a.w64", "a.caf", "a.aiff", "a.mov", "a.flac", "alac.m4a", "aac.m4a"}},
        {"quad", {L, R, Ls, Rs}, {"a.wav", "a.caf", "a.aiff", "a.mov", "a.flac"}},
        {"7.1", seven, {"a.wav", "a.w64", "a.flac", "aac.m4a"}},
        {"4.0", {L, R, C, Cs}, {"a.wav", "a.caf", "a.mov", "a.flac", "alac.m4a", "aac.m4a"}},
    };
    const TempFolder folder;
    for (const auto& [name, list, files] : layouts) {
        for (const char* file : files) {
            SCOPED_TRACE(std::string(name) + " in " + file);
            const std::string coder = std::string(file) == "alac.m4a" ? "-c:a alac " : "";
            const auto path = folder / file;
            run("ffmpeg -y -f lavfi -i 'aevalsrc=" + toneExpression(int(list.size())) + ":s=16000:d=0.5:c=" + name +
                "' -ar 16000 -b:a 400k " + coder + path.string());
            const AudioFileInfo info = AudioFileInfo::load(path);
            ASSERT_TRUE(info.detected.asSpeakers());
            const SpeakerList& found = *info.detected.asSpeakers();
            ASSERT_EQ(found.size(), list.size());
            const Planes planes = readAll(*AudioFile::open(path));
            for (size_t c = 0; c < found.size(); ++c) {
                if (found[c] == LFE) { continue; }  // coders cut its tone away
                EXPECT_EQ(found[c], list[size_t(loudestTone(planes[c], int(list.size()), 16000))]) << "channel " << c;
            }
        }
    }
}

std::string extensible(uint32_t channels, uint32_t mask, const std::string& guid) {
    const std::string format = le16(0xFFFE) + le16(channels) + le32(48000) + le32(48000 * channels * 2) +
                               le16(channels * 2) + le16(16) + le16(22) + le16(16) + le32(mask) + guid;
    const std::string body = "WAVE" + riffChunk("JUNK", "abc") + riffChunk("fmt ", format) +
                             riffChunk("data", std::string(channels * 20, '\0'));
    return "RIFF" + le32(uint32_t(body.size())) + body;
}

TEST(ContainerLayouts, AreReadFromExtensibleWaveFiles) {
    const std::string pcm("\1\0\0\0\0\0\x10\0\x80\0\0\xAA\0\x38\x9B\x71", 16);
    const std::string ambisonic("\1\0\0\0\x21\x07\xD3\x11\x86\x44\xC8\xC1\xCA\0\0\0", 16);
    const TempFolder folder;
    const auto path = folder / "x.wav";
    const auto layoutOf = [&](const std::string& bytes) {
        writeBytes(path, bytes);
        return AudioFile::open(path)->facts().layout;
    };
    EXPECT_EQ(layoutOf(extensible(8, 0x63F, pcm)), (ChannelLayout{ChannelLabels::useBitmap, 0x63F, {}}));
    EXPECT_EQ(layoutOf(extensible(4, 0, pcm)), std::nullopt);
    EXPECT_EQ(layoutOf(extensible(4, 0, ambisonic)), (ChannelLayout{0x6B0004, 0, {}}));
    EXPECT_EQ(detected(path), "FuMa 1st order");
}

TEST(ContainerLayouts, AreReadFromChanChunks) {
    const auto description = [](uint32_t label) { return be32(label) + std::string(16, '\0'); };
    struct Case {
        uint32_t channels;
        std::string chan;
        std::optional<ChannelLayout> layout;
        const char* format;
    };
    const auto tag = [](uint32_t value, uint32_t mask = 0) { return be32(value) + be32(mask) + be32(0); };
    const std::string film =
        description(1) + description(3) + description(2) + description(5) + description(6) + description(4);
    const Case cases[] = {
        {6, tag(123 << 16 | 6), ChannelLayout{123 << 16 | 6, 0, {}}, "5.1 Film"},
        {6, be32(0) + be32(0) + be32(6) + film, ChannelLayout{0, 0, {1, 3, 2, 5, 6, 4}}, "5.1 Film"},
        {6, tag(0x10000, 0x3F), ChannelLayout{0x10000, 0x3F, {}}, "5.1"},
        {16, tag(190 << 16 | 16), ChannelLayout{190 << 16 | 16, 0, {}}, "AmbiX 3rd order"},
        // More descriptions claimed than there are.
        {6, be32(0) + be32(0) + be32(0xFFFFFFFF) + film, ChannelLayout{0, 0, {1, 3, 2, 5, 6, 4}}, "5.1 Film"},
        {6, be32(0), std::nullopt, "5.1"},
    };
    const TempFolder folder;
    for (const Case& c : cases) {
        writeBytes(folder / "x.caf", cafFile(c.channels, cafData(c.channels) + cafChunk("chan", c.chan)));
        EXPECT_EQ(AudioFile::open(folder / "x.caf")->facts().layout, c.layout) << c.format;
        EXPECT_EQ(detected(folder / "x.caf"), c.format);
    }
}

}  // namespace
}  // namespace brindlehum
