// Space in real file managers: ours on a sound, theirs everywhere else, and never lost.
#include <csignal>

#include "desktop_fixture.h"

namespace brindlehum::test {
namespace {

class FileManagerKeys : public testing::TestWithParam<const char*> {
protected:
    FileManagerKeys() {
        writeAudio(a_, noisePlanes(2, 48000 * 20));
        writeBytes(text_, "x");
        std::filesystem::create_directory(inner_);
        writeBytes(inner_ / "deep.txt", "x");
    }
    // Long enough for a key to do something wrong.
    static void pause() {
        until([] { return false; }, 0.7);
    }

    TempFolder folder_;
    const Path a_ = folder_ / "a sound.wav";
    const Path text_ = folder_ / "b text.txt";
    const Path inner_ = folder_ / "c folder";
};

TEST_P(FileManagerKeys, SpacePlaysAndStopsASoundAndReachesThemForAllElse) {
    Desk desk(GetParam());
    desk.open(folder_.path());
    ASSERT_TRUE(desk.showIcons());
    ASSERT_TRUE(desk.choose(a_));
    pause();
    for (const bool plays : {true, false, true, false}) {
        keys("space");
        EXPECT_TRUE(until([&] { return desk.isPlaying() == plays; }, 3)) << plays;
        pause();
        EXPECT_EQ(desk.isPlaying(), plays);
    }
    run({"xdotool", "keydown", "space"});
    until([] { return false; }, 1.5);
    run({"xdotool", "keyup", "space"});
    pause();
    EXPECT_TRUE(desk.isPlaying()) << "a held key isn't one press";
    keys("space");
    EXPECT_TRUE(until([&] { return !desk.isPlaying(); }, 3));
    EXPECT_EQ(desk.selected(), std::set{a_.string()});
    for (const char* key : {"shift+space", "ctrl+space"}) {
        keys(key);
        pause();
        EXPECT_FALSE(desk.isPlaying()) << key;
    }
    ASSERT_TRUE(desk.choose(a_));
    pause();  // Nautilus offers renaming a while after the selection
    keys("F2");
    ASSERT_TRUE(until([&] { return desk.watch().isEditing(); }));
    run({"xdotool", "type", "--delay", "60", "my new name"});
    keys("Return");
    EXPECT_TRUE(until([&] { return std::filesystem::exists(folder_ / "my new name.wav"); }, 5));
    EXPECT_FALSE(desk.isPlaying());
    ASSERT_TRUE(desk.choose(folder_ / "my new name.wav"));
    keys("ctrl+f");
    ASSERT_TRUE(until([&] { return desk.watch().isEditing(); }));
    run({"xdotool", "type", "--delay", "60", "o x"});
    pause();
    EXPECT_FALSE(desk.isPlaying());
    keys("Escape");
    keys("Escape");
    ASSERT_TRUE(desk.choose(text_));
    keys("space");
    pause();
    EXPECT_FALSE(desk.isPlaying());
}

TEST(SpaceHeld, NextKeyWorksAfterTheProcessThatHeldItWasKilled) {
    QProcess window;
    window.start("xev", {"-event", "keyboard"});
    ASSERT_TRUE(until([] { return !run({"xdotool", "search", "--onlyvisible", "--name", "Event Tester"}).empty(); }));
    run({"xdotool", "search", "--onlyvisible", "--name", "Event Tester", "windowactivate", "--sync"});
    QProcess holder;
    holder.start(QCoreApplication::applicationFilePath(), {"--hold"});
    const auto says = [](QProcess& process, const char* word) {
        return until([&] { return process.peek(100000).contains(word); });
    };
    ASSERT_TRUE(says(holder, "armed"));
    until([] { return false; }, 0.3);
    run({"xdotool", "keydown", "space"});
    ASSERT_TRUE(says(holder, "space"));
    EXPECT_FALSE(window.peek(100000).contains("space")) << "a swallowed key arrived";
    ::kill(pid_t(holder.processId()), SIGKILL);
    holder.waitForFinished();
    keys("x");
    EXPECT_TRUE(says(window, "(keysym 0x78, x)"));
    run({"xdotool", "keyup", "space"});
    window.kill();
    window.waitForFinished();
}

INSTANTIATE_TEST_SUITE_P(Real, FileManagerKeys, testing::Values("nautilus", "thunar"));

}  // namespace
}  // namespace brindlehum::test
