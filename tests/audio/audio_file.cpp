// AudioFile: every format gives back what was written, in length, place and value.
#include "audio/decode/audio_file.h"

#include <cmath>

#include "base/error.h"
#include "reading.h"
#include "support/signals.h"

namespace brindlehum {
namespace {

using namespace test;

std::string text(uint32_t id) {
    return {char(id >> 24), char(id >> 16), char(id >> 8), char(id)};
}

struct PcmCase {
    const char* name;
    FileKind kind;
    int bits;
    int channels;
    const char* id;
    int bitDepth;
    bool isFloat;
    double tolerance;  // one step of the stored samples; 0: bit for bit
};

TEST(PcmFiles, GiveBackWhatWasWritten) {
    const PcmCase cases[] = {
        {"8.wav", FileKind::wav, 8, 1, "lpcm", 8, false, 1.01 / 128},
        {"16.wav", FileKind::wav, 16, 2, "lpcm", 16, false, 1.01 / 32768},
        {"24.wav", FileKind::wav, 24, 6, "lpcm", 24, false, 1.01 / 8388608},
        {"32.wav", FileKind::wav, 32, 3, "lpcm", 32, false, 1e-7},
        {"float.wav", FileKind::wavFloat, 0, 16, "lpcm", 32, true, 0},
        {"double.wav", FileKind::wav, 64, 2, "lpcm", 64, true, 0},
        {"wide.wav", FileKind::wavex, 0, 65, "lpcm", 32, true, 0},
        {"long.rf64", FileKind::rf64, 24, 2, "lpcm", 24, false, 1.01 / 8388608},
        {"x.w64", FileKind::w64, 16, 5, "lpcm", 16, false, 1.01 / 32768},
        {"x.aiff", FileKind::aiff, 24, 4, "lpcm", 24, false, 1.01 / 8388608},
        {"x.caf", FileKind::caf, 0, 12, "lpcm", 32, true, 0},
        {"x.flac", FileKind::flac, 24, 8, "flac", 0, false, 1.01 / 8388608},
    };
    const TempFolder folder;
    for (const PcmCase& c : cases) {
        SCOPED_TRACE(c.name);
        const Planes written = noisePlanes(c.channels, 30011);
        writeAudio(folder / c.name, written, {c.kind, 48000, c.bits, 0});
        const auto file = AudioFile::open(folder / c.name);
        EXPECT_EQ(text(file->facts().formatID), c.id);
        EXPECT_EQ(file->facts().sampleRate, 48000);
        EXPECT_EQ(file->facts().channels, c.channels);
        EXPECT_EQ(file->facts().frames, 30011);
        EXPECT_EQ(file->facts().bitDepth, c.bitDepth);
        EXPECT_EQ(file->facts().isFloat, c.isFloat);
        for (const int block : {4096, 65536, 77}) {
            const Planes back = readAll(*file, block);
            ASSERT_EQ(back[0].size(), written[0].size());
            for (size_t p = 0; p < written.size(); ++p) {
                double worst = 0;
                for (size_t i = 0; i < written[p].size(); ++i) {
                    worst = std::max(worst, std::abs(double(back[p][i]) - double(written[p][i])));
                }
                EXPECT_LE(worst, c.tolerance) << "channel " << p << " in blocks of " << block;
            }
        }
        expectExactSeeks(folder / c.name, 7);
    }
}

TEST(PcmFiles, FloatSamplesBeyondFullScalePassUnclipped) {
    const TempFolder folder;
    const Planes written = {{0.0F, 1.0F, -1.0F, 3.5F, -7.25F, 1e-30F}};
    writeAudio(folder / "hot.wav", written);
    EXPECT_EQ(readAll(*AudioFile::open(folder / "hot.wav")), written);
}

// The place where `piece` fits best, searched around its own place in `original`.
int64_t lagOf(const std::vector<float>& decoded, const std::vector<float>& original) {
    const int64_t from = 40000;
    const int64_t length = 8000;
    int64_t best = 0;
    double most = 0;
    for (int64_t lag = -3000; lag <= 3000; ++lag) {
        double sum = 0;
        for (int64_t i = from; i < from + length; ++i) {
            sum += double(original[size_t(i)]) * double(decoded[size_t(i + lag)]);
        }
        if (sum > most) {
            most = sum;
            best = lag;
        }
    }
    return best;
}

struct CodedCase {
    const char* name;
    const char* arguments;  // of the ffmpeg command
    const char* id;
    int64_t lag;     // samples by which the piece comes late
    int64_t extra;   // frames beyond those of the original
    double errorDb;  // of the decoded piece, after the lag; -400: bit for bit with 16-bit samples
    bool lossless = false;
};

void PrintTo(const CodedCase& c, std::ostream* out) {
    *out << c.name;
}

// An original with content at all frequencies below the coders' cut, so that the lag is sharp.
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

// AAC without noise substitution: its random generator runs on through the file, so that no decoder could give the
// same samples after a seek. `raw`: without a header there is no telling how much of the start is delay.
const CodedCase codedCases[] = {
    {"xing.mp3", "-b:a 192k", ".mp3", 0, 0, -12},
    {"vbr.mp3", "-q:a 4", ".mp3", 0, 0, -12},
    {"raw.mp3", "-write_xing 0 -id3v2_version 0 -b:a 192k", ".mp3", 1105, 1373, -12},
    {"x.m4a", "-aac_pns 0 -b:a 192k", "aac ", 0, 0, -12},
    {"x.mp4", "-aac_pns 0 -b:a 192k", "aac ", 0, 0, -12},
    {"raw.aac", "-aac_pns 0 -b:a 192k", "aac ", 1024, 1373, -12},
    {"alac.m4a", "-c:a alac", "alac", 0, 0, -400, true},
    {"alac.caf", "-c:a alac", "alac", 0, 0, -400, true},
    {"x.flac", "", "flac", 0, 0, -400, true},
    {"pcm.mov", "-c:a pcm_s16be", "lpcm", 0, 0, -400, true},
    {"opus.ogg", "-c:a libopus -b:a 256k", "opus", 0, 0, -12},
    {"vorbis.ogg", "-c:a libvorbis -q:a 8", "vorb", 0, 0, -12},
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
        EXPECT_LE(errorDb(piece, reference[channel]), c.errorDb) << "channel " << channel;
        EXPECT_TRUE(!c.lossless || decoded[channel] == reference[channel]) << "channel " << channel;
    }
    expectExactSeeks(coded, 11);
}

INSTANTIATE_TEST_SUITE_P(Coded, CodedFiles, testing::ValuesIn(codedCases), [](const auto& c) {
    std::string name = c.param.name;
    std::replace(name.begin(), name.end(), '.', '_');
    return name;
});

}  // namespace
}  // namespace brindlehum
