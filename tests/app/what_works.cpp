// "What works here": which row each missing thing spoils, and that there is always something that helps.
#include "app/what_works.h"

#include <gmock/gmock.h>

#include <functional>

namespace brindlehum {
namespace {

using State = WorksRow::State;
using Display = DesktopFacts::Display;

DesktopFacts whole() {
    DesktopFacts facts;
    facts.downloadTool = "/usr/bin/yt-dlp";
    facts.hasKeyring = true;
    facts.hrtfSet = "/usr/share/libmysofa/default.sofa";
    facts.effects = 3;
    return facts;
}

TEST(WhatWorks, EachMissingThingSpoilsItsRowsAndNamesWhatHelps) {
    const struct {
        const char* what;
        std::function<void(DesktopFacts&)> change;
        std::string states;  // a letter a row: works, partly, missing, looking
        const char* cure;    // of the first row that doesn't work
    } cases[] = {
        {"all there", [](auto&) {}, "wwwwwwwwww", ""},
        {"no server", [](auto& f) { f.server = SoundServer::absent; }, "mwwwwwwwww", "apt install pipewire"},
        {"server hangs", [](auto& f) { f.server = SoundServer::silent; }, "mwwwwwwwww", "restart pipewire"},
        {"no tray", [](auto& f) { f.hasTray = false; }, "wmwwwwwwww", "appindicator"},
        {"accessibility off", [](auto& f) { f.readsSelections = false; }, "wwmwmwwwww", "button"},
        {"Space taken", [](auto& f) { f.isSpaceTaken = true; }, "wwwwpwwwww", "shortcut"},
        {"Wayland",
         [](auto& f) {
             f.display = Display::wayland;
             f.keys = KeyAccess::wayland;
         },
         "wwpmpmwwww", "X11 session"},
        {"no display",
         [](auto& f) {
             f.display = Display::none;
             f.keys = KeyAccess::noDisplay;
         },
         "wwmmmmwwww", "on a desktop"},
        {"no XTEST", [](auto& f) { f.keys = KeyAccess::refused; }, "wwwwwmwwww", "XTEST"},
        {"bad table",
         [](auto& f) {
             f.dawProblems = {"daws.json: isn't JSON", "x"};
         },
         "wwwwwpwwww", "1 more"},
        {"no tool", [](auto& f) { f.downloadTool.emplace(std::nullopt); }, "wwwwwwmwww", "apt install yt-dlp"},
        {"no keyring", [](auto& f) { f.hasKeyring = false; }, "wwwwwwwmww", "gnome-keyring"},
        {"no set", [](auto& f) { f.hrtfSet.emplace(std::nullopt); }, "wwwwwwwwmw", "libmysofa1"},
        {"own set broken", [](auto& f) { f.hrtfProblem = "Can't read it"; }, "wwwwwwwwpw", "under Audition"},
        {"no effects", [](auto& f) { f.effects = 0; }, "wwwwwwwwwm", "lv2"},
        {"not looked yet", [](auto& f) { f = DesktopFacts(); }, "wwwwwwllll", ""},
    };
    for (const auto& c : cases) {
        DesktopFacts facts = whole();
        c.change(facts);
        std::string states, cure;
        for (const WorksRow& row : whatWorks(facts)) {
            states += "wpml"[size_t(row.state)];
            const bool isSpoilt = row.state == State::partly || row.state == State::missing;
            EXPECT_EQ(isSpoilt, !row.cure.empty()) << c.what << row.subject;
            EXPECT_FALSE(row.text.empty()) << row.subject;
            if (cure.empty()) { cure = row.cure; }
        }
        EXPECT_EQ(states, c.states) << c.what;
        EXPECT_THAT(cure, testing::HasSubstr(c.cure)) << c.what;
    }
}

TEST(WhatWorks, XServerInAWaylandSessionCountsAsWayland) {
    EXPECT_EQ(DesktopFacts::displayOf("xcb", true), Display::x11);
    for (const char* platform : {"xcb", "wayland", "wayland-egl"}) {
        EXPECT_EQ(DesktopFacts::displayOf(platform, false), Display::wayland) << platform;
    }
    EXPECT_EQ(DesktopFacts::displayOf("offscreen", false), Display::none);
}

}  // namespace
}  // namespace brindlehum
