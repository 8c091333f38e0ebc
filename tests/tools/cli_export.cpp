// export: the files of a drag out of the player, read by other programs.
#include <gtest/gtest.h>

#include "cli_child.h"

namespace brindlehum {
namespace {

using namespace test;

std::string output(const TempFolder& folder, const std::string& command) {
    run(command + " > " + quoted(folder / "out"));
    return readBytes(folder / "out");
}

TEST(CliExport, MakesFilesThatOtherProgramsReadAsMeant) {
    const TempFolder folder;
    writeAudio(folder / "rain.wav", noisePlanes(2, 96000));
    writeAudio(folder / "bed.wav", noisePlanes(6, 48000), {.kind = FileKind::wavex, .bits = 24, .mask = 0x3F});
    const struct {
        std::vector<std::string> words;
        std::string name, layout, label;
        int channels, frames;
    } cases[] = {
        {{"rain.wav", "upmix", "l714", "broadcast", "from", "0.25", "to", "1.5", "loop"},
         "rain_0.250-1.500s_714up-broadcast.wav",
         "FL+FR+FC+LFE+BL+BR+SL+SR+TFL+TFR+TBL+TBR",
         "7.1.4 upmix, Broadcast (WAVE order)",
         12,
         60000},
        {{"bed.wav", "bed", "stereo"}, "bed_st.wav", "stereo", "Stereo (WAVE order)", 2, 48000},
        {{"bed.wav", "binaural", "to", "0.5"}, "bed_0.000-0.500s_bin.wav", "stereo", "Binaural (HRTF)", 2, 36000},
        {{"bed.wav", "from", "0.5", "float"}, "bed_0.500-1.000s.wav", "5.1", "5.1", 6, 24000},
    };
    for (const auto& c : cases) {
        std::vector<std::string> words = {"export", (folder / c.words[0]).string(), "folder",
                                          (folder / "pulls").string()};
        words.insert(words.end(), c.words.begin() + 1, c.words.end());
        const CliResult result = runCli(words, homeIn(folder));
        ASSERT_EQ(result.exitCode, 0) << c.name;
        ASSERT_EQ(result.objects.size(), 1U);
        const auto& object = result.objects[0];
        const std::filesystem::path file = object.at("file").get<std::string>();
        EXPECT_EQ(file.filename(), c.name);
        EXPECT_EQ(file.parent_path().parent_path(), folder / "pulls");
        EXPECT_EQ(object.at("label"), c.label);
        EXPECT_EQ(object.at("channels"), c.channels);
        EXPECT_EQ(object.at("frames"), c.frames);
        EXPECT_GT(object.at("peak"), 0.1);
        EXPECT_EQ(object.at("clipped").get<int>() > 0, object.at("peak") > 1.0);
        const std::string report = output(folder, "ffprobe -v error -show_streams -show_format " + quoted(file));
        for (const std::string& line :
             {"duration_ts=" + std::to_string(c.frames) + "\n", "channels=" + std::to_string(c.channels) + "\n",
              c.layout, "TAG:comment=Pulled from " + c.words[0] + " ["}) {
            EXPECT_NE(report.find(line), std::string::npos) << line << " in\n" << report;
        }
    }
}

}  // namespace
}  // namespace brindlehum
