// picture: the file that comes out.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "analysis/synth.h"
#include "cli_child.h"

namespace brindlehum {
namespace {

using namespace test;
using testing::HasSubstr;

// "WxH" from the header of a PNG file (ISO/IEC 15948), empty for anything else.
std::string pngSize(const std::string& bytes) {
    if (bytes.size() < 24 || !bytes.starts_with("\x89PNG\r\n\x1a\n") || bytes.substr(12, 4) != "IHDR") { return ""; }
    const auto be32 = [&bytes](size_t at) {
        uint32_t value = 0;
        for (size_t i = 0; i < 4; ++i) { value = value << 8 | uint8_t(bytes[at + i]); }
        return value;
    };
    return std::to_string(be32(16)) + "x" + std::to_string(be32(20));
}

class CliPicture : public testing::Test {
protected:
    CliPicture() {
        writeAudio(piece_, {clickTrack(beatTimes(0, 8, [](double) { return 120.0; }), 4, 0, 8)}, {.rate = 22050});
    }
    TempFolder folder_;
    std::string piece_ = (folder_ / "piece.wav").string();
    std::string out_ = (folder_ / "out.png").string();
};

TEST_F(CliPicture, NeedsNoScreenAndNoSession) {
    writeBytes(out_, "old");
    std::vector<std::string> pictures;
    for (const std::vector<std::string>& words : {std::vector<std::string>{},
                                                  {"theme", "light", "size", "1600x1200"},
                                                  {"theme", "dark"},
                                                  {"meter", "3"},
                                                  {"size", "900x700"}}) {
        std::vector<std::string> all = {"picture", piece_, out_};
        all.insert(all.end(), words.begin(), words.end());
        const auto result = runCli(all, {"QT_QPA_PLATFORM=xcb", "DISPLAY=:99", "XDG_RUNTIME_DIR="});
        EXPECT_EQ(result.exitCode, 0);
        EXPECT_TRUE(result.errors.empty()) << result.errors[0];
        pictures.push_back(readBytes(out_));
        const std::string size = pngSize(pictures.back());
        EXPECT_EQ(size, words.size() == 2 && words[0] == "size" ? words[1] : "1600x1200");
        ASSERT_EQ(result.objects.size(), 1U);
        EXPECT_EQ(result.objects[0]["out"], out_);
        EXPECT_EQ(
            std::to_string(int(result.objects[0]["width"])) + "x" + std::to_string(int(result.objects[0]["height"])),
            size);
        EXPECT_THAT(result.objects[0]["summary"].get<std::string>(), HasSubstr(" BPM "));
    }
    EXPECT_EQ(pictures[0], pictures[1]) << "light is the default";
    EXPECT_NE(pictures[0], pictures[2]);
    EXPECT_NE(pictures[0], pictures[3]);
}

TEST_F(CliPicture, ShowsAtLeastTheWaveformOfWhatIsNoMusic) {
    writeAudio(piece_, noisePlanes(2, 1000));
    const auto result = runCli({"picture", piece_, out_});
    EXPECT_EQ(result.exitCode, 0);
    ASSERT_EQ(result.objects.size(), 1U);
    EXPECT_EQ(result.objects[0]["status"], "tooShort");
    EXPECT_TRUE(result.objects[0]["summary"].is_null());
    EXPECT_EQ(pngSize(readBytes(out_)), "1600x1200");
}

}  // namespace
}  // namespace brindlehum
