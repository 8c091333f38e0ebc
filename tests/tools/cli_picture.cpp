// picture: the PNG file that it writes.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "cli_child.h"
#include "support/music.h"

namespace brindlehum {
namespace {

using namespace test;

// "WxH" from the header of a PNG file (ISO/IEC 15948), empty for anything else.
std::string pngSize(const std::string& bytes) {
    if (bytes.size() < 24 || !bytes.starts_with("\x89PNG\r\n\x1a\n") || bytes.substr(12, 4) != "IHDR") { return ""; }
    const auto low16 = [&bytes](size_t at) { return uint8_t(bytes[at + 2]) << 8 | uint8_t(bytes[at + 3]); };
    return std::to_string(low16(16)) + "x" + std::to_string(low16(20));
}

TEST(CliPicture, NeedsNoScreenAndNoSession) {
    const TempFolder folder;
    const std::string out = (folder / "out.png").string();
    writeAudio(folder / "piece.wav", {clickPiece(8)}, {.rate = 22050});
    writeAudio(folder / "short.wav", noisePlanes(2, 1000));
    const auto picture = [&](const char* source, const std::vector<std::string>& words, const std::string& size) {
        std::vector<std::string> all = {"picture", (folder / source).string(), out};
        all.insert(all.end(), words.begin(), words.end());
        const auto result = runCli(all, {"QT_QPA_PLATFORM=xcb", "DISPLAY=:99", "XDG_RUNTIME_DIR="});
        EXPECT_EQ(result.exitCode, 0);
        EXPECT_THAT(result.errors, testing::IsEmpty());
        const nlohmann::json object = result.objects.at(0);
        EXPECT_EQ(pngSize(readBytes(out)), size);
        return std::pair(readBytes(out), object);
    };
    const auto [light, object] = picture("piece.wav", {}, "1600x1200");
    EXPECT_THAT(object["summary"].get<std::string>(), testing::HasSubstr(" BPM "));
    EXPECT_NE(light, picture("piece.wav", {"theme", "dark"}, "1600x1200").first);
    picture("piece.wav", {"size", "900x700"}, "900x700");
    const auto noMusic = picture("short.wav", {}, "1600x1200").second;
    EXPECT_EQ(noMusic["status"], "tooShort") << "at least the waveform is shown";
}

}  // namespace
}  // namespace brindlehum
