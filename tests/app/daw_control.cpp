// Commands to a DAW: which key they mean, which DAW gets it, what the caller is told, and the user's own table.
#include "app/daw_control.h"

#include <set>

#include "app_fixture.h"

namespace brindlehum::test {
namespace {

using Windows = std::vector<ApplicationWindow>;
constexpr uint64_t cmd = 0x100000, shift = 0x20000, opt = 0x80000, ctrl = 0x40000;

TEST(DAWControl, KeyStringsAreReadFromLeftToRight) {
    const struct {
        const char* text;
        std::optional<Keystroke> stroke;
    } cases[] = {
        {"space", {{49, 0}}},
        {"CMD+S", {{1, cmd}}},
        {"command+shift+option+control+z", {{6, cmd | shift | opt | ctrl}}},
        {"alt+'", {{39, opt}}},
        {"a+cmd", {{0, cmd}}},
        {"zz+a", {{0, 0}}},
        {"a+zz", {}},
        {"a+b", {{11, 0}}},
        {"++a++", {{0, 0}}},
        {"kp+", {}},  // the plus key can't be named
        {",", {{43, 0}}},
        {"\\", {{42, 0}}},
        {"f12", {{111, 0}}},
        {"f11", {}},
        {" a", {}},
        {"cmd+shift", {}},
        {"+", {}},
        {"", {}},
    };
    for (const auto& c : cases) { EXPECT_EQ(DAWControl::parse(c.text), c.stroke) << c.text; }
    std::set<uint16_t> codes;
    for (const auto& [name, code] : dawKeyCodes()) { codes.insert(code); }
    EXPECT_EQ(codes.size(), 69U);
    for (const DAW& daw : builtInDAWs()) {
        EXPECT_EQ(daw.keys.size(), 17U) << daw.id;
        for (const auto& [command, keys] : daw.keys) { EXPECT_TRUE(DAWControl::parse(keys)) << daw.id << command; }
    }
}

TEST(DAWControl, DAWInFrontBeatsThePreferredOneAndThatTheOrderOfTheTable) {
    const ApplicationWindow proTools{1, "ProTools.exe"}, logic{2, "Logic Pro"}, reaper{3, "REAPER"},
        ardour{4, "Ardour-7.3.0~ds0"}, mail{5, "Reapers"}, second{6, "REAPER"};
    const auto front = [](ApplicationWindow window) {
        window.isActive = true;
        return window;
    };
    const struct {
        Windows windows;
        std::optional<std::string> preferred;
        uint64_t chosen;
    } cases[] = {
        {{front(logic), reaper}, "reaper", 2},
        {{front(mail), ardour, reaper, proTools}, "reaper", 3},
        {{front(mail), ardour, reaper, proTools}, {}, 1},
        {{mail, ardour, reaper}, "nobody", 3},
        {{mail, ardour, reaper}, "logic", 3},
        {{ardour}, "reaper", 4},
        {{reaper, second}, {}, 3},
        {{reaper, front(second)}, {}, 6},
        {{front(mail)}, "reaper", 0},
        {{}, {}, 0},
    };
    for (const auto& c : cases) {
        const auto found = chooseDAW(builtInDAWs(), c.windows, c.preferred);
        EXPECT_EQ(found ? found->window.id : 0, c.chosen) << c.preferred.value_or("none");
    }
}

TEST(DAWControl, UsersTableExtendsTheBuiltInOneAndItsBadRowsBreakNothing) {
    const DAWTable table = readDAWTable(R"({
        "reaper": {"keys": {"record": "ctrl+shift+r", "solo": "opt+s", "save": "f99", "cut": 5}},
        "sixth": {"name": "Sixth", "windows": ["Sixth Studio"], "keys": {"play": "kp0"}},
        "seventh": {"keys": {"play": "space"}},
        "logic": {"windows": [], "colour": 3},
        "protools": []
    })");
    ASSERT_EQ(table.daws.size(), 5U);
    EXPECT_EQ(table.daws[1], builtInDAWs()[1]);
    EXPECT_EQ(table.daws[0], builtInDAWs()[0]);
    EXPECT_EQ(table.daws[2].keys.at("record"), "ctrl+shift+r");
    EXPECT_EQ(table.daws[2].keys.at("solo"), "opt+s");
    EXPECT_EQ(table.daws[2].keys.at("save"), "cmd+s");
    EXPECT_EQ(table.daws[4], (DAW{"sixth", "Sixth", {"sixth studio"}, {{"play", "kp0"}}}));
    EXPECT_THAT(table.problems,
                testing::ElementsAre("reaper: save: no key is called \"f99\"", "reaper: cut: no key is called 5",
                                     "seventh: needs \"windows\", a list of window classes",
                                     "logic: \"windows\" isn't a list of window classes",
                                     "logic: nothing is known of \"colour\"", "protools: isn't an object"));
    for (const char* broken : {"", "{", "[1]", "\"a\"", "{\"reaper\": \xff}"}) {
        EXPECT_EQ(readDAWTable(broken).daws, builtInDAWs()) << broken;
        EXPECT_EQ(readDAWTable(broken).problems.size(), 1U) << broken;
    }
}

class DAWCommands : public AppTest {
protected:
    DAWCommands() { session_.apps.shown = {{7, "Terminal", true}, {8, "REAPER"}}; }
    std::string answer(const ControlParams& params) {
        const auto json = app_.handle("daw", params);
        EXPECT_EQ(json.size(), 1U) << json;
        return json.value("result", "none");
    }
};

TEST_F(DAWCommands, AnswerNamesTheDAWOrWhyNothingWasPressed) {
    auto& apps = session_.apps;
    EXPECT_EQ(answer({{"cmd", "play"}, {"app", "logic"}}), "play → REAPER");
    EXPECT_EQ(answer({{"cmd", "CMD+S"}}), "CMD+S → REAPER");
    EXPECT_EQ(apps.presses, (std::vector<ScriptedApplications::Press>{{8, {49, 0}}, {8, {1, cmd}}}));
    EXPECT_EQ(answer({{"cmd", "Play"}}), "Unknown command Play");
    EXPECT_EQ(answer({}), "Unknown command ");
    apps.outcome = KeyOutcome::notInFront;
    EXPECT_EQ(answer({{"cmd", "undo"}}), "undo → REAPER") << "the answer comes before the key";
    EXPECT_EQ(app_.player().message().text(), "undo didn't reach REAPER: it didn't come to the front");
    apps.shown.pop_back();
    EXPECT_EQ(answer({{"cmd", "play"}}), "No supported DAW is running");
    apps.allowed = KeyAccess::refused;
    EXPECT_EQ(answer({{"cmd", "play"}}), "Brindlehum needs Accessibility to drive your DAW");
    apps.allowed = KeyAccess::wayland;
    EXPECT_EQ(answer({{"cmd", "play"}}), "Keys reach a DAW on X11 only; this is a Wayland session");
    EXPECT_EQ(apps.presses.size(), 3U);
    EXPECT_EQ(DAWControl(nullptr, {}).send("play", {}).message, "No DAW can be driven without a display");
}

TEST_F(DAWCommands, UsersTableIsReadAgainWhenItHasChanged) {
    const auto file = folder_ / "daws.json";
    DAWControl daw(&session_.apps, file);
    EXPECT_FALSE(daw.send("solo", {}).isQueued);
    writeBytes(file, R"({"reaper": {"keys": {"solo": "opt+s", "mute": "nothing"}}})");
    EXPECT_TRUE(daw.send("solo", {}).isQueued);
    EXPECT_EQ(daw.problems(), std::vector<std::string>{"daws.json: reaper: mute: no key is called \"nothing\""});
    std::filesystem::remove(file);
    EXPECT_FALSE(daw.send("solo", {}).isQueued);
    EXPECT_TRUE(daw.problems().empty());
}

}  // namespace
}  // namespace brindlehum::test
