// AppModel: the command table, the profile's way to the player, and the files of a start.
#include "app_fixture.h"

namespace brindlehum {
namespace {

using nlohmann::json;
using testing::ElementsAre;

class App : public test::AppTest {
protected:
    void SetUp() override { app_.start(0); }
    std::filesystem::path file(const std::string& name) {
        test::writeAudio(folder_ / name, test::noisePlanes(2, 48000));
        return folder_ / name;
    }
    void settle() {
        for (int turn = 0; turn < 4; ++turn) {
            app_.player().loader().drain();
            loop_.drain();
        }
    }
    // The port's answer, after the file work that the command started has come back.
    json ask(const std::string& command, const ControlParams& params = {}) {
        const json answer = app_.control().handler(command, params);
        settle();
        return answer;
    }
};

TEST_F(App, StatusHoldsTheFileTheProfilesAndTheSwitches) {
    EXPECT_EQ(ask("status"), json::parse(R"({"playing": false, "file": "", "profile": "Room 9.1.6",
        "profiles": ["Room 9.1.6", "Nearfield", "Headphones"], "finderPanel": true, "expert": false})"));
    app_.player().load(file("rain & wind.wav"), true);
    settle();
    EXPECT_EQ(ask("expert"), json::parse(R"({"ok": true, "profile": "Room 9.1.6", "playing": true})"));
    ask("panel");
    EXPECT_EQ(ask("status"), json::parse(R"({"playing": true, "file": "rain & wind.wav", "profile": "Room 9.1.6",
        "profiles": ["Room 9.1.6", "Nearfield", "Headphones"], "finderPanel": false, "expert": true})"));
    for (const char* command : {"", "Status", "quit"}) {
        EXPECT_EQ(ask(command), (json{{"error", std::string("unknown command ") + command}}));
    }
}

TEST_F(App, TransportCommandsDriveThePlayer) {
    app_.player().load(file("a.wav"), false);
    settle();
    const struct {
        const char* command;
        bool plays;
    } cases[] = {{"toggle", true}, {"loop", true}, {"toggle", false}, {"play", true}, {"stop", false}};
    for (const auto& c : cases) {
        ask(c.command);
        EXPECT_EQ(transport_.isPlaying(), c.plays) << c.command;
    }
    EXPECT_TRUE(transport_.loop());
}

TEST_F(App, ProfileFindsANameInAnyCaseElseTakesTheNextProfile) {
    app_.settings().change([](AppSettings& s) { s.profiles[1].name = "Große Regie"; });
    const struct {
        ControlParams params;
        const char* becomes;
    } cases[] = {
        {{{"name", "HEADPHONES"}}, "Headphones"},
        {{}, "Room 9.1.6"},
        {{{"name", "no such"}}, "Große Regie"},
        {{{"name", "große regie"}}, "Große Regie"},
    };
    for (const auto& c : cases) { EXPECT_EQ(ask("profile", c.params)["profile"], c.becomes); }
}

TEST_F(App, LibraryFoldersAreAddedAndTheFirstIsShown) {
    std::vector<std::filesystem::path> chosen;
    app_.chooseFoldersAction = [&](const AppModel::FoldersChosen& take) { take(chosen); };
    for (const char* name : {"one", "two"}) {
        chosen.push_back(folder_ / name);
        std::filesystem::create_directory(chosen.back());
    }
    app_.addLibraryFolder();
    EXPECT_THAT(settings().libraryRoots, ElementsAre((folder_ / "one").string(), (folder_ / "two").string()));
    EXPECT_EQ(app_.library().listing().folder(), folder_ / "one");
    EXPECT_TRUE(loop_.runUntil([&] { return !app_.library().isBusy(); }));
}

TEST_F(App, TheFirstAudioFileOfAStartIsLoaded) {
    std::vector<std::string> windows;
    app_.openWindowAction = [&](const std::string& id) { windows.push_back(id); };
    const auto a = file("a.WAV");
    const auto b = file("b.wav");
    app_.openFiles({folder_ / "notes.txt", a, b});
    settle();
    EXPECT_EQ(loaded(), a);
    EXPECT_TRUE(transport_.isPlaying());
    app_.settings().change([](AppSettings& s) { s.autoPlay = false; });
    app_.openFiles({b});
    app_.openFiles({folder_ / "notes.txt"});
    settle();
    EXPECT_EQ(loaded(), b);
    EXPECT_FALSE(transport_.isPlaying());
    EXPECT_THAT(windows, ElementsAre("main", "main", "main"));
}

}  // namespace
}  // namespace brindlehum
