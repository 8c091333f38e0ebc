// What an exported part takes along of its source's metadata.
#include "library/meta/carried_notes.h"

#include <gtest/gtest.h>

#include "audio/write/wav_file_writer.h"
#include "library/meta/meta_io.h"
#include "library/meta/riff_meta.h"
#include "support/audio_files.h"

namespace brindlehum {
namespace {

using namespace test;

std::string field(std::string text, size_t length) {
    text.resize(length, '\0');
    return text;
}
std::string point(uint32_t name, uint32_t frame) {
    return le32(name) + le32(frame) + "data" + le32(0) + le32(0) + le32(frame);
}

// A file with all notes, and the part from frame 1000 to before 3000 of it as a file of its own.
class Carrying : public testing::Test {
protected:
    std::filesystem::path source(const std::string& chunks) {
        WavNotes notes{.description = "Slate 12", .originator = "Recorder", .originatorReference = "R7"};
        notes.date = "2019-03-04";
        notes.time = "05:06:07";
        notes.timeReference = 48000000;
        notes.codingHistory = "A=PCM,F=48000\r\n";
        notes.chunks = chunks;
        return file("DOORWood_Slam_Foe_Src.wav", notes);
    }
    std::filesystem::path file(const std::string& name, const WavNotes& notes) {
        WavFileWriter writer(makeFileSink(folder_ / name), {48000, 1, 4, WavSamples::pcm24, notes});
        writer.appendAll(noisePlanes(1, 5000));
        writer.finish();
        return folder_ / name;
    }
    TempFolder folder_;
};

TEST_F(Carrying, TakesOriginTimeProductionAndUcsFields) {
    const auto from = source(riffChunk("iXML",
                                       "<BWFXML><PROJECT>Storm &amp; Co</PROJECT><TRACK_LIST>x</TRACK_LIST><USER>"
                                       "<NOTE>not this</NOTE><DESCRIPTION>A slam</DESCRIPTION><RATING>4</RATING>"
                                       "</USER><TAKE>3</TAKE></BWFXML>"));
    const WavNotes notes = carriedNotes(from, 1000, 3000);
    EXPECT_EQ(notes.originator, "Recorder");
    EXPECT_EQ(notes.originatorReference, "R7");
    EXPECT_EQ(notes.date + notes.time, "2019-03-0405:06:07");
    EXPECT_EQ(notes.timeReference, 48001000U);
    EXPECT_EQ(notes.codingHistory, "A=PCM,F=48000\r\n");
    EXPECT_EQ(notes.description, "") << "the caller's";
    const auto part = file("part_714.wav", notes);
    const SoundMeta read = MetaIO::read(part);
    EXPECT_EQ(read, MetaIO::read(from)) << "though the part's name says nothing";
    EXPECT_EQ(read.catID, "DOORWood");
    EXPECT_EQ(read.rating, 4);
    const std::string bytes = readBytes(part);
    EXPECT_NE(bytes.find("<PROJECT>Storm &amp; Co</PROJECT><TAKE>3</TAKE><USER>"), std::string::npos);
    EXPECT_EQ(bytes.find("TRACK_LIST"), std::string::npos) << "the part has other tracks";
    EXPECT_EQ(bytes.find("not this"), std::string::npos);
}

TEST_F(Carrying, TakesTheCuePointsOfThePart) {
    const auto from = source(
        riffChunk("cue ", le32(5) + point(1, 999) + point(2, 1000) + point(3, 2999) + point(4, 3000) + point(3, 1500)) +
        riffChunk("LIST", "adtl" + riffChunk("labl", le32(1) + field("out", 4)) +
                              riffChunk("labl", le32(3) + field("bang", 5)) +
                              riffChunk("note", le32(2) + field("n", 2)) + riffChunk("file", le32(2) + "x")));
    const std::string list =
        "adtl" + riffChunk("note", le32(2) + field("n", 2)) + riffChunk("labl", le32(3) + field("bang", 5));
    const std::string cues = riffChunk("cue ", le32(2) + point(2, 0) + point(3, 1999)) + riffChunk("LIST", list);
    EXPECT_NE(readBytes(file("part.wav", carriedNotes(from, 1000, 3000))).find(cues + "data"), std::string::npos);
    EXPECT_TRUE(carriedNotes(from, 4000, 5000).cues.empty());
    // A region, cut to the part.
    const auto region = [&](uint32_t length) {
        return riffChunk("cue ", le32(1) + point(9, 0)) +
               riffChunk("LIST", "adtl" + riffChunk("ltxt", le32(9) + le32(length) + "rgn " + std::string(8, '\0')));
    };
    const auto whole = source(region(2500));
    EXPECT_EQ(carriedNotes(whole, 0, 5000).cues.at(0).length, 2500);
    EXPECT_NE(readBytes(file("part.wav", carriedNotes(whole, 0, 2000))).find(region(2000)), std::string::npos);
}

TEST_F(Carrying, ABrokenSourceGivesWhatCanBeRead) {
    const auto plain = folder_ / "rain.wav";
    writeAudio(plain, noisePlanes(1, 100));
    EXPECT_EQ(carriedNotes(plain, 0, 100).chunks, "") << "a name alone is no metadata";
    EXPECT_EQ(carriedNotes(folder_ / "absent.wav", 0, 1).originator, "Brindlehum");
    const auto from = source(riffChunk("cue ", le32(1000000) + point(1, 5)) + riffChunk("LIST", "adtllabl" + le32(90)));
    EXPECT_EQ(carriedNotes(from, 0, 10).cues, (std::vector<WavCue>{{1, 5, 0, ""}}));
    const std::string bytes = readBytes(from);
    for (size_t cut = 40; cut < 1200; cut += 37) {
        writeBytes(from, bytes.substr(0, cut));
        carriedNotes(from, 0, 10);
    }
}

}  // namespace
}  // namespace brindlehum
