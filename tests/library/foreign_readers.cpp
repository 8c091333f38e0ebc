// What was written, read by others: libsndfile, FFmpeg, MediaInfo and ExifTool.
#include <sndfile.h>

#include <nlohmann/json.hpp>

#include "library/meta/riff_meta.h"
#include "support/audio_files.h"

namespace brindlehum {
namespace {

using namespace test;
using nlohmann::json;

TEST(ForeignReaders, SeeTheSoundAndTheMetadata) {
    const TempFolder folder;
    const auto file = folder / "x.wav";
    writeAudio(file, noisePlanes(6, 5000), {FileKind::wavex, 48000, 24, 0x3F});
    const Planes before = readAudio(file).planes;
    SoundMeta meta;
    for (const SoundMeta::Tag& tag : SoundMeta::ixmlTags) {
        meta.*tag.field = std::string(tag.key) + " of <this> & \"é\"";
    }
    meta.description = "Rain on a roof";
    meta.rating = 4;
    RIFFMeta::write(meta, file);

    EXPECT_EQ(before.size(), 6U);
    EXPECT_TRUE(readAudio(file).planes == before);
    SF_INFO info{};
    SNDFILE* sndfile = sf_open(file.c_str(), SFM_READ, &info);
    SF_BROADCAST_INFO bext{};
    EXPECT_EQ(sf_command(sndfile, SFC_GET_BROADCAST_INFO, &bext, sizeof bext), SF_TRUE);
    sf_close(sndfile);
    EXPECT_EQ(bext.description, meta.description);
    EXPECT_STREQ(bext.originator, "Brindlehum");

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
        for (const char c : tag.name.substr(1)) { name += char(std::tolower(c)); }
        EXPECT_EQ(exiftool.value(name, json()), meta.*tag.field) << name;
    }
    EXPECT_EQ(exiftool["XML:BwfxmlUserRating"], 4);
}

}  // namespace
}  // namespace brindlehum
