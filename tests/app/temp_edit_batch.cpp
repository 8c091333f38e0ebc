// The batch of temp edits as the application runs it: files, messages, folders shown, and a cancel.
#include "app_fixture.h"
#include "support/music.h"

namespace brindlehum {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;

class TempEditsOfTheApp : public test::AppTest {
protected:
    TempEditBatch& batch_ = app_.tempEdits();
    std::vector<std::string> messages_;

    void SetUp() override {
        PlayerMessage& message = app_.player().message();
        QObject::connect(&message, &PlayerMessage::changed, &message, [this, &message] {
            if (message.text()) { messages_.push_back(*message.text()); }
        });
    }
    // Clicks at 120 BPM.
    fs::path song(const std::string& name, double seconds = 20) {
        const auto clicks = test::clickTrack(test::beatTimes(0, seconds, [](double) { return 120.0; }), 4, 0, seconds);
        test::writeAudio(folder_ / name, {clicks}, {.rate = int(test::musicRate)});
        return folder_ / name;
    }
    void settle() {
        EXPECT_TRUE(loop_.runUntil([this] { return !batch_.progress(); }, 60));
    }
};

TEST_F(TempEditsOfTheApp, EachFileGetsAFolderBesideItAndSkippedOnesAreCounted) {
    app_.makeTempEdits({folder_ / "notes.txt", folder_.path()});
    EXPECT_FALSE(batch_.progress()) << "no audio file is among them";
    double reached = 0;
    QObject::connect(&batch_, &TempEditBatch::changed, &batch_, [&] {
        if (!batch_.progress()) { return; }
        EXPECT_GE(*batch_.progress(), reached);
        reached = *batch_.progress();
    });
    app_.makeTempEdits({song("One.wav"), song("Short.wav", 1), folder_ / "notes.txt", song("Two.wav")});
    settle();
    EXPECT_THAT(messages_,
                ElementsAre("Temp edits: analyzing 3 files…", "Temp edits 1/3: One.wav", "Temp edits 2/3: Short.wav",
                            "Temp edits 3/3: Two.wav", "Temp edits: 2 written, 1 skipped (no steady pulse)"));
    EXPECT_FALSE(app_.player().message().isProblem());
    EXPECT_EQ(reached, 1);
    EXPECT_THAT(session_.files.shown, ElementsAre(folder_ / "One Edits", folder_ / "Two Edits"));
    EXPECT_TRUE(fs::exists(folder_ / "One Edits" / "One - 15s.wav"));
    EXPECT_FALSE(fs::exists(folder_ / "Short Edits"));
    ASSERT_EQ(batch_.skipped().size(), 1U);
    EXPECT_EQ(batch_.skipped()[0].file, folder_ / "Short.wav");
}

// Both write the same folder, and two writers of one file refuse each other.
TEST_F(TempEditsOfTheApp, TheEditorWaitsForABatchWithItsEdits) {
    const fs::path piece = song("One.wav");
    MusicModel& music = app_.editor().music();
    app_.editor().document().open(piece);
    ASSERT_TRUE(loop_.runUntil([&] { return !music.plans().empty(); }, 60));
    app_.makeTempEdits({piece, song("Two.wav")});
    music.makeTempEdits();
    ASSERT_TRUE(loop_.runUntil([&] { return !music.writing(); }, 60));
    EXPECT_FALSE(batch_.progress()) << "the batch goes first";
    EXPECT_EQ(app_.editor().message().text(), std::to_string(music.plans().size()) + " edits written");
    EXPECT_EQ(music.lastExport()->folder, folder_ / "One Edits");
    EXPECT_FALSE(fs::exists(folder_ / "One Edits/One - 15s 2.wav"));
}

TEST_F(TempEditsOfTheApp, TheControlCommandEditsTheLoadedFileIntoTheFolderOfTheSettings) {
    app_.settings().change([this](AppSettings& settings) {
        settings.tempEditsBesideSource = false;
        settings.pullsFolder = (folder_ / "Pulls").string();
    });
    app_.handle("tempedits", {});
    EXPECT_FALSE(batch_.progress()) << "nothing is loaded";
    app_.player().load(song("Loaded.wav"), false);
    ASSERT_TRUE(loop_.runUntil([this] { return !loaded().empty(); }));
    app_.handle("tempedits", {});
    settle();
    EXPECT_EQ(messages_.back(), "Temp edits written for 1 file");
    EXPECT_TRUE(fs::exists(folder_ / "Pulls" / "Edits" / "Loaded Edits" / "Loaded - Edit Notes.txt"));
}

TEST_F(TempEditsOfTheApp, CancellingLeavesNoHalfFileAndSkipsWaitingOnes) {
    const auto two = song("Two.wav");
    app_.makeTempEdits({song("One.wav"), two});
    app_.makeTempEdits({two});
    batch_.finish(60);
    settle();
    EXPECT_THAT(messages_.back(), testing::StartsWith("Temp edits cancelled: "));
    for (const auto& entry : fs::recursive_directory_iterator(folder_.path())) {
        EXPECT_NE(entry.path().filename().string().front(), '.') << entry.path();
    }
    EXPECT_FALSE(fs::exists(folder_ / "Two Edits" / "Two - Edit Notes.txt"));
    app_.makeTempEdits({two});
    settle();
    EXPECT_EQ(messages_.back(), "Temp edits written for 1 file");
}

}  // namespace
}  // namespace brindlehum
