// AppModel: the command table, the profile's way to the player, and the files of a start.
#include <unistd.h>

#include <regex>

#include "app/start_arguments.h"
#include "app_fixture.h"
#include "library/meta/meta_io.h"

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
            loop_.advance(0);
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
    json expected = json::parse(R"({"playing": false, "file": "", "position": 0.0, "length": 0.0, "loop": false,
        "volume": 0.0, "device": "System Output", "profile": "Room 9.1.6",
        "profiles": ["Room 9.1.6", "Nearfield", "Headphones"], "finderPanel": true, "expert": false,
        "upmix": false, "upmixPreset": "music", "upmixCompared": false,
        "upmixPresets": ["music", "film", "game", "hall", "speech", "broadcast"]})");
    EXPECT_EQ(ask("status"), expected);
    app_.player().load(file("rain & wind.wav"), true);
    settle();
    EXPECT_EQ(ask("expert"), json::parse(R"({"ok": true, "profile": "Room 9.1.6", "playing": true})"));
    ask("panel");
    ask("loop");
    ask("seek", {{"seconds", "0.5"}});
    ask("volume", {{"db", "-6.5"}});
    ask("upmix", {{"preset", "hall"}});
    expected.update(json::parse(R"({"playing": true, "file": "rain & wind.wav", "position": 0.5, "length": 1.0,
        "loop": true, "volume": -6.5, "finderPanel": false, "expert": true,
        "upmix": true, "upmixPreset": "hall"})"));
    EXPECT_EQ(ask("status"), expected);
    for (const char* compared : {"1", "1", "0", "0"}) {
        EXPECT_TRUE(ask("upmix", {{"compare", compared}}).contains("ok"));
        app_.player().compare().queue().drain();
        settle();
        EXPECT_EQ(ask("status")["upmixCompared"], compared == std::string("1"));
    }
    EXPECT_EQ(app_.player().upmix().saveAs("My Bed"), "");
    ask("upmix", {{"preset", "game"}});
    ask("upmix", {{"preset", "my bed"}});
    EXPECT_EQ(ask("status")["upmixPreset"], "My Bed");
    EXPECT_EQ(ask("status")["upmixPresets"].back(), "My Bed");
    EXPECT_EQ(app_.player().upmix().now().params, params(UpmixPreset::hall));
    for (const char* command : {"loop", "panel", "expert", "upmix"}) {
        const std::string key = command == std::string("panel") ? "finderPanel" : command;
        for (const char* on : {"0", "0", "1", "1"}) {
            ask(command, {{"on", on}});
            EXPECT_EQ(ask("status")[key], on == std::string("1")) << command;
        }
    }
}

TEST_F(App, ACommandWithBadArgumentsSaysSoAndChangesNothing) {
    app_.player().load(file("a.wav"), false);
    settle();
    const json before = ask("status");
    const struct {
        const char* command;
        ControlParams params;
    } cases[] = {{"", {}},
                 {"Status", {}},
                 {"quit", {}},
                 {"profile", {{"name", "no such"}}},
                 {"profile", {{"name", ""}}},
                 {"loop", {{"on", "yes"}}},
                 {"panel", {{"on", ""}}},
                 {"expert", {{"on", "2"}}},
                 {"seek", {}},
                 {"seek", {{"seconds", "-1"}}},
                 {"seek", {{"seconds", "nan"}}},
                 {"volume", {{"db", "6.1"}}},
                 {"volume", {{"db", "loud"}}},
                 {"upmix", {{"preset", "Film"}}},
                 {"upmix", {{"on", "maybe"}}},
                 {"load", {}},
                 {"load", {{"path", "a.wav"}}},
                 {"load", {{"path", "/notes.txt"}}}};
    for (const auto& c : cases) {
        EXPECT_TRUE(ask(c.command, c.params).contains("error")) << c.command;
        EXPECT_EQ(ask("status"), before) << c.command;
    }
    EXPECT_FALSE(ask("load", {{"path", file("b.wav").string()}}).contains("error"));
    EXPECT_EQ(ask("status")["file"], "b.wav");
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

TEST_F(App, ProfileFindsANameInAnyCaseAndWithoutOneTakesTheNextProfile) {
    app_.settings().change([](AppSettings& s) { s.profiles[1].name = "Große Regie"; });
    const struct {
        ControlParams params;
        const char* becomes;
    } cases[] = {
        {{{"name", "HEADPHONES"}}, "Headphones"},
        {{}, "Room 9.1.6"},
        {{}, "Große Regie"},
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

TEST_F(App, ALinksSoundIsPlayedAndSaysWhereItCameFrom) {
    app_.settings().change([&](AppSettings& s) {
        s.autoPlay = false;
        s.pullsFolder = (folder_ / "").string();
        s.ytDlpPath = "/bin/sh";  // any program: no child runs here
    });
    std::string copied = "no link";
    app_.clipboardText = [&] { return copied; };
    ask("link");
    EXPECT_EQ(app_.player().message().text(), "Copy a link first");
    copied = "https://sounds.example/rain";
    ask("link", {{"url", "https://sounds.example/storm"}});
    ask("link");
    auto& run = session_.children.commands;
    ASSERT_TRUE(loop_.runUntil([&] { return run.size() == 2; }));
    EXPECT_EQ(run[0].tool, "/bin/sh");
    EXPECT_EQ(run[0].arguments.back(), "https://sounds.example/storm");
    EXPECT_EQ(run[1].arguments.back(), copied);
    const auto sound = file("Links/rain.wav");
    session_.children.done({{}, 0, sound.string() + "\n", {}});
    settle();
    EXPECT_EQ(loaded(), sound);
    EXPECT_TRUE(transport_.isPlaying());
    EXPECT_EQ(app_.library().listing().folder(), sound.parent_path());
    EXPECT_TRUE(loop_.runUntil([&] { return MetaIO::read(sound).source == copied; }));
    EXPECT_TRUE(loop_.runUntil([&] { return !app_.library().isBusy(); }));
}

TEST_F(App, TheFirstFileOrFolderOfAStartIsShownAndItsProblemsAreSaid) {
    std::vector<std::string> windows;
    app_.openWindowAction = [&](const std::string& id) { windows.push_back(id); };
    const auto a = file("a.WAV");
    const auto b = file("b.wav");
    app_.open({{a, b}, {}});
    settle();
    EXPECT_EQ(loaded(), a);
    EXPECT_TRUE(transport_.isPlaying());
    app_.settings().change([](AppSettings& s) { s.autoPlay = false; });
    app_.open({{b}, {}});
    app_.open({{}, {"Unknown option --x"}});
    settle();
    EXPECT_EQ(loaded(), b);
    EXPECT_FALSE(transport_.isPlaying());
    EXPECT_EQ(app_.player().message().text(), "Unknown option --x");
    app_.library().search().setQuery("x");
    app_.open({{folder_.path()}, {}});
    EXPECT_EQ(app_.library().listing().folder(), folder_.path());
    EXPECT_FALSE(app_.library().search().isSearching());
    EXPECT_TRUE(loop_.runUntil([&] { return !app_.library().isBusy(); }));
    app_.open({{a}, {}, StartAim::edit});
    EXPECT_TRUE(loop_.runUntil([&] {
        const auto& doc = app_.editor().document().doc();
        return doc && doc->url == a;
    }));
    EXPECT_EQ(loaded(), b);
    app_.open({{a}, {}, StartAim::play});
    settle();
    EXPECT_EQ(loaded(), a);
    EXPECT_TRUE(transport_.isPlaying()) << "also without auto-play";
    app_.open({{}, {}, StartAim::stayQuiet});
    EXPECT_FALSE(app_.tempEdits().progress());
    app_.open({{a, b}, {}, StartAim::tempEdits});
    EXPECT_TRUE(app_.tempEdits().progress());
    EXPECT_THAT(windows, ElementsAre("main", "main", "main", "main", "editor", "main", "main"));
}

// Each example of the manual's page works as it stands there.
TEST_F(App, TheManualListsEveryCommandAndItsExamplesWork) {
    const std::string page = test::readBytes(std::filesystem::path(BRINDLEHUM_MANUAL) / "14-control-port.md");
    EXPECT_TRUE(page.ends_with(ControlCommands::reference())) << "the page should end with:\n"
                                                              << ControlCommands::reference();
    const std::regex example("`([a-z]+)(?:\\?([a-z]+)=([^`&]+)(?:&([a-z]+)=([^`]+))?)?` \\|");
    app_.player().load(file("rain.wav"), false);
    settle();
    int count = 0;
    for (std::sregex_iterator at(page.begin(), page.end(), example), end; at != end; ++at, ++count) {
        ControlParams params;
        if ((*at)[2].matched) { params[(*at)[2]] = (*at)[3]; }
        if ((*at)[4].matched) { params[(*at)[4]] = (*at)[5]; }
        EXPECT_FALSE(ask((*at)[1], params).contains("error")) << at->str();
    }
    EXPECT_GE(count, 40);
}

TEST(StartArguments, AreOptionsFilesAddressesAndFolders) {
    const test::TempFolder folder;
    const std::string root = folder.path().string();
    const std::string odd = root + "/a b%\xE9.wav";
    for (const auto& path : {odd, root + "/notes.txt", root + "/locked.wav", root + "/-x.wav"}) {
        test::writeBytes(path, "x");
    }
    std::filesystem::permissions(root + "/locked.wav", std::filesystem::perms::none);
    using Wish = StartArguments::Wish;
    const struct {
        std::vector<std::string> arguments;
        Wish wish;
        StartRequest request;
    } cases[] = {
        {{}, Wish::open, {}},
        {{"--help"}, Wish::help, {}},
        {{"--version"}, Wish::version, {}},
        {{odd, root}, Wish::open, {{odd, root}, {}}},
        {{"file://" + root + "/a%20b%25%E9.wav"}, Wish::open, {{odd}, {}}},
        {{"file://localhost" + root}, Wish::open, {{root}, {}}},
        {{"file://server/a.wav"}, Wish::open, {{}, {"Can't read file://server/a.wav: it isn't on this machine"}}},
        {{"--typo"}, Wish::open, {{}, {"Unknown option --typo"}}},
        {{"--edit", odd}, Wish::open, {{odd}, {}, StartAim::edit}},
        {{"--play", "--", odd}, Wish::open, {{odd}, {}, StartAim::play}},
        {{"--temp-edits", odd, odd}, Wish::open, {{odd, odd}, {}, StartAim::tempEdits}},
        {{"--", root + "/-x.wav"}, Wish::open, {{root + "/-x.wav"}, {}}},
        {{root + "/gone.wav"}, Wish::open, {{}, {"Can't read gone.wav: No such file or directory"}}},
        {{root + "/notes.txt"}, Wish::open, {{}, {"Can't read notes.txt: it isn't an audio file"}}},
    };
    for (const auto& c : cases) {
        const auto parsed = StartArguments::parse(c.arguments);
        EXPECT_EQ(parsed.wish, c.wish);
        EXPECT_EQ(parsed.request.files, c.request.files);
        EXPECT_EQ(parsed.request.problems, c.request.problems);
        EXPECT_EQ(parsed.request.aim, c.request.aim);
    }
    if (::geteuid() != 0) {
        EXPECT_EQ(StartArguments::parse({root + "/locked.wav"}).request.problems.at(0),
                  "Can't read locked.wav: Permission denied");
    }
}

TEST_F(App, NoTimerRunsAtRestBeforeAndAfterASoundWasHeard) {
    loop_.advance(30);
    EXPECT_EQ(loop_.timers(), 0);
    app_.player().load(file("a.wav"), true);
    settle();
    EXPECT_GT(loop_.timers(), 0);
    app_.player().stopAndReturn();
    loop_.advance(30);
    EXPECT_EQ(loop_.timers(), 0);
}

}  // namespace
}  // namespace brindlehum
