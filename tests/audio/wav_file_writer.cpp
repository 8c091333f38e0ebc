// Written WAV files: every byte by the format's tables, every sample through other programs, and every way to fail.
#include "audio/write/wav_file_writer.h"

#include <gtest/gtest.h>
#include <sndfile.h>
#include <sys/stat.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <ctime>

#include "support/audio_files.h"
#include "support/full_disk.h"
#include "support/refusal.h"

namespace brindlehum {
namespace {

using namespace test;

// The plain twin of the encoder.
std::string encoded(const Planes& planes) {
    std::string out;
    for (size_t i = 0; i < (planes.empty() ? 0 : planes[0].size()); ++i) {
        for (const auto& plane : planes) {
            const float x = plane[i];
            const long value = !(x < 1) ? 8388607 : std::lround(double(std::max(x, -1.0F)) * 8388607.0);
            out += le32(uint32_t(value)).substr(0, 3);
        }
    }
    return out;
}

std::string field(std::string text, size_t length) {
    text.resize(length, '\0');
    return text;
}

std::string nowBy(const char* format) {
    const std::time_t now = std::time(nullptr);
    char text[32] = {};
    std::strftime(text, sizeof text, format, std::localtime(&now));
    return text;
}

// Floats at which rounding and clamping turn, those that aren't numbers, and noise between them.
Planes wildPlanes(size_t channels, size_t frames, uint32_t seed) {
    static constexpr float special[] = {0,    -0.0F, 1,     -1, 0.5F,     -0.5F,     1e-30F,      NAN,
                                        -NAN, 1e9F,  -1e9F, 2,  INFINITY, -INFINITY, 0.99999994F, -0.99999994F};
    Planes planes = noisePlanes(int(channels), frames, seed);
    for (auto& plane : planes) {
        for (size_t i = 0; i < frames; i += 3) { plane[i] = special[i / 3 % std::size(special)]; }
    }
    return planes;
}

struct Shape {
    double rate;
    size_t channels, frames;
    uint32_t mask;
};
std::ostream& operator<<(std::ostream& out, const Shape& s) {
    return out << s.channels << " channels, " << s.frames << " frames at " << s.rate << " Hz";
}

constexpr Shape shapes[] = {{48000, 2, 1000, 3},         {44100.4, 1, 1001, 4}, {44100.5, 1, 0, 4},
                            {96000, 12, 70001, 0x2D63F}, {192000, 64, 333, 0},  {8000, 3, 1, 7}};

std::string written(const std::filesystem::path& path, const Shape& shape, const Planes& planes,
                    const std::string& description) {
    WavFileWriter writer(path, shape.rate, int(shape.channels), shape.mask, description);
    for (size_t at = 0, n = 1; at < shape.frames; at += n, n = n * 5 % 1021) {
        n = std::min(n, shape.frames - at);
        std::vector<const float*> block;
        for (const auto& plane : planes) { block.push_back(plane.data() + at); }
        writer.append(block, int64_t(n));
    }
    writer.finish();
    return readBytes(path);
}

TEST(WavFileWriter, WritesEveryByteByTheTables) {
    ::setenv("TZ", "Asia/Kathmandu", 1);  // the time is local
    ::tzset();
    std::string longText(255, 'x');
    longText += "\u00E9 and more";  // cut within the letter
    const TempFolder folder;
    for (const Shape& s : shapes) {
        SCOPED_TRACE(s);
        const auto path = folder / "new/folders/take.wav";  // made as needed, and replaced
        const Planes planes = wildPlanes(s.channels, s.frames, 5);
        const auto rate = uint32_t(std::lround(s.rate));
        const auto block = uint32_t(3 * s.channels);
        for (const std::string& text : {std::string("Rain"), longText, std::string()}) {
            const std::string data = encoded(planes);
            const std::string pad(data.size() % 2, '\0');
            const std::string before = nowBy("%Y-%m-%d%H:%M:%S");
            const std::string file = written(path, s, planes, text);
            const std::string after = nowBy("%Y-%m-%d%H:%M:%S");
            ASSERT_GE(file.size(), 678U);
            const std::string stamp = file.substr(388, 18);
            EXPECT_TRUE(before <= stamp && stamp <= after) << before << ' ' << stamp << ' ' << after;
            const std::string subFormat("\1\0\0\0\0\0\x10\0\x80\0\0\xAA\0\x38\x9B\x71", 16);
            const std::string fmt = le16(0xFFFE) + le16(uint32_t(s.channels)) + le32(rate) + le32(rate * block) +
                                    le16(block) + le16(24) + le16(22) + le16(24) + le32(s.mask) + subFormat;
            const std::string bext = field(text.substr(0, 256), 256) + field("Brindlehum", 32) + field("", 32) + stamp +
                                     field("", 8) + le16(1) + field("", 254);
            const std::string expected = "RIFF" + le32(uint32_t(670 + data.size() + pad.size())) + "WAVE" +
                                         riffChunk("fmt ", fmt) + riffChunk("bext", bext) + riffChunk("data", data);
            ASSERT_EQ(file.size(), expected.size());
            const auto differing = std::mismatch(file.begin(), file.end(), expected.begin()).first - file.begin();
            EXPECT_EQ(differing, long(file.size())) << "first wrong byte";
        }
    }
    ::unsetenv("TZ");
    ::tzset();
}

// A sink in memory, or one that only counts.
struct MemorySink final : ByteSink {
    MemorySink(std::string& bytes, uint64_t kept) : bytes_(bytes), kept_(kept) {}
    void writeAt(uint64_t offset, std::span<const uint8_t> in) override {
        end_ = std::max(end_, offset + in.size());
        if (offset + in.size() > kept_) { return; }
        bytes_.resize(std::max(bytes_.size(), size_t(offset) + in.size()));
        std::memcpy(bytes_.data() + offset, in.data(), in.size());
    }
    void finish(uint64_t length, bool) override { EXPECT_EQ(length, end_); }
    std::string& bytes_;
    uint64_t kept_, end_ = 0;
};

// The stored integers as libsndfile and FFmpeg give them: none may lie more than half a step from the sample.
TEST(WavFileWriter, IsReadBackByOtherReaders) {
    const TempFolder folder;
    const auto path = folder / "take.wav";
    const std::string text = "Pulled from \u201CRain\u201D";
    const auto output = [&](const std::string& command) {
        run(command + " > " + (folder / "out").string());
        return readBytes(folder / "out");
    };
    for (const Shape& s : shapes) {
        if (s.frames == 0) { continue; }  // FFmpeg refuses files without samples
        SCOPED_TRACE(s);
        const Planes planes = noisePlanes(int(s.channels), s.frames, 3);
        const std::string file = written(path, s, planes, text);
        EXPECT_EQ(output("ffmpeg -v error -i " + path.string() + " -f s24le -c:a pcm_s24le -"),
                  file.substr(678, 3 * s.channels * s.frames));
        const auto [back, rate, format] = readAudio(path);
        EXPECT_EQ(format, SF_FORMAT_WAVEX | SF_FORMAT_PCM_24);
        EXPECT_EQ(rate, int(std::lround(s.rate)));
        ASSERT_EQ(back.size(), s.channels);
        for (size_t c = 0; c < s.channels; ++c) {
            ASSERT_EQ(back[c].size(), s.frames);
            for (size_t i = 0; i < s.frames; ++i) {
                ASSERT_NEAR(double(back[c][i]) * 8388608, double(planes[c][i]) * 8388607, 0.5);
            }
        }
        const std::string report = output("ffprobe -v error -show_streams -show_format " + path.string());
        for (const std::string& line :
             {std::string("codec_name=pcm_s24le\n"), "channels=" + std::to_string(s.channels) + "\n",
              "TAG:comment=" + text, std::string("TAG:encoded_by=Brindlehum\n"),
              std::string(s.channels == 12 ? "(FL+FR+FC+LFE+BL+BR+SL+SR+TFL+TFR+TBL+TBR)" : "")}) {
            EXPECT_NE(report.find(line), std::string::npos) << line << " in\n" << report;
        }
    }
}

TEST(WavFileWriter, FloatsAndWhatWasAnIntegerComeOutAsTheyWentIn) {
    Planes integers = noisePlanes(12, 3001, 8);
    for (auto& plane : integers) {
        for (float& x : plane) { x = std::floor(x * 16777216) / 8388608; }
    }
    integers[0][0] = -1;
    integers[1][1] = 8388607.0F / 8388608.0F;
    Planes floats = wildPlanes(11, 3001, 9);
    for (const auto& [samples, planes, format, codec] :
         {std::tuple(WavSamples::float32, floats, SF_FORMAT_FLOAT, "pcm_f32le"),
          {WavSamples::pcm24Lossless, integers, SF_FORMAT_PCM_24, "pcm_s24le"}}) {
        SCOPED_TRACE(codec);
        const TempFolder folder;
        const auto path = folder / "take.wav";
        WavNotes notes{.description = "Rain", .originatorReference = "ref", .date = "1999-12-31", .time = "01:02:03"};
        notes.timeReference = 0x123456789;
        notes.codingHistory = "A=ANALOGUE";
        notes.chunks = riffChunk("junk", "xyz");
        {
            WavFileWriter writer(makeFileSink(path), {48000, int(planes.size()), 0, samples, notes});
            writer.appendAll(planes);
            writer.finish();
        }
        const ReadAudio back = readAudio(path);
        EXPECT_EQ(back.format, SF_FORMAT_WAVEX | format);
        ASSERT_EQ(back.planes.size(), planes.size());
        for (size_t c = 0; c < planes.size(); ++c) {
            EXPECT_EQ(std::memcmp(back.planes[c].data(), planes[c].data(), planes[c].size() * 4), 0) << c;
        }
        run("ffprobe -v error -show_streams -show_format " + path.string() + " > " + (folder / "out").string());
        const std::string report = readBytes(folder / "out");
        for (const std::string& line :
             {"codec_name=" + std::string(codec) + "\n", std::string("duration_ts=3001\n"),
              std::string("TAG:time_reference=4886718345\n"), std::string("TAG:originator_reference=ref\n"),
              std::string("TAG:coding_history=A=ANALOGUE\n"), std::string("TAG:date=1999-12-31\n")}) {
            EXPECT_NE(report.find(line), std::string::npos) << line << " in\n" << report;
        }
    }
}

TEST(WavFileWriter, RefusesBlocksBeyondFourGigabytes) {
    std::string head;
    WavFileWriter writer(std::make_unique<MemorySink>(head, 678), 48000, 1, 4, "");
    const std::vector<float> sample = {0.5F};
    const std::vector<const float*> plane = {sample.data()};
    constexpr uint64_t most = 0xFFFEFFFF / 3;
    constexpr auto limit = ErrorKind::wavSizeLimit;
    writer.append({}, int64_t(most));
    const Refusal one = refusalOf([&] { writer.append(plane, 1); });
    EXPECT_EQ(one.kind, limit);
    EXPECT_EQ(one.text, "Selection too long for a WAV file (4 GB limit)");
    EXPECT_EQ(refusalOf([&] { writer.appendAll({sample}); }).text, "Too long for a WAV file (4 GB limit)");
    EXPECT_EQ(refusalOf([&] { writer.append(plane, INT64_MAX); }).kind, limit);
    writer.finish();
    EXPECT_EQ(head.substr(4, 4), le32(uint32_t(670 + 3 * most + 1)));
    EXPECT_EQ(head.substr(674, 4), le32(uint32_t(3 * most)));
}

TEST(WavFileWriter, SaysWhyItCannotBegin) {
    const TempFolder folder;
    writeBytes(folder / "plain", "x");
    ASSERT_EQ(::mkfifo((folder / "pipe.wav").c_str(), 0600), 0);
    for (const auto& [name, reason] : {std::pair("plain/a.wav", "Not a directory"),
                                       {"", "Is a directory"},
                                       {"pipe.wav", "No such device or address"}}) {
        const Refusal refusal = refusalOf([&] { WavFileWriter(folder / name, 48000, 1, 0, ""); });
        EXPECT_EQ(refusal.kind, ErrorKind::other) << name;
        EXPECT_EQ(refusal.text, "Couldn't write " + (folder / name).string() + ": " + reason);
    }
    for (const auto& [channels, rate] : {std::pair(0, 48000.0), {21846, 1}, {-1, 48000}, {1, 0.4}, {1, NAN}}) {
        const Refusal refusal = refusalOf([&] { WavFileWriter(folder / "plain", rate, channels, 0, ""); });
        EXPECT_EQ(refusal.kind, ErrorKind::other) << channels << " at " << rate;
        EXPECT_EQ(readBytes(folder / "plain"), "x") << "nothing was replaced";
    }
}

TEST(WavFileWriter, DropsTheBlockThatFillsTheDiskAndKeepsThoseBefore) {
    const TempFolder folder;
    const Shape shape = {48000, 2, 5000, 3};
    const Planes first = noisePlanes(2, 5000, 1);
    WavFileWriter writer(folder / "torn.wav", 48000, 2, 3, "");
    writer.appendAll(first);
    const Refusal refusal = refusalOf([&] {
        const FullDisk disk(50000);
        writer.appendAll(noisePlanes(2, 400000, 9));
    });
    EXPECT_EQ(refusal.kind, ErrorKind::other);
    EXPECT_EQ(refusal.text, "Couldn't write " + (folder / "torn.wav").string() + ": File too large");
    EXPECT_EQ(std::filesystem::file_size(folder / "torn.wav"), 50000U);
    EXPECT_EQ(readBytes(folder / "torn.wav").substr(674, 4), le32(0));
    writer.finish(true);
    const auto withoutTime = [](std::string bytes) { return bytes.erase(388, 18); };
    EXPECT_EQ(withoutTime(readBytes(folder / "torn.wav")),
              withoutTime(written(folder / "whole.wav", shape, first, "")));
}

}  // namespace
}  // namespace brindlehum
