// The autostart file is the only state, and its Exec survives any path.
#include "settings/autostart.h"

#include <gtest/gtest.h>

#include <fstream>

#include "support/audio_files.h"

namespace brindlehum {
namespace {

namespace fs = std::filesystem;

TEST(Autostart, TheFileIsTheStateWhoeverWritesOrRemovesIt) {
    const test::TempFolder folder;
    const fs::path file = folder / "config/autostart/brindlehum.desktop";
    Autostart autostart(file, "/usr/bin/brindlehum-resident");
    EXPECT_FALSE(autostart.isOn());
    EXPECT_EQ(autostart.set(true), "");
    EXPECT_TRUE(autostart.isOn());
    for (const char* const off : {"Hidden=true\n", "X-GNOME-Autostart-enabled=false\n"}) {
        std::ofstream(file, std::ios::app) << off;
        EXPECT_FALSE(autostart.isOn()) << off;
        EXPECT_EQ(autostart.set(true), "");
        EXPECT_TRUE(autostart.isOn());
    }
    fs::remove(file);
    EXPECT_FALSE(autostart.isOn());
    EXPECT_EQ(autostart.set(true), "");
    EXPECT_EQ(autostart.set(false), "");
    EXPECT_FALSE(fs::exists(file));
    std::ofstream(folder / "taken") << "a file";
    Autostart nowhere(folder / "taken/brindlehum.desktop", "/x");
    EXPECT_NE(nowhere.set(true), "");
    EXPECT_FALSE(nowhere.isOn());
}

// By the quoting rules of freedesktop.org's desktop entries, version 1.5: first those of Exec, then those of strings.
TEST(Autostart, ExecNamesTheProgramWhateverItsPath) {
    const test::TempFolder folder;
    for (const auto& [program, line] : {std::pair("/opt/a b/r", R"(Exec="/opt/a b/r")"),
                                        {"/100% \"x\"", R"(Exec="/100%% \\"x\\"")"},
                                        {"/$a`b", R"(Exec="/\\$a\\`b")"},
                                        {R"(/a\b)", R"(Exec="/a\\\\b")"}}) {
        Autostart(folder / "entry.desktop", program).set(true);
        const std::string text = test::readBytes(folder / "entry.desktop");
        EXPECT_NE(text.find("\n" + std::string(line) + "\n"), std::string::npos) << text;
    }
}

}  // namespace
}  // namespace brindlehum
