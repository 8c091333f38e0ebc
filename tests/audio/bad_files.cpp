// Damaged, absurd and vanishing files: a clear error or the part that can be read, never a crash or a hang.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cmath>

#include "audio/probe/audio_file_info.h"
#include "caf_bytes.h"
#include "reading.h"
#include "support/refusal.h"

namespace brindlehum {
namespace {

using namespace test;

// A PCM WAV header with any numbers, and the sample bytes behind it.
std::string wav(uint32_t channels, uint32_t rate, uint32_t bits, uint32_t dataSize, const std::string& sound) {
    const uint32_t frame = channels * bits / 8;
    return "RIFF" + le32(36 + dataSize) + "WAVEfmt " + le32(16) + le16(1) + le16(channels) + le32(rate) +
           le32(rate * frame) + le16(frame) + le16(bits) + "data" + le32(dataSize) + sound;
}

TEST(BadFiles, AreRefusedWithOneLineThatNamesThem) {
    const TempFolder folder;
    const std::string text(3000, 'q');
    const std::pair<const char*, std::string> files[] = {
        {"empty.wav", ""},
        {"text.wav", text},
        {"text.mp3", text},
        {"playlist.wav", "#EXTM3U\n#EXT-X-TARGETDURATION:9\n#EXTINF:9,\n/etc/hostname\n"},
        {"list.wav", "ffconcat version 1.0\nfile /etc/hostname\n"},
        {"head.wav", "RIFF"},
        {"form.wav", "RIFF" + le32(4) + "WAVE"},
        {"no-channels.wav", wav(0, 48000, 16, 64, std::string(64, 'x'))},
        {"no-rate.wav", wav(2, 0, 16, 64, std::string(64, 'x'))},
        {"nan.caf", cafFile(2, cafData(2), std::nan(""))},
        {"minus.caf", cafFile(2, cafData(2), -48000)},
        {"channels.caf", cafFile(0x7FFFFFFF, cafData(2))},
        {"head.m4a", std::string("\0\0\0\x18", 4) + "ftypM4A " + std::string(12, '\0')},
        {"line\nbreak.wav", text},
        {"no-bits.wav", "RIFF" + le32(34 + 64) + "WAVEfmt " + le32(14) + le16(1) + le16(2) + le32(48000) +
                            le32(192000) + le16(4) + "data" + le32(64) + std::string(64, 'x')},
    };
    for (const auto& [name, bytes] : files) {
        writeBytes(folder / name, bytes);
        const std::string line = refusalOf([&] { AudioFile::open(folder / name); }).text;
        EXPECT_TRUE(line.starts_with(std::string(name).substr(0, 4))) << name << ": " << line;
        EXPECT_EQ(line.find('\n'), std::string::npos) << line;
        EXPECT_EQ(line.find(folder.path().string()), std::string::npos) << line;
    }
}

TEST(BadFiles, PathsThatAreNoRegularFileAreRefused) {
    const TempFolder folder;
    std::filesystem::create_directory(folder / "x.wav");
    ASSERT_EQ(mkfifo((folder / "pipe.wav").c_str(), 0600), 0);
    std::filesystem::create_symlink("/dev/zero", folder / "zero.wav");
    std::filesystem::create_symlink("loop.wav", folder / "loop.wav");
    for (const auto& [name, line] : {std::pair("x.wav", "x.wav can't be opened: it is a folder"),
                                     {"pipe.wav", "pipe.wav can't be opened: it isn't a regular file"},
                                     {"zero.wav", "zero.wav can't be opened: it isn't a regular file"},
                                     {"loop.wav", "loop.wav can't be opened: Too many levels of symbolic links"},
                                     {"missing.wav", "missing.wav can't be opened: No such file or directory"}}) {
        EXPECT_EQ(refusalOf([&] { AudioFileInfo::load(folder / name); }).text, line);
    }
}

TEST(BadFiles, ClaimsBeyondTheFileAreCutToWhatIsThere) {
    const TempFolder folder;
    for (const uint32_t claimed : {0xFFFFFFFFU, 0xFFFFFFF0U, 4096U, 1001U}) {
        writeBytes(folder / "claim.wav", wav(2, 48000, 16, claimed, std::string(1000, 'x')));
        const auto file = AudioFile::open(folder / "claim.wav");
        EXPECT_EQ(file->facts().frames, 250) << claimed;
        EXPECT_EQ(readAll(*file)[0].size(), 250U) << claimed;
    }
    writeBytes(folder / "none.wav", wav(2, 48000, 16, 0, ""));
    EXPECT_EQ(AudioFile::open(folder / "none.wav")->facts().frames, 0);
}

TEST(BadFiles, FileThatShrinksOrVanishesWhileOpenEndsEarly) {
    const TempFolder folder;
    writeAudio(folder / "s.wav", noisePlanes(2, 200000), {FileKind::wav, 48000, 16, 0});
    for (const char* name : {"t.wav", "t.flac", "t.mp3", "t.m4a"}) {
        run("ffmpeg -y -i " + (folder / "s.wav").string() + " -b:a 320k " + (folder / name).string());
        const auto file = AudioFile::open(folder / name);
        EXPECT_EQ(readFrom(*file, 0, 1000, 500)[0].size(), 1000U);
        std::filesystem::resize_file(folder / name, 300);
        EXPECT_LT(readFrom(*file, 150000, 40000, 4096)[0].size(), 40000U) << name;
        EXPECT_TRUE(readFrom(*file, 199000, 100, 100)[0].empty()) << name;
        std::filesystem::remove(folder / name);
        EXPECT_TRUE(readFrom(*file, 190000, 100, 100)[0].empty()) << name;
    }
}

TEST(Probe, GoesByContentNotByName) {
    const TempFolder folder;
    writeAudio(folder / "s.wav", noisePlanes(2, 4800), {FileKind::wav, 48000, 16, 0});
    std::filesystem::copy(folder / "s.wav", folder / "wave.mp3");
    run("ffmpeg -y -i " + (folder / "s.wav").string() + " -f mp3 " + (folder / "mp3.wav").string());
    EXPECT_EQ(AudioFileInfo::load(folder / "wave.mp3").codec, "PCM");
    EXPECT_EQ(AudioFileInfo::load(folder / "mp3.wav").codec, "MP3");
}

}  // namespace
}  // namespace brindlehum
