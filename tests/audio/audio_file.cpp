// AudioFile: every format gives back what was written, in length, place and value.
#include "audio/decode/audio_file.h"

#include <sndfile.h>

#include <cmath>
#include <numeric>

#include "reading.h"
#include "support/signals.h"

namespace brindlehum {
namespace {

using namespace test;

std::string text(uint32_t id) {
    return {char(id >> 24), char(id >> 16), char(id >> 8), char(id)};
}

// As libsndfile makes floats of the samples.
Planes sndfileFloats(const std::filesystem::path& path) {
    SF_INFO info{};
    SNDFILE* file = sf_open(path.c_str(), SFM_READ, &info);
    std::vector<float> frames(size_t(info.frames) * size_t(info.channels));
    sf_readf_float(file, frames.data(), info.frames);
    sf_close(file);
    Planes planes(size_t(info.channels));
    for (size_t i = 0; i < frames.size(); ++i) { planes[i % planes.size()].push_back(frames[i]); }
    return planes;
}

struct PcmCase {
    const char* name;
    FileKind kind;
    int bits;  // as FileShape has them
    int channels;
    double tolerance = 0;  // one step of the stored samples; 0: bit for bit
};

TEST(PcmFiles, GiveBackWhatWasWritten) {
    constexpr double step24 = 1.01 / 8388608;
    const PcmCase cases[] = {
        {"8.wav", FileKind::wav, 8, 1, 1.01 / 128},   {"16.wav", FileKind::wav, 16, 2, 1.01 / 32768},
        {"24.wav", FileKind::wav, 24, 6, step24},     {"mono.wav", FileKind::wav, 24, 1, step24},
        {"32.wav", FileKind::wav, 32, 3, 1e-7},       {"float.wav", FileKind::wavFloat, 0, 16},
        {"double.wav", FileKind::wav, 64, 2},         {"wide.wav", FileKind::wavex, 0, 65},
        {"long.rf64", FileKind::rf64, 24, 2, step24}, {"x.w64", FileKind::w64, 16, 5, 1.01 / 32768},
        {"x.aiff", FileKind::aiff, 24, 4, step24},    {"x.caf", FileKind::caf, 0, 12},
        {"x.flac", FileKind::flac, 24, 8, step24},
    };
    const TempFolder folder;
    for (const PcmCase& c : cases) {
        SCOPED_TRACE(c.name);
        const bool isFloat = c.bits == 0 || c.bits == 64;
        const bool isFlac = c.kind == FileKind::flac;
        Planes written = noisePlanes(c.channels, 30011);
        for (size_t i = 0; isFloat && i < 100; ++i) { written[0][i] *= 20; }  // floats beyond full scale pass unclipped
        writeAudio(folder / c.name, written, {c.kind, 48000, c.bits, 0});
        const auto file = AudioFile::open(folder / c.name);
        EXPECT_EQ(text(file->facts().formatID), isFlac ? "flac" : "lpcm");
        EXPECT_EQ(file->facts().sampleRate, 48000);
        EXPECT_EQ(file->facts().channels, c.channels);
        EXPECT_EQ(file->facts().frames, 30011);
        EXPECT_EQ(file->facts().bitDepth, isFlac ? 0 : c.bits == 0 ? 32 : c.bits);
        EXPECT_EQ(file->facts().isFloat, isFloat);
        const Planes back = readAll(*file);
        EXPECT_EQ(back, sndfileFloats(folder / c.name));
        double worst = 0;
        for (size_t p = 0; p < written.size(); ++p) {
            ASSERT_EQ(back[p].size(), written[p].size());
            for (size_t i = 0; i < written[p].size(); ++i) {
                worst = std::max(worst, std::abs(double(back[p][i]) - double(written[p][i])));
            }
        }
        EXPECT_LE(worst, c.tolerance);
        expectExactSeeks(folder / c.name, 7);
    }
}

// Samples by which `decoded` comes later than `original`, by the largest correlation.
int64_t lagOf(const std::vector<float>& decoded, const std::vector<float>& original) {
    std::pair<double, int64_t> best;
    for (int64_t lag = -3000; lag <= 3000; ++lag) {
        const float* late = decoded.data() + 40000 + lag;
        best = std::max(best, {std::inner_product(late, late + 8000, &original[40000], 0.0), lag});
    }
    return best.second;
}

struct CodedCase {
    const char* name;
    const char* arguments;  // of the ffmpeg command
    const char* id;
    int64_t lag = 0;        // samples by which the piece comes late
    int64_t extra = 0;      // frames beyond those of the original
    bool lossless = false;  // bit for bit with 16-bit samples; else the piece after the lag is within -12 dB
};

// A piece with content at all frequencies below the coders' cut, so that the lag is sharp.
Planes codedOriginal(size_t frames, double rate) {
    Planes out;
    for (uint32_t c = 0; c < 2; ++c) {
        std::vector<float> x = noise(frames, 31 + c);
        float low = 0;
        for (size_t i = 0; i < frames; ++i) {
            low += 0.2F * (x[i] - low);
            x[i] = 0.5F * low + float(0.2 * std::sin(double(i) * 440 * 6.28318 / rate));
        }
        out.push_back(std::move(x));
    }
    return out;
}

// AAC runs without noise substitution: its random generator runs on through the file, so that no decoder could give
// the same samples after a seek. The `raw` files have no header that states how much of the start is delay.
const CodedCase codedCases[] = {
    {"xing.mp3", "-b:a 192k", ".mp3"},
    {"vbr.mp3", "-q:a 4", ".mp3"},
    {"raw.mp3", "-write_xing 0 -id3v2_version 0 -b:a 192k", ".mp3", 1105, 1373},
    {"x.m4a", "-aac_pns 0 -b:a 192k", "aac "},
    {"x.mp4", "-aac_pns 0 -b:a 192k", "aac "},
    {"raw.aac", "-aac_pns 0 -b:a 192k", "aac ", 1024, 1373},
    {"alac.m4a", "-c:a alac", "alac", 0, 0, true},
    {"alac.caf", "-c:a alac", "alac", 0, 0, true},
    {"x.flac", "", "flac", 0, 0, true},
    {"pcm.mov", "-c:a pcm_s16be", "lpcm", 0, 0, true},
    {"opus.ogg", "-c:a libopus -b:a 256k", "opus"},
    {"vorbis.ogg", "-c:a libvorbis -q:a 8", "vorb"},
};

class CodedFiles : public testing::TestWithParam<CodedCase> {};

TEST_P(CodedFiles, KeepLengthAndPlaceAndSeekToTheSample) {
    const CodedCase& c = GetParam();
    constexpr int64_t frames = 100003;
    const TempFolder folder;
    const Planes original = codedOriginal(frames, 48000);
    writeAudio(folder / "original.wav", original, {FileKind::wav, 48000, 16, 0});
    const std::string coded = (folder / c.name).string();
    run("ffmpeg -y -i " + (folder / "original.wav").string() + " " + c.arguments + " " + coded);

    const auto file = AudioFile::open(coded);
    EXPECT_EQ(text(file->facts().formatID), c.id);
    EXPECT_EQ(file->facts().sampleRate, 48000);
    EXPECT_EQ(file->facts().channels, 2);
    EXPECT_EQ(file->facts().frames, frames + c.extra);
    const Planes decoded = readAll(*file);
    ASSERT_EQ(int64_t(decoded[0].size()), file->facts().frames);
    const Planes reference = readAll(*AudioFile::open(folder / "original.wav"));
    for (size_t channel = 0; channel < 2; ++channel) {
        EXPECT_EQ(lagOf(decoded[channel], reference[channel]), c.lag);
        const std::vector<float> piece(decoded[channel].begin() + c.lag, decoded[channel].end());
        EXPECT_LE(errorDb(piece, reference[channel]), c.lossless ? -400 : -12) << "channel " << channel;
    }
    expectExactSeeks(coded, 11);
}

// Vorbis and Opus store their channels in an order of their own.
TEST(OggFiles, KeepEachChannelAtItsSpeaker) {
    constexpr int64_t frames = 48000;
    const TempFolder folder;
    for (const auto& [channels, mask] : {std::pair(4, 0x33U), {6, 0x3FU}, {8, 0x63FU}}) {
        auto original = Planes(size_t(channels), std::vector<float>(frames));
        for (size_t c = 0; c < original.size(); ++c) {
            for (size_t i = 0; i < frames; ++i) { original[c][i] = 0.5F * float(std::sin(0.04 * double((c + 1) * i))); }
        }
        writeAudio(folder / "original.wav", original, {FileKind::wavex, 48000, 16, mask});
        const auto speakers =
            ChannelLabels::speakers(ChannelLabels::labels(ChannelLayout{ChannelLabels::useBitmap, mask, {}}));
        for (const auto& [name, coder] : {std::pair("x.opus", "libopus -mapping_family 1"), {"x.ogg", "libvorbis"}}) {
            SCOPED_TRACE(name + std::to_string(channels));
            run("ffmpeg -y -i " + (folder / "original.wav").string() + " -c:a " + coder + " -b:a 512k " +
                (folder / name).string());
            const auto file = AudioFile::open(folder / name);
            const auto found = ChannelLabels::speakers(ChannelLabels::labels(file->facts().layout));
            ASSERT_TRUE(speakers && found);
            const Planes decoded = readAll(*file);
            for (size_t c = 0; c < original.size(); ++c) {
                const auto at = std::ranges::find(*found, (*speakers)[c]) - found->begin();
                ASSERT_LT(size_t(at), decoded.size());
                if ((*speakers)[c] == SpeakerID::LFE) { continue; }  // low-passed by the coder
                EXPECT_LE(errorDb(decoded[size_t(at)], original[c]), -12) << "channel " << c;
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Coded, CodedFiles, testing::ValuesIn(codedCases), [](const auto& c) {
    std::string name = c.param.name;
    std::ranges::replace(name, '.', '_');
    return name;
});

}  // namespace
}  // namespace brindlehum
