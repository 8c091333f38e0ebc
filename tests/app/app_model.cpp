// AppModel: the command table, what the settings pass on to the player, and the files of a start.
#include "app/app_model.h"

#include <gmock/gmock.h>

#include "platform/headless_session.h"
#include "support/audio_files.h"
#include "support/platform/manual_audio.h"
#include "support/platform/manual_main_loop.h"

namespace brindlehum {
namespace {

using nlohmann::json;
using testing::ElementsAre;

class App : public testing::Test {
protected:
    ManualMainLoop loop_;
    ManualAudioSystem audio_{loop_};
    MemoryDefaults defaults_;
    HeadlessSession session_;
    test::TempFolder folder_;
    AppModel app_{{loop_, audio_, defaults_, session_, folder_ / "Catalog.sqlite"}};
    std::vector<std::string> windows_;

    void SetUp() override {
        app_.openWindowAction = [this](const std::string& id) { windows_.push_back(id); };
        app_.start(0);
    }
    std::filesystem::path file(const std::string& name) {
        test::writeAudio(folder_ / name, test::noisePlanes(2, 48000));
        return folder_ / name;
    }
    void settle() {
        for (int turn = 0; turn < 4; ++turn) {
            app_.player().queue().drain();
            loop_.drain();
        }
    }
    // The answer that the port would give, once the file work that it started has come back.
    json ask(const std::string& command, const ControlParams& params = {}) {
        const json answer = app_.control().handler(command, params);
        settle();
        return answer;
    }
    const AppSettings& settings() { return app_.settings().value(); }
};

TEST_F(App, StatusTellsWhatIsLoadedAndChosen) {
    EXPECT_TRUE(app_.control().isListening());
    EXPECT_EQ(ask("status"), json::parse(R"({"playing": false, "file": "", "profile": "Room 9.1.6",
        "profiles": ["Room 9.1.6", "Nearfield", "Headphones"], "finderPanel": true, "expert": false})"));
    app_.player().load(file("rain & wind.wav"), true);
    settle();
    ask("expert");
    ask("panel");
    EXPECT_EQ(ask("status"), json::parse(R"({"playing": true, "file": "rain & wind.wav", "profile": "Room 9.1.6",
        "profiles": ["Room 9.1.6", "Nearfield", "Headphones"], "finderPanel": false, "expert": true})"));
}

TEST_F(App, TransportCommandsDriveThePlayer) {
    PlayerModel& player = app_.player();
    EXPECT_EQ(ask("play"), json::parse(R"({"ok": true, "profile": "Room 9.1.6", "playing": false})"));
    player.load(file("a.wav"), false);
    settle();
    ask("toggle");
    EXPECT_TRUE(player.isPlaying());
    EXPECT_EQ(ask("loop"), json::parse(R"({"ok": true, "profile": "Room 9.1.6", "playing": true})"));
    EXPECT_TRUE(player.loop());
    ask("toggle");
    EXPECT_FALSE(player.isPlaying());
    player.seek(1000);
    settle();
    audio_.pump(256);
    loop_.advance(0.034);
    EXPECT_GT(player.currentFrame(), 1000);
    EXPECT_EQ(ask("stop"), json::parse(R"({"ok": true, "profile": "Room 9.1.6", "playing": false})"));
    EXPECT_EQ(player.currentFrame(), 1000);
    ask("play");
    EXPECT_TRUE(player.isPlaying());
}

TEST_F(App, ProfileFindsANameInAnyCaseElseGoesRound) {
    app_.settings().change([](AppSettings& s) { s.profiles[1].name = "Große Regie"; });
    const struct {
        ControlParams params;
        const char* becomes;
    } cases[] = {
        {{{"name", "HEADPHONES"}}, "Headphones"},
        {{}, "Room 9.1.6"},
        {{}, "Große Regie"},
        {{{"name", "no such"}}, "Headphones"},
        {{{"name", ""}}, "Room 9.1.6"},
        {{{"name", "große regie"}}, "Große Regie"},
    };
    for (const auto& c : cases) { EXPECT_EQ(ask("profile", c.params)["profile"], c.becomes); }

    app_.settings().change([](AppSettings& s) { s.profiles = {s.profiles[2]}; });
    EXPECT_EQ(ask("profile")["profile"], "Headphones") << "the only one is chosen again";
    EXPECT_EQ(settings().activeProfileID, settings().profiles[0].id);
}

TEST_F(App, WhatHasNoModelIsAnUnknownCommand) {
    for (const char* command : {"", "Status", "quit"}) {
        EXPECT_EQ(ask(command), (json{{"error", std::string("unknown command ") + command}}));
    }
}

TEST_F(App, OnlySettingsOfTheRoomReachThePlayer) {
    // A player at rest answers a change of the profile by opening its device.
    const auto opens = [&](auto edit) {
        app_.engine().stop();
        const int before = audio_.opened();
        audio_.supersede();
        app_.settings().change(edit);
        return audio_.opened() - before;
    };
    EXPECT_EQ(opens([](AppSettings& s) { s.expertMode = true; }), 0);
    EXPECT_EQ(opens([](AppSettings& s) { s.autoPlay = false; }), 0);
    EXPECT_EQ(opens([](AppSettings& s) { s.upmix.enabled = true; }), 0);
    EXPECT_EQ(opens([](AppSettings& s) { s.profiles[0].name = "Stage"; }), 1);
    EXPECT_EQ(opens([](AppSettings& s) { s.activeProfileID = s.profiles[1].id; }), 1);
    EXPECT_EQ(opens([](AppSettings& s) { s.monoToCenter = false; }), 1);
    const int before = audio_.opened();
    audio_.supersede();
    app_.player().selectProfile(settings().profiles[2].id);
    EXPECT_EQ(audio_.opened(), before + 1) << "once, by whichever way it comes";
}

TEST_F(App, FoldersForTheLibraryAreAddedAndTheFirstIsShown) {
    app_.addLibraryFolder();  // with no window that could ask
    std::vector<std::filesystem::path> chosen;
    app_.chooseFoldersAction = [&](const AppModel::FoldersChosen& take) { take(chosen); };
    app_.addLibraryFolder();
    EXPECT_TRUE(settings().libraryRoots.empty());
    for (const char* name : {"one", "two"}) {
        chosen.push_back(folder_ / name);
        std::filesystem::create_directory(chosen.back());
    }
    app_.addLibraryFolder();
    EXPECT_THAT(settings().libraryRoots, ElementsAre((folder_ / "one").string(), (folder_ / "two").string()));
    EXPECT_EQ(app_.library().listing().folder(), folder_ / "one");
    EXPECT_TRUE(loop_.runUntil([&] { return !app_.library().isBusy(); }));
}

TEST_F(App, OfTheFilesOfAStartTheFirstAudioFileIsLoaded) {
    const auto a = file("a.WAV");
    const auto b = file("b.wav");
    app_.openFiles({folder_ / "notes.txt", a, b});
    settle();
    EXPECT_EQ(app_.player().info()->url, a);
    EXPECT_TRUE(app_.player().isPlaying());
    app_.settings().change([](AppSettings& s) { s.autoPlay = false; });
    app_.openFiles({b});
    settle();
    EXPECT_EQ(app_.player().info()->url, b);
    EXPECT_FALSE(app_.player().isPlaying());
    app_.openFiles({folder_ / "notes.txt"});
    app_.openFiles({});
    settle();
    EXPECT_EQ(app_.player().info()->url, b);
    EXPECT_THAT(windows_, ElementsAre("main", "main", "main", "main"));
}

}  // namespace
}  // namespace brindlehum
