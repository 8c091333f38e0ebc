// What Nautilus and Thunar have selected, read by us and by their own clipboard.
#include "desktop_fixture.h"

namespace brindlehum::test {
namespace {

const std::vector<std::string> oddNames = {" blanks .wav",
                                           "it's \"quoted\".wav",
                                           "\"x\"  |  y.wav",
                                           "100% #1?.wav",
                                           "a&b<i>.wav",
                                           "line\nbreak.wav",
                                           "\u05d0\u05d1\u05d2 right.wav",
                                           "\U0001F3B5 note.wav",
                                           "\u00e9 composed.wav",
                                           "e\u0301 composed.wav",
                                           "bad\xff.wav",
                                           "Case.wav",
                                           "case.wav",
                                           "-dash.wav",
                                           "GtkGridView.wav",
                                           std::string(251, 'n') + ".wav"};

class FileManagers : public testing::TestWithParam<const char*> {};

TEST_P(FileManagers, SelectionIsWhatTheirClipboardSaysForOddNamesInEveryView) {
    const TempFolder folder;
    for (const auto& name : oddNames) { writeBytes(folder / name, "x"); }
    Desk desk(GetParam());
    desk.open(folder.path());
    for (const bool list : {false, true}) {
        ASSERT_TRUE(list ? desk.showList() : desk.showIcons());
        std::set<std::string> seen;
        for (size_t i = 0; i < oddNames.size(); ++i) {
            const auto witness = copied();
            EXPECT_EQ(witness.size(), 1U);
            seen.insert(witness.begin(), witness.end());
            const bool isText = witness.empty() || witness.begin()->find('\xff') == std::string::npos;
            EXPECT_TRUE(desk.selects(isText ? witness : std::set<std::string>{}))
                << testing::PrintToString(witness) << " read as " << testing::PrintToString(desk.selected());
            keys(list ? "Down" : "Right");
        }
        EXPECT_EQ(seen.size(), oddNames.size());
    }
}

TEST_P(FileManagers, SelectionIsThatOfTheTabAndTheWindowInFront) {
    const TempFolder folder;
    const Path one = folder / "one";
    const Path two = folder / "two";
    for (const Path& each : {one, two}) {
        std::filesystem::create_directory(each);
        writeBytes(each / "same.wav", "x");
        writeBytes(each / (each.filename().string() + ".wav"), "x");
    }
    Desk desk(GetParam());
    const auto copiedToo = [&](const Path& file) {
        return desk.selects({file.string()}) && copied() == std::set{file.string()};
    };
    desk.open(one);
    const QString first = QString::number(desk.frontId());
    ASSERT_TRUE(desk.showIcons());
    ASSERT_TRUE(desk.choose(one / "one.wav"));
    desk.open(two);
    ASSERT_TRUE(desk.showIcons());
    ASSERT_TRUE(desk.choose(two / "two.wav"));
    EXPECT_TRUE(copiedToo(two / "two.wav")) << testing::PrintToString(desk.selected());
    run({"xdotool", "windowminimize", QString::number(desk.frontId())});
    run({"xdotool", "windowactivate", "--sync", first});
    EXPECT_TRUE(copiedToo(one / "one.wav")) << testing::PrintToString(desk.selected());
    keys("ctrl+t");
    ASSERT_TRUE(desk.showIcons());
    keys("ctrl+l");
    run({"xdotool", "type", "--delay", "20", QString::fromStdString(two.string())});
    keys("shift+End Delete Return");  // without what was completed
    ASSERT_TRUE(desk.showIcons());
    ASSERT_TRUE(desk.choose(two / "two.wav"));
    EXPECT_TRUE(copiedToo(two / "two.wav")) << testing::PrintToString(desk.selected());
    keys("ctrl+Prior");
    EXPECT_TRUE(copiedToo(one / "one.wav")) << testing::PrintToString(desk.selected());
}

INSTANTIATE_TEST_SUITE_P(Real, FileManagers, testing::Values("nautilus", "thunar"));

}  // namespace
}  // namespace brindlehum::test
