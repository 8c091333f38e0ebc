// The batch of temp edits as the application runs it: what is made, told, shown and left when it is cancelled.
#include <gmock/gmock.h>

#include <fstream>

#include "app/app_model.h"
#include "support/audio_files.h"
#include "support/music.h"
#include "support/platform/manual_audio.h"
#include "support/platform/manual_main_loop.h"
#include "support/platform/scripted_session.h"

namespace brindlehum {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;

class TempEditBatchOf : public testing::Test {
protected:
    ManualMainLoop loop_;
    ManualAudioSystem audio_{loop_};
    MemoryDefaults defaults_;
    ScriptedSession session_;
    test::TempFolder folder_;
    AppModel app_{{loop_, audio_, defaults_, session_, folder_ / "Catalog.sqlite"}};
    TempEditBatch& batch_ = app_.tempEdits();
    std::vector<std::string> messages_;

    void SetUp() override {
        QObject::connect(&app_.player(), &PlayerModel::changed, &app_.player(), [this] {
            const std::string text = app_.player().message().value_or("");
            if (!text.empty() && (messages_.empty() || messages_.back() != text)) { messages_.push_back(text); }
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

TEST_F(TempEditBatchOf, NothingThatIsAudioChangesNothing) {
    app_.makeTempEdits({folder_ / "notes.txt", folder_.path()});
    app_.handle("tempedits", {});  // nothing is loaded
    EXPECT_FALSE(batch_.progress());
    EXPECT_THAT(messages_, IsEmpty());
}

TEST_F(TempEditBatchOf, FilesGoIntoFoldersBesideThemAndTheOddOneIsCounted) {
    const std::vector<fs::path> files = {song("One.wav"), song("Short.wav", 1), folder_ / "notes.txt", song("Two.wav")};
    double reached = 0;
    QObject::connect(&batch_, &TempEditBatch::changed, &batch_, [&] {
        if (!batch_.progress()) { return; }
        EXPECT_GE(*batch_.progress(), reached);
        reached = *batch_.progress();
    });
    app_.makeTempEdits(files);
    settle();
    EXPECT_THAT(messages_,
                ElementsAre("Temp edits: analyzing 3 file(s)…", "Temp edits 1/3: One.wav", "Temp edits 2/3: Short.wav",
                            "Temp edits 3/3: Two.wav", "Temp edits: 2 written, 1 skipped (no steady pulse)"));
    EXPECT_FALSE(app_.player().messageIsProblem());
    EXPECT_EQ(reached, 1);
    EXPECT_THAT(session_.files.shown, ElementsAre(folder_ / "One Edits", folder_ / "Two Edits"));
    EXPECT_TRUE(fs::exists(folder_ / "One Edits" / "One - 15s.wav"));
    EXPECT_TRUE(fs::exists(folder_ / "Two Edits" / "Two - Edit Notes.txt"));
    EXPECT_FALSE(fs::exists(folder_ / "Short Edits"));
    ASSERT_EQ(batch_.skipped().size(), 1U);
    EXPECT_EQ(batch_.skipped()[0].file, folder_ / "Short.wav");
    EXPECT_FALSE(batch_.skipped()[0].reason.empty());
    session_.files.shown.clear();
    batch_.showFolders();
    EXPECT_EQ(session_.files.shown.size(), 2U);
}

TEST_F(TempEditBatchOf, TheControlCommandTakesTheLoadedFileAndTheSettingsNameTheFolder) {
    app_.settings().change([this](AppSettings& settings) {
        settings.tempEditsBesideSource = false;
        settings.pullsFolder = (folder_ / "Pulls").string();
    });
    const fs::path file = song("Loaded.wav");
    app_.player().load(file, false);
    ASSERT_TRUE(loop_.runUntil([this] { return app_.player().info().has_value(); }));
    app_.handle("tempedits", {});
    settle();
    EXPECT_EQ(messages_.back(), "Temp edits written for 1 file(s)");
    EXPECT_TRUE(fs::exists(folder_ / "Pulls" / "Edits" / "Loaded Edits" / "Loaded - Edit Notes.txt"));
}

TEST_F(TempEditBatchOf, CancellingLeavesNoHalfFileAndSkipsWhatWaits) {
    const std::vector<fs::path> files = {song("One.wav"), song("Two.wav"), song("Three.wav")};
    app_.makeTempEdits(files);
    app_.makeTempEdits({files[2]});
    batch_.cancel();
    settle();
    EXPECT_THAT(messages_.back(), testing::StartsWith("Temp edits cancelled: "));
    for (const auto& entry : fs::recursive_directory_iterator(folder_.path())) {
        EXPECT_NE(entry.path().filename().string().front(), '.') << entry.path();
    }
    EXPECT_FALSE(fs::exists(folder_ / "Three Edits" / "Three - Edit Notes.txt"));
    // The next one runs as if nothing had been.
    app_.makeTempEdits({files[0]});
    settle();
    EXPECT_EQ(messages_.back(), "Temp edits written for 1 file(s)");
}

}  // namespace
}  // namespace brindlehum
