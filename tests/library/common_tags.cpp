// Tags of compressed files, written by the ffmpeg program, and read by the table of common keys.
#include "audio/probe/container_tags.h"
#include "library/meta/meta_io.h"
#include "support/audio_files.h"

namespace brindlehum {
namespace {

using namespace test;

const char* const allTags =
    " -metadata title='Slam & <Heavy>' -metadata artist=JéD -metadata author=Else -metadata comment='Oak door'"
    " -metadata publisher=House -metadata organization=House -metadata keywords='oak, slam' -metadata genre=No";

void makeFile(const std::filesystem::path& file, const std::string& arguments) {
    run("ffmpeg -y -f lavfi -i sine=d=0.2 " + arguments + " '" + file.string() + "'");
}

TEST(CommonTags, AreReadFromEveryFormat) {
    const TempFolder folder;
    const std::string described = std::string(allTags) + " -metadata description='Second'";
    const struct {
        const char* name;
        std::string arguments;
        const char* told;  // trackTitle|designer|description|library|keywords|catID|fxName
    } cases[] = {
        {"DOORWood_Slam_Me.mp3", allTags, "Slam & <Heavy>|JéD|Oak door|House|oak, slam|DOORWood|Slam"},
        {"a_b.mp3", described, "Slam & <Heavy>|JéD|Second|House|oak, slam||a_b"},
        {"a.flac", allTags, "Slam & <Heavy>|JéD|Oak door|House|oak, slam||a"},
        {"a.ogg", allTags, "Slam & <Heavy>|JéD|Oak door|House|oak, slam||a"},
        {"a.m4a", described, "Slam & <Heavy>|JéD|Second||oak, slam||a"},
        {"a.aif", std::string(allTags) + " -metadata artist=", "Slam & <Heavy>|Else|Oak door||||a"},
        {"AMBBird_Dawn_JD.aac", "", "|JD||||AMBBird|Dawn"},
    };
    for (const auto& [name, arguments, told] : cases) {
        makeFile(folder / name, arguments);
        const SoundMeta m = MetaIO::read(folder / name);
        EXPECT_EQ(m.trackTitle + "|" + m.designer + "|" + m.description + "|" + m.library + "|" + m.keywords + "|" +
                      m.catID + "|" + m.fxName,
                  told)
            << name;
    }
    // The title of a picture is not the sound's.
    makeFile(folder / "cover.mp3",
             "-f lavfi -i color=s=16x16:d=0.04 -map 0 -map 1 -metadata:s:v title=Cover "
             "-metadata:s:v comment=Front -c:v png -disposition:v attached_pic");
    EXPECT_EQ(MetaIO::read(folder / "cover.mp3").trackTitle, "");
}

TEST(CommonTags, ReadingStopsWhenItsTimeIsUp) {
    const TempFolder folder;
    makeFile(folder / "x.mp3", allTags);
    int whole = 0;
    EXPECT_EQ(containerTags(folder / "x.mp3", [&] { return ++whole < 0; }).size(), 7U);
    for (int allowed = 0; allowed < whole; ++allowed) {
        int asked = 0;
        const auto tags = containerTags(folder / "x.mp3", [&] { return ++asked > allowed; });
        EXPECT_LE(tags.size(), 7U);
        EXPECT_LE(asked, whole + 8) << "goes on after it was stopped";
    }
}

}  // namespace
}  // namespace brindlehum
