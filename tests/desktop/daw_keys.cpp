// Keys for a DAW on a real desktop: the right sign on each layout, and never in another window.
#include <gmock/gmock.h>

#include <algorithm>
#include <optional>
#include <random>

#include "app/daw_control.h"
#include "desktop_fixture.h"
#include "key_window.h"

namespace brindlehum::test {
namespace {

constexpr uint16_t anyLock = XCB_MOD_MASK_LOCK | XCB_MOD_MASK_2;  // as Num Lock is on for the number pad
constexpr xcb_keycode_t shiftKey = 50, controlKey = 37;

xcb_keysym_t symbolOf(const std::string& name) {
    static const std::map<std::string, xcb_keysym_t> named = {
        {"return", 0xff0d}, {"tab", 0xff09},      {"space", 0x20},  {"delete", 0xff08}, {"escape", 0xff1b},
        {"enter", 0xff8d},  {"kp*", 0xffaa},      {"kp+", 0xffab},  {"kp-", 0xffad},    {"kp0", 0xffb0},
        {"kp1", 0xffb1},    {"kp2", 0xffb2},      {"kp3", 0xffb3},  {"home", 0xff50},   {"pageup", 0xff55},
        {"end", 0xff57},    {"pagedown", 0xff56}, {"left", 0xff51}, {"right", 0xff53},  {"down", 0xff54},
        {"up", 0xff52},     {"f12", 0xffc9},
    };
    return name.size() == 1 ? xcb_keysym_t(name[0]) : named.at(name);
}

class DAWKeys : public testing::Test {
protected:
    QtMainLoop loop_;
    LinuxSession session_{loop_};
    DAWControl control_{session_.applications(), {}};
    KeyWindow daw_{"REAPER"};
    KeyWindow other_{"Terminal"};

    void SetUp() override {
        ASSERT_EQ(control_.obstacle(), "");
        // A window manager without keys of its own.
        run("mkdir -p \"$XDG_CONFIG_HOME/openbox\" && sed '/<keyboard>/,/<.keyboard>/{/keyboard>/!d}' "
            "/etc/xdg/openbox/rc.xml >\"$XDG_CONFIG_HOME/openbox/rc.xml\" && openbox --reconfigure");
        ASSERT_TRUE(until([&] { return session_.applications()->windows().size() == 2; }));
        putInFront(daw_);
    }
    void TearDown() override {
        run("setxkbmap us");
        run("rm -rf \"$XDG_CONFIG_HOME/openbox\" && openbox --reconfigure");
    }
    static void putInFront(KeyWindow& window) {
        window.activate();
        ASSERT_TRUE(until([&] { return window.hasFocus(); }));
    }
    // Why the key wasn't pressed; empty: it was.
    std::string send(const std::string& keys) {
        std::optional<std::string> problem;
        const auto reply = control_.send(keys, {}, [&](const std::string& why) { problem = why; });
        EXPECT_TRUE(reply.isQueued) << reply.message;
        until([&] { return problem.has_value(); });
        return problem.value_or("no answer");
    }
    // The presses and their releases in the DAW; modifiers are keys, too, and left out.
    std::vector<KeyWindow::Key> received() {
        std::vector<KeyWindow::Key> keys;
        until(
            [&] {
                for (const auto& key : daw_.take()) {
                    if (!isModifier(daw_.symbol(key.code, 0))) { keys.push_back(key); }
                }
                return !keys.empty() && keys.size() % 2 == 0;
            },
            2);
        return keys;
    }
    static bool isModifier(xcb_keysym_t symbol) {
        return (symbol >= 0xffe1 && symbol <= 0xffee) || symbol == 0xfe03 || symbol == 0xff7e || symbol == 0xff7f;
    }
    KeyOutcome press(const Keystroke& stroke) {
        std::optional<KeyOutcome> outcome;
        session_.applications()->press(control_.runningDAW({})->window, stroke, [&](KeyOutcome how) { outcome = how; });
        until([&] { return outcome.has_value(); });
        return outcome.value_or(KeyOutcome::ended);
    }
    void checkKey(const std::string& name, const Keystroke& stroke, uint16_t modifiers) {
        SCOPED_TRACE(name + " with " + std::to_string(modifiers));
        const xcb_keysym_t wanted = symbolOf(name);
        const KeyOutcome outcome = press(stroke);
        if (!daw_.hasSymbol(wanted)) {
            EXPECT_EQ(outcome, KeyOutcome::noKey);
            EXPECT_EQ(daw_.count(), 0U);
            return;
        }
        ASSERT_EQ(outcome, KeyOutcome::pressed);
        const auto keys = received();
        ASSERT_EQ(keys.size(), 2U);
        EXPECT_TRUE(keys[0].isPress && !keys[1].isPress && keys[0].code == keys[1].code);
        const uint16_t state = keys[0].state;
        const auto without = uint16_t(state & ~(modifiers & XCB_MOD_MASK_SHIFT));
        EXPECT_TRUE(daw_.symbol(keys[0].code, state) == wanted || daw_.symbol(keys[0].code, without) == wanted)
            << int(keys[0].code) << " with " << state;
        const uint16_t level = XCB_MOD_MASK_SHIFT | XCB_MOD_MASK_5;  // that a sign may need
        EXPECT_EQ(state & 0xff & ~(anyLock | level), modifiers & ~level);
        EXPECT_EQ(state & modifiers, modifiers);
    }
};

TEST_F(DAWKeys, EveryKeyArrivesAsItsSignOnEachLayout) {
    const std::pair<uint64_t, uint16_t> held[] = {
        {0, 0},
        {Keystroke::command, XCB_MOD_MASK_CONTROL},
        {Keystroke::shift, XCB_MOD_MASK_SHIFT},
        {Keystroke::alternate, XCB_MOD_MASK_1},
        {Keystroke::control | Keystroke::shift | Keystroke::alternate,
         XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_SHIFT | XCB_MOD_MASK_1},
    };
    // The last one: what the layout that is chosen lacks is on the other one.
    for (const char* layout : {"us", "de", "fr", "de,us"}) {
        SCOPED_TRACE(layout);
        run(std::string("setxkbmap ") + layout);
        daw_.readLayout();
        for (const auto& [flags, modifiers] : held) {
            for (const auto& [name, code] : dawKeyCodes()) { checkKey(std::string(name), {code, flags}, modifiers); }
        }
        EXPECT_EQ(daw_.modifiers() & 0xff, 0) << "a modifier or a lock stays behind";
    }
}

TEST_F(DAWKeys, KeyBehindAnotherWindowIsPressedAndTheFocusGoesBack) {
    daw_.readLayout();
    putInFront(other_);
    EXPECT_EQ(send("undo"), "");
    const auto keys = received();
    ASSERT_EQ(keys.size(), 2U);
    EXPECT_EQ(daw_.symbol(keys[0].code, 0), xcb_keysym_t('z'));
    EXPECT_EQ(keys[0].state, XCB_MOD_MASK_CONTROL);
    EXPECT_TRUE(until([&] { return other_.hasFocus(); }));
    // A burst keeps the DAW in front meanwhile.
    for (int i = 0; i < 20; ++i) { EXPECT_EQ(send("play"), ""); }
    EXPECT_TRUE(until([&] { return other_.hasFocus(); }));
    EXPECT_EQ(received().size(), 40U);
    EXPECT_EQ(other_.count(), 0U);
}

TEST_F(DAWKeys, KeyboardHeldByAnotherProgramGetsNothing) {
    ASSERT_TRUE(until([&] { return other_.seizeKeyboard(); }));  // once its window is on the screen
    // What waits behind a key that failed fails with it: it mustn't come seconds later, out of the blue.
    constexpr int sends = 10;
    int failed = 0;
    for (int i = 0; i < sends; ++i) {
        control_.send("record", {}, [&](const std::string& problem) {
            other_.releaseKeyboard();
            EXPECT_THAT(problem, testing::HasSubstr("the keyboard is in use"));
            ++failed;
        });
    }
    EXPECT_TRUE(until([&] { return failed == sends; }));
    EXPECT_EQ(other_.count() + daw_.count(), 0U);
    EXPECT_EQ(send("play"), "");
}

TEST_F(DAWKeys, HeldModifiersAreNotPartOfTheKeyAndStayHeldByFingersAlone) {
    daw_.readLayout();
    const auto press = [&](const char* keys) {
        daw_.take();
        EXPECT_EQ(send(keys), "");
        const auto arrived = received();
        return arrived.empty() ? uint16_t(0xffff) : arrived[0].state;
    };
    daw_.finger(shiftKey, true);
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(press("cmd+s"), XCB_MOD_MASK_CONTROL);
        EXPECT_EQ(daw_.modifiers(), XCB_MOD_MASK_SHIFT);
    }
    EXPECT_EQ(press("shift+s"), XCB_MOD_MASK_SHIFT);
    daw_.finger(shiftKey, false);
    EXPECT_EQ(daw_.modifiers(), 0);
    EXPECT_EQ(press("shift+s"), XCB_MOD_MASK_SHIFT) << "though an earlier press has restored this key";
    daw_.program(controlKey, true);
    EXPECT_EQ(press("s"), 0);
    EXPECT_EQ(daw_.modifiers(), 0) << "no finger holds it";
    daw_.program(controlKey, false);
}

TEST_F(DAWKeys, NoKeyGoesAstrayWhileAnotherWindowStealsTheFocus) {
    const unsigned seed = std::random_device()();
    std::printf("seed %u\n", seed);
    std::atomic<bool> ends = false;
    std::thread thief([&] {
        std::minstd_rand random(seed);
        while (!ends) {
            random() % 2 == 0 ? other_.seizeFocus() : other_.activate();
            std::this_thread::sleep_for(std::chrono::microseconds(random() % 12'000));
        }
    });
    size_t answered = 0, pressed = 0;
    std::minstd_rand random(seed + 1);
    constexpr size_t sends = 1000;
    for (size_t i = 0; i < sends; ++i) {
        control_.send(i % 3 == 0 ? "cmd+z" : "m", {}, [&](const std::string& problem) {
            ++answered;
            pressed += problem.empty() ? 1 : 0;
        });
        if (random() % 4 == 0) {
            until([&] { return answered > i; });
        }
    }
    EXPECT_TRUE(until([&] { return answered == sends; }, 400));
    ends = true;
    thief.join();
    EXPECT_GT(pressed, sends / 4);
    EXPECT_EQ(other_.count(), 0U) << "keys in another window";
    daw_.readLayout();
    EXPECT_TRUE(until([&] { return daw_.count() >= 2 * pressed; }));
    const auto keys = received();
    EXPECT_EQ(std::ranges::count_if(keys, [](const auto& key) { return key.isPress; }), ptrdiff_t(pressed));
    std::printf("%zu of %zu pressed\n", pressed, sends);
}

}  // namespace
}  // namespace brindlehum::test
