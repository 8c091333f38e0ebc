// What was written, read by others: libsndfile, FFmpeg, MediaInfo and ExifTool.
#include <gtest/gtest.h>
#include <sndfile.h>

#include <nlohmann/json.hpp>

#include "library/riff_meta.h"
#include "support/audio_files.h"

namespace brindlehum {
namespace {

using namespace test;
using nlohmann::json;

struct Sound {
    std::vector<float> samples;
    std::string description, originator;
};

Sound withSndfile(const std::filesystem::path& file) {
    SF_INFO info{};
    SNDFILE* handle = sf_open(file.c_str(), SFM_READ, &info);
    if (!handle) return {};
    Sound sound{std::vector<float>(size_t(info.frames) * size_t(info.channels)), "", ""};
    sf_readf_float(handle, sound.samples.data(), info.frames);
    SF_BROADCAST_INFO bext{};
    if (sf_command(handle, SFC_GET_BROADCAST_INFO, &bext, sizeof bext) == SF_TRUE) {
        sound.description = bext.description;
        sound.originator = bext.originator;
    }
    sf_close(handle);
    return sound;
}

TEST(ForeignReaders, SeeTheSoundAndTheMetadata) {
    const TempFolder folder;
    const auto file = folder / "x.wav";
    writeAudio(file, noisePlanes(6, 5000), {FileKind::wavex, 48000, 24, 0x3F});
    const std::vector<float> before = withSndfile(file).samples;
    SoundMeta meta;
    for (const SoundMeta::Tag& tag : SoundMeta::ixmlTags) meta.*tag.field = std::string(tag.key) + " of <this> & \"é\"";
    meta.description = "Rain on a roof";
    meta.rating = 4;
    RIFFMeta::write(meta, file);

    const Sound sound = withSndfile(file);
    EXPECT_FALSE(before.empty());
    EXPECT_TRUE(sound.samples == before);
    EXPECT_EQ(sound.description, meta.description);
    EXPECT_EQ(sound.originator, "Brindlehum");

    const auto said = [&](const std::string& command) {
        run(command + " '" + file.string() + "' >'" + (folder / "said").string() + "'");
        return json::parse(readBytes(folder / "said"));
    };
    const json ffprobe = said("ffprobe -v error -show_format -show_streams -of json");
    EXPECT_EQ(ffprobe["format"]["tags"]["comment"], meta.description);
    EXPECT_EQ(ffprobe["streams"][0]["channel_layout"], "5.1");
    const json mediainfo = said("mediainfo --Output=JSON")["media"]["track"];
    EXPECT_EQ(mediainfo[0]["Description"], meta.description);
    EXPECT_EQ(mediainfo[1]["SamplingCount"], "5000");
    const json exiftool = said("exiftool -j -G0")[0];
    EXPECT_EQ(exiftool["RIFF:Description"], meta.description);
    // Of an iXML document it makes names like XML:BwfxmlUserFxname.
    for (const SoundMeta::Tag& tag : SoundMeta::ixmlTags) {
        std::string name = "XML:BwfxmlUser" + std::string(tag.name.substr(0, 1));
        for (const char c : tag.name.substr(1)) name += char(std::tolower(c));
        EXPECT_EQ(exiftool.value(name, json()), meta.*tag.field) << name;
    }
    EXPECT_EQ(exiftool["XML:BwfxmlUserRating"], 4);
}

}  // namespace
}  // namespace brindlehum
