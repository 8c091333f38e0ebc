// The record in every format: it reads back as it was written, and what others stored stays.
#include "support/tagged_files.h"

#include <algorithm>

#include "library/meta/meta_io.h"
#include "support/refusal.h"

namespace brindlehum {
namespace {

using namespace test;

std::string toldFields(const SoundMeta& meta) {
    std::string text;
    for (const SoundMeta::Tag& tag : SoundMeta::ixmlTags) {
        text += std::string(tag.key) + "=" + meta.*tag.field + "|";
    }
    return text + std::to_string(meta.rating);
}

TEST(TaggedFiles, RecordReadsBackAndSoundAndForeignTagsStay) {
    const TempFolder folder;
    const unsigned seed = std::random_device()();
    std::printf("seed %u\n", seed);
    Random random(seed);
    const fs::path scratch = folder / "said";
    for (const TaggedFormat& format : taggedFormats) {
        SCOPED_TRACE(format.name);
        const fs::path file = folder / format.name;
        makeTagged(file, format, random);
        const std::string sound = soundDigest(file, scratch);
        const std::set<std::string> foreign = foreignTags(file, scratch);
        for (int round = 0; round < 2; ++round) {  // the second over our own tags
            const SoundMeta meta = drawnRecord(random);
            ASSERT_NE(MetaIO::write(meta, file), 0U);
            EXPECT_EQ(toldFields(MetaIO::read(file)), toldFields(meta));
            EXPECT_TRUE(MetaIO::readRecord(file).has_value());
        }
        EXPECT_EQ(soundDigest(file, scratch), sound);
        // A new `bext` adds a time reference.
        const std::set<std::string> now = foreignTags(file, scratch);
        EXPECT_TRUE(std::ranges::includes(now, foreign))
            << testing::PrintToString(foreign) << "\nnow " << testing::PrintToString(now);
    }
}

// The first record starts from what other programs' tags say, and shows in the format's own tags.
TEST(TaggedFiles, StandardTagsHoldTheFieldsThatTheyShowed) {
    const TempFolder folder;
    for (const char* name : {"a.flac", "a.mp3", "a.m4a", "a.opus"}) {
        const fs::path file = folder / name;
        run("ffmpeg -y -f lavfi -i sine=d=0.2 -metadata title=Old -metadata artist=Me '" + file.string() + "'");
        EXPECT_FALSE(MetaIO::readRecord(file).has_value()) << name;
        SoundMeta meta = MetaIO::read(file);
        meta.trackTitle = "Slam";
        MetaIO::write(meta, file);
        EXPECT_EQ(MetaIO::read(file), meta) << name;
        const std::string tags = saidBy(
            "ffprobe -v error -show_entries format_tags:stream_tags -of flat '" + file.string() + "'", folder / "said");
        EXPECT_NE(lowerAscii(tags).find("title=\"slam\""), std::string::npos) << tags;
        EXPECT_EQ(tags.find("Old"), std::string::npos) << name;
    }
}

TEST(TaggedFiles, NamesUpToTheFileSystemsLimitCanBeSavedTo) {
    const TempFolder folder;
    for (const TaggedFormat& format : taggedFormats) {
        const std::string extension = fs::path(format.name).extension();
        const fs::path file = folder / (std::string(255 - extension.size(), 'n') + extension);
        run("ffmpeg -y -f lavfi -i sine=d=0.1 " + std::string(format.arguments) + " '" + file.string() + "'");
        SoundMeta meta = MetaIO::read(file);
        meta.notes = "kept";
        MetaIO::write(meta, file);
        EXPECT_EQ(MetaIO::read(file), meta) << format.name;
        fs::remove(file);
    }
    EXPECT_TRUE(fs::is_empty(folder.path()));
}

// A file whose content isn't what its name says, or is damaged, is refused and left alone.
TEST(TaggedFiles, FilesThatCantHoldARecordAreLeftAlone) {
    const TempFolder folder;
    const std::pair<const char*, std::string> cases[] = {{"x.mp3", "RIFF1234WAVE"},
                                                         {"x.flac", "fLaC"},
                                                         {"x.m4a", std::string("\0\0\0\x08"
                                                                               "ftyp",
                                                                               8)},
                                                         {"x.ogg", ""},
                                                         {"x.aif",
                                                          "FORM\x00\x00\x10\x00"
                                                          "AIFF"},
                                                         {"x.caf", "caff"}};
    for (const auto& [name, bytes] : cases) {
        writeBytes(folder / name, bytes);
        const Refusal said = refusalOf([&] { MetaIO::write({}, folder / name); });
        EXPECT_EQ(said.kind, ErrorKind::notEmbeddable) << name << " " << said.text;
        EXPECT_EQ(readBytes(folder / name), bytes) << name;
    }
}

}  // namespace
}  // namespace brindlehum
