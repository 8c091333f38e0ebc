// What the editor saves, with the metadata of its source, read back from the file.
#include "app_fixture.h"
#include "audio/write/wav_file_writer.h"
#include "library/meta/carried_notes.h"
#include "library/meta/meta_io.h"

namespace brindlehum {
namespace {

namespace fs = std::filesystem;
using namespace test;

class EditorFiles : public AppTest {
protected:
    void SetUp() override {
        app_.start(0);
        WavNotes notes{.originator = "Recorder", .date = "2019-03-04", .time = "05:06:07"};
        notes.timeReference = 480000;
        notes.codingHistory = "A=PCM,F=48000\r\n";
        notes.chunks =
            riffChunk("iXML",
                      "<BWFXML><SCENE>7</SCENE><USER><DESCRIPTION>A slam</DESCRIPTION><CATID>DOORWood</CATID>"
                      "</USER></BWFXML>");
        const auto label = [](uint32_t name) { return riffChunk("labl", le32(name) + "hit" + std::string(1, '\0')); };
        notes.cues = {{1, 1000, 0, label(1)}, {2, 20000, 0, label(2)}, {3, 30000, 0, ""}};
        WavFileWriter writer(makeFileSink(path_), {48000, 1, 4, WavSamples::pcm24, notes});
        writer.appendAll(noisePlanes(1, 48000));
        writer.finish();
        fs::permissions(path_, fs::perms(0640));
        document_.open(path_);
        settle();
    }
    void settle() {
        document_.queue().drain();
        document_.journal().finish(20);
        loop_.drain();
    }
    // What the file says of itself after the document was saved over it.
    WavNotes saved() {
        document_.saveAs(path_);
        settle();
        EXPECT_FALSE(document_.isDirty()) << app_.editor().message().text().value_or("");
        EXPECT_EQ(int64_t(readAudio(path_).planes.at(0).size()), document_.total());
        return notes();
    }
    WavNotes notes() const { return carriedNotes(path_, 0, 1'000'000); }

    fs::path path_ = folder_ / "DOORWood_Slam_Foe_Src.wav";
    DocumentModel& document_ = app_.editor().document();
};

TEST_F(EditorFiles, ADocumentSavedOverItsSourceKeepsTheNotesAndMovesTimeAndCuePoints) {
    const WavNotes opened = notes();
    const SoundMeta meta = MetaIO::read(path_);
    document_.setSelection(FrameRange{0, 2000});
    document_.cut();
    WavNotes expected = opened;
    expected.timeReference = 482000;
    expected.cues = {{2, 18000, 0, opened.cues[1].entries}, {3, 28000, 0, ""}};
    for (int time = 0; time < 2; ++time) {
        EXPECT_EQ(saved(), expected) << "also when it is saved a second time";
        EXPECT_EQ(MetaIO::read(path_), meta);
    }
    EXPECT_EQ(fs::status(path_).permissions(), fs::perms(0640));
    // The file lacks the point now, the document doesn't.
    document_.undo();
    EXPECT_TRUE(document_.isDirty());
    EXPECT_EQ(saved(), opened);
    EXPECT_NE(readBytes(path_).find("Edited in Brindlehum from DOORWood_Slam_Foe_Src.wav"), std::string::npos);
}

TEST_F(EditorFiles, WordsEditedWhileTheDocumentIsOpenStay) {
    SoundMeta meta = MetaIO::read(path_);
    meta.description = "A heavy slam";
    MetaIO::write(meta, path_);
    document_.setSelection(FrameRange{0, 10});
    document_.cut();
    EXPECT_EQ(saved().timeReference, 480010U);
    EXPECT_EQ(MetaIO::read(path_).description, "A heavy slam");
    // Nor is anything lost with the source.
    fs::rename(path_, folder_ / "elsewhere.wav");
    document_.undo();
    EXPECT_EQ(saved().cues.size(), 3U);
    EXPECT_EQ(MetaIO::read(path_).description, "A slam") << "as it was opened";
}

}  // namespace
}  // namespace brindlehum
