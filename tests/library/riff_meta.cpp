// Embedded metadata against RIFF files built by hand, byte for byte.
#include "library/meta/riff_meta.h"

#include "base/error.h"
#include "library/meta/meta_io.h"
#include "support/audio_files.h"
#include "support/refusal.h"
#include "support/traced.h"

namespace brindlehum {
namespace {

using namespace test;

const std::string fmt = riffChunk("fmt ", le16(1) + le16(1) + le32(48000) + le32(96000) + le16(2) + le16(16));

std::string riff(const std::string& chunks) {
    return "RIFF" + le32(uint32_t(4 + chunks.size())) + "WAVE" + chunks;
}

SoundMeta full() {
    SoundMeta meta;
    for (const SoundMeta::Tag& tag : SoundMeta::ixmlTags) {
        meta.*tag.field = "a&b <c>; \"" + std::string(tag.key) + "'";
    }
    meta.rating = 4;
    return meta;
}

std::string zeros(size_t count) {
    return std::string(count, '\0');
}

TEST(RIFFMeta, RewriteHandlesEveryShapeOfFile) {
    const std::string newStart =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<BWFXML><IXML_VERSION>2.10</IXML_VERSION>";
    const std::string end = "</BWFXML>";
    const std::string scene = "<SCENE>1</SCENE>";
    const std::string newRest = "Brindlehum" + zeros(336);
    const std::string oldBext = "old" + zeros(253) + std::string(346, 'k') + "coding history";
    const std::string other("o\0d\xFF!", 5);
    const std::string sound = riffChunk("data", "sound!");
    struct Case {
        const char* name;
        std::string meta, data, metaBehind;  // bext and iXML chunks, and the sound between them
        std::string ixmlStart, ixmlEnd;      // expected around the block
        std::string bextRest;                // expected behind the description
    };
    const auto ixml = [](const std::string& text) { return riffChunk("iXML", text); };
    const Case cases[] = {
        {"plain", "", sound, "", newStart, end, newRest},
        {"both behind the sound, no USER", "", sound, riffChunk("bext", oldBext) + ixml("<BWFXML>" + scene + end),
         "<BWFXML>" + scene, end, oldBext.substr(256)},
        {"USER in the middle", ixml("<BWFXML><USER></USER>" + scene + end), sound, "", "<BWFXML>", scene + end,
         newRest},
        {"USER that never ends", ixml("<BWFXML><USER>" + scene + end), sound, "", "<BWFXML><USER>" + scene, end,
         newRest},
        {"no iXML in the chunk", ixml("rubbish"), sound, "", newStart, end, newRest},
        {"zeros behind the document", ixml("<BWFXML>" + end + zeros(3) + "<USER></USER>"), sound, "", "<BWFXML>", end,
         newRest},
        {"ill-formed iXML", ixml("<BWFXML>\xFF" + end), sound, "", "<BWFXML>\xEF\xBF\xBD", end, newRest},
        {"two of each", riffChunk("bext", oldBext) + ixml("<BWFXML>" + scene + end), sound,
         riffChunk("bext", "x") + ixml("<BWFXML><USER></USER></BWFXML>"), "<BWFXML>" + scene, end, oldBext.substr(256)},
        {"bext of 600 bytes", riffChunk("bext", std::string(600, 'x')), sound, "", newStart, end,
         std::string(344, 'x') + zeros(2)},
        {"bext of 3 bytes", riffChunk("bext", "odd"), sound, "", newStart, end, zeros(346)},
        {"odd sound, a second one", "", riffChunk("data", "odd") + riffChunk("data", "x"), "", newStart, end, newRest},
        {"no sound yet", "", riffChunk("data", ""), "", newStart, end, newRest}};
    const TempFolder folder;
    const auto path = folder / "x.wav";
    const SoundMeta meta = full();
    const std::string description = meta.description + zeros(256 - meta.description.size());
    const std::string before = riffChunk("JUNK", "") + riffChunk("\xFF\xFEx\x01", other) + fmt;
    const std::string behind = riffChunk("LIST", other) + riffChunk("cue ", other);
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const std::string ours = riffChunk("bext", description + c.bextRest) +
                                 riffChunk("iXML", c.ixmlStart + RIFFMeta::userBlock(meta) + c.ixmlEnd);
        writeBytes(path, riff(before + c.meta + c.data + c.metaBehind + behind));
        RIFFMeta::write(meta, path);
        EXPECT_TRUE(readBytes(path) == riff(before + ours + c.data + behind));
        EXPECT_EQ(RIFFMeta::read(path), meta);
    }
    // Sizes beyond the file, a file that ends early, and pads.
    const std::string ours =
        riffChunk("bext", description + newRest) + riffChunk("iXML", newStart + RIFFMeta::userBlock(meta) + end);
    const std::pair<std::string, std::string> cuts[] = {
        {"data" + le32(4000) + "sound", riffChunk("data", "sound")},
        {"data" + le32(5) + "sound", riffChunk("data", "sound")},
        {sound + "LIST" + zeros(3), sound},
        {sound + "LIST" + le32(9) + "abc", sound + riffChunk("LIST", "abc")},
        // Without pad bytes, as some writers have it, and with one that isn't zero.
        {"data" + le32(5) + "sound" + "LIST" + le32(3) + "abc" + "cue " + le32(0),
         riffChunk("data", "sound") + riffChunk("LIST", "abc") + riffChunk("cue ", "")},
        {"data" + le32(5) + "soundA" + "LIST" + le32(2) + "ab", riffChunk("data", "sound") + riffChunk("LIST", "ab")},
    };
    for (const auto& [stored, expected] : cuts) {
        writeBytes(path, "RIFF" + le32(7) + "WAVE" + fmt + stored);
        for (int round = 0; round < 2; ++round) { RIFFMeta::write(meta, path); }  // the second changes nothing
        EXPECT_EQ(readBytes(path), riff(fmt + ours + expected)) << stored;
    }
}

TEST(RIFFMeta, FileThatIsNoWaveIsRefusedAndLeftAlone) {
    const TempFolder folder;
    const std::string sound = riffChunk("data", "sound!");
    std::string many = fmt;
    for (size_t i = 0; i <= RIFFMeta::maxChunks; ++i) { many += zeros(8); }
    const struct {
        const char* name;
        std::string bytes;
        int code;
    } cases[] = {
        {"x", riff(fmt + sound), 70},
        {"empty.wav", "", 71},
        {"text.WAV", std::string(3000, 'q'), 71},
        {"avi.wav", "RIFF" + le32(4) + "AVI " + sound, 71},
        {"rf64.wav", "RF64" + le32(0xFFFFFFFF) + "WAVE" + fmt + sound, 71},
        {"silent.wave", riff(fmt + riffChunk("LIST", "data")), 71},
        {"unclosed.wav", riff(fmt + "data" + zeros(4) + "sound of unknown length"), 71},
        {"unclosed silence.wav", riff(sound + many), 71},
    };
    const auto refusal = [](const auto& file) { return refusalOf([&] { MetaIO::write(full(), file); }); };
    for (const auto& [name, bytes, code] : cases) {
        writeBytes(folder / name, bytes);
        EXPECT_EQ(int(refusal(folder / name).kind.value()), code) << name;
        EXPECT_EQ(readBytes(folder / name), bytes) << name;
    }
    // With its new chunks this one would pass 4 GiB. Sparse, so that no one waits for its bytes.
    const auto huge = folder / "huge.wav";
    writeBytes(huge, riff(fmt + "data" + le32(0xFFFFFFFFU)));
    std::filesystem::resize_file(huge, 0xFFFFFFFFU - 600);
    EXPECT_EQ(refusal(huge).text, "File too large for RIFF");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path()), {}), int(std::size(cases)) + 1);
}

// Of a USER block only the known tags change, each in its place: what other programs keep there stays.
TEST(RIFFMeta, ForeignPartsOfTheUserBlockStayByteForByte) {
    SoundMeta meta;
    meta.description = "new <";
    meta.fxName = "Slam";
    meta.rating = 3;
    const std::string by = "<EMBEDDER>Brindlehum</EMBEDDER>", fx = "<FXNAME>Slam</FXNAME>",
                      stars = "<RATING>3</RATING>";
    const std::string description = "<DESCRIPTION>new &lt;</DESCRIPTION>";
    const std::string foreign = "\n <SHOW a='1'>x<NOTES>inner</NOTES></SHOW>\t<!-- <FXNAME>no</FXNAME> -->\n<EMPTY/>";
    const std::pair<std::string, std::string> cases[] = {
        {foreign, foreign + description + fx + stars + by},
        {"<FXNAME>Slam</FXNAME>" + foreign + "<DESCRIPTION>old</DESCRIPTION> <X/><RATING> 3 </RATING>" + by + "\n",
         fx + foreign + description + " <X/><RATING> 3 </RATING>" + by + "\n"},
        {"<NOTES>gone</NOTES><VOLUME>3</VOLUME><NOTES>too</NOTES>" + by,
         "<VOLUME>3</VOLUME>" + by + description + fx + stars},
        {"<EMBEDDER>Else</EMBEDDER>\n<CATEGORYFULL>A-B</CATEGORYFULL>",
         by + "\n<CATEGORYFULL>A-B</CATEGORYFULL>" + description + fx + stars},
        {"<CATEGORY>A</CATEGORY><CATEGORYFULL>A</CATEGORYFULL><DESCRIPTION>new &#60;</DESCRIPTION>",
         description + fx + stars + by},
        {"A=1\nfxname: Slam\nSHOW=x\nNOTES=gone\nEND=1",
         "A=1\n" + fx + "\nSHOW=x\n\nEND=1\n" + description + stars + by},
        {"<![CDATA[<FXNAME>]]><SHOW><FXNAME>open</SHOW>",
         "<![CDATA[<FXNAME>]]><SHOW><FXNAME>open</SHOW>" + description + fx + stars + by},
    };
    const TempFolder folder;
    const auto file = folder / "x.wav";
    for (const auto& [before, after] : cases) {
        const std::string document = "<BWFXML><A/><USER>" + before + "</USER><B/></BWFXML>";
        writeBytes(file, riff(fmt + riffChunk("iXML", document) + riffChunk("data", "")));
        for (int round = 0; round < 2; ++round) {  // the second changes nothing
            RIFFMeta::write(meta, file);
            const std::string bytes = readBytes(file);
            const size_t start = bytes.find("<USER>") + 6;
            EXPECT_EQ(bytes.substr(start, bytes.find("</USER><B/></BWFXML>") - start), after) << before;
            EXPECT_EQ(RIFFMeta::read(file), meta) << before;
        }
    }
}

// The known tags are found however much stands before them: what isn't read would be cleared by the next save.
TEST(RIFFMeta, LongDocumentIsReadToItsEnd) {
    const TempFolder folder;
    writeBytes(folder / "x.wav", riff(riffChunk("iXML", "<BWFXML>" + std::string(1'200'000, ' ') +
                                                            "<USER><FXNAME>far</FXNAME></USER></BWFXML>") +
                                      riffChunk("data", "")));
    EXPECT_EQ(RIFFMeta::read(folder / "x.wav").fxName, "far");
}

// The sizes that an RF64 or W64 file states stay right, and what stands between the chunks stays byte for byte.
TEST(RIFFMeta, LargeContainersKeepTheirSizesAndChunks) {
    const TempFolder folder;
    const auto path = folder / "x.rf64";
    const SoundMeta meta = full();
    const std::string sound = "a sound of odd length", far = le32(0xFFFFFFFF);
    const auto le64 = [](uint64_t value) { return le32(uint32_t(value)) + le32(uint32_t(value >> 32)); };
    const auto rf64 = [&](const char* id, const std::string& table, const std::string& ours) {
        const std::string body =
            fmt + ours + "data" + far + sound + zeros(1) + "big " + far + "abcd" + riffChunk("LIST", "odd");
        const std::string rest = riffChunk("JUNK", "x") + body;
        const std::string sizes = le64(4 + 8 + 24 + table.size() + rest.size()) + le64(sound.size()) + le64(77);
        return id + far + "WAVE" + riffChunk("ds64", sizes + table) + rest;
    };
    const std::string ours =
        riffChunk("bext", meta.description + zeros(256 - meta.description.size()) + "Brindlehum" + zeros(336)) +
        riffChunk("iXML",
                  "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<BWFXML><IXML_VERSION>2.10"
                  "</IXML_VERSION>" +
                      RIFFMeta::userBlock(meta) + "</BWFXML>");
    const std::string table = le32(2) + "big " + le64(4) + "none" + le64(5);
    for (const char* id : {"RF64", "BW64"}) {
        writeBytes(path, rf64(id, table, ""));
        EXPECT_FALSE(RIFFMeta::readRecord(path)) << "its row may know more";
        for (int round = 0; round < 2; ++round) {
            RIFFMeta::write(meta, path);
            EXPECT_TRUE(readBytes(path) == rf64(id, table, ours)) << id;
        }
        EXPECT_EQ(RIFFMeta::readRecord(path), meta);
    }
    // Without a table `ds64` has 28 bytes; the size of the sound may be any.
    const std::string before = fmt + "data" + far + sound + zeros(1);
    writeBytes(path,
               "RF64" + far + "WAVE" + riffChunk("ds64", le64(0) + le64(sound.size()) + le64(0) + le32(0)) + before);
    RIFFMeta::write(meta, path);
    const std::string now = readBytes(path);
    EXPECT_EQ(now.substr(20, 16), le64(now.size() - 8) + le64(sound.size()));
    EXPECT_EQ(now.substr(48), fmt + ours + before.substr(fmt.size()));

    writeAudio(folder / "x.w64", noisePlanes(3, 1001), {.kind = FileKind::w64, .rate = 48000, .bits = 24});
    const Planes planes = readAudio(folder / "x.w64").planes;
    for (int round = 0; round < 2; ++round) { RIFFMeta::write(meta, folder / "x.w64"); }
    const std::string w64 = readBytes(folder / "x.w64");
    EXPECT_EQ(w64.substr(16, 8), le64(w64.size()));
    EXPECT_EQ(w64.size() % 8, 0U);
    EXPECT_TRUE(readAudio(folder / "x.w64").planes == planes);
    EXPECT_EQ(RIFFMeta::readRecord(folder / "x.w64"), meta);
}

TEST(RIFFMeta, DescriptionIsCutBetweenCharacters) {
    const TempFolder folder;
    const std::string a(255, 'a');
    writeBytes(folder / "x.wav", riff(riffChunk("bext", std::string(602, 'x')) + riffChunk("data", "")));
    SoundMeta meta;
    meta.description = a + "\xC3\xA9";
    RIFFMeta::write(meta, folder / "x.wav");
    EXPECT_EQ(readBytes(folder / "x.wav").substr(20, 257), a + zeros(1) + "x");
}

TEST(RIFFMeta, ReadsBlocksOfTagsAndOfLines) {
    const std::pair<const char*, const char*> cases[] = {
        // description|fxName|source|rating
        {"<USER><DESCRIPTION> a &amp;lt; &lt;b&gt;&quot;&apos;\n</DESCRIPTION><RATING> 3\n</RATING></USER>",
         "a &lt; <b>\"'||| 3"},
        {"<USER>\n  FXNAME=indented\nfxname=Slam=1 &amp; 2 \r\nFXNAME:later\nSourceID: x\nDESCRIPTIONS=no\n</USER>",
         "|Slam=1 & 2|x| 0"},
        {"<USER><FXNAME>tag</FXNAME>\nFXNAME=line\nSOURCEID=</USER><DESCRIPTION>outside</DESCRIPTION>", "|tag|| 0"},
        {"<USER><FXNAME>no end\nSOURCEID=x", "||x| 0"},
        {"<USER><NOTES>of two lines\nFXNAME=no\nSOURCEID: no</NOTES>\nSOURCEID=x</USER>", "||x| 0"},
        {"<USER></FXNAME><FXNAME>a</FXNAME><RATING>+5</RATING>", "|a|| 5"},
        {"<USER><RATING>-2</RATING>", "||| -2"},
        {"<USER><RATING>+-3</RATING></USER>", "||| 0"},
        {"<User><FXNAME>a</FXNAME></User>", "||| 0"},
        {"</USER><USER>", "||| 0"},
    };
    for (const auto& [xml, told] : cases) {
        const SoundMeta m = RIFFMeta::parseUSER(xml);
        EXPECT_EQ(m.description + "|" + m.fxName + "|" + m.source + "| " + std::to_string(m.rating), told) << xml;
    }
    SoundMeta half;
    half.subCategory = "B&B";
    half.rating = -1;
    EXPECT_EQ(RIFFMeta::userBlock(half),
              "<USER><SUBCATEGORY>B&amp;B</SUBCATEGORY><CATEGORYFULL>B&amp;B</CATEGORYFULL>"
              "<EMBEDDER>Brindlehum</EMBEDDER></USER>");
}

// iXML counts first, bext fills in, the file's name fills the rest, and a damaged chunk only leaves a gap.
TEST(RIFFMeta, FieldsAreReadFromAnyFile) {
    const TempFolder folder;
    const std::string bext = riffChunk("bext", " Rain\n \0hidden" + zeros(600));
    const std::string user = "<USER>SUBCATEGORY=MINE\n</USER>";
    const struct {
        const char* name;
        std::string bytes;
        const char* told;  // description|category|subCategory|fxName
    } cases[] = {
        {"AMBBird_Dawn.wav", riff(bext + riffChunk("iXML", user)), "Rain|AMBIENCE|MINE|Dawn"},
        {"Take 1.amb", riff(riffChunk("iXML", "<USER>DESCRIPTION=x</USER>") + bext), "x|||Take 1"},
        {"Take 1.RF64", riff(bext), "Rain|||Take 1"},
        {"Take 1.rf64", "RF64" + riff(bext).substr(4), "Rain|||Take 1"},
        {"Take 1.wave", riff("iXML" + le32(4000) + "<USER>FXNAME=cut"), "|||cut"},
        {"Take 1.bwf", riff("bext" + le32(4000) + "Sea"), "Sea|||Take 1"},
        {"Take \xFF.wav", "", "|||Take \xEF\xBF\xBD"},
    };
    for (const auto& [name, bytes, told] : cases) {
        writeBytes(folder / name, bytes);
        const SoundMeta m = MetaIO::read(folder / name);
        EXPECT_EQ(m.description + "|" + m.category + "|" + m.subCategory + "|" + m.fxName, told) << name;
    }
}

TEST(RIFFMeta, RewriteKilledAtAnySystemCallLeavesOldOrNew) {
    const TempFolder folder;
    const auto file = folder / "x.wav";
    SoundMeta old;
    old.description = "old";
    writeBytes(file, riff(fmt + riffChunk("data", std::string(50'000, 's'))));
    RIFFMeta::write(old, file);
    const std::string before = readBytes(file);
    for (int last = 0, status = -1; status < 0; ++last) {
        ASSERT_LT(last, 1000);
        writeBytes(file, before);
        const auto write = [&] { return RIFFMeta::write(full(), file) == 0 ? 1 : 0; };
        status = runTraced(write, [&](int count, long) { return count < last; });
        const std::string now = readBytes(file);
        ASSERT_EQ(now.substr(0, 8), "RIFF" + le32(uint32_t(now.size() - 8))) << last;
        ASSERT_TRUE(now.ends_with(before.substr(before.find("data")))) << last;
        const SoundMeta meta = RIFFMeta::read(file);
        ASSERT_TRUE(meta == full() || (meta == old && status != 0)) << last;
    }
}

TEST(RIFFMeta, RewriteThroughALinkKeepsTheLink) {
    const TempFolder folder;
    writeBytes(folder / "x.wav", riff(fmt + riffChunk("data", "sound!")));
    std::filesystem::create_symlink("x.wav", folder / "link.wav");
    RIFFMeta::write(full(), folder / "link.wav");
    EXPECT_TRUE(std::filesystem::is_symlink(folder / "link.wav"));
    EXPECT_EQ(RIFFMeta::read(folder / "x.wav"), full());
}

}  // namespace
}  // namespace brindlehum
