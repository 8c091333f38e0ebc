// What a window does when a sound is asked for, loaded, renamed or listed.
#include "ui/browser/chosen_state.h"

#include <gtest/gtest.h>

namespace brindlehum {
namespace {

using State = ChosenState;

// The window shows the folder /s with a row for /s/row.wav.
State::View inFolder() {
    return {"/s", false, false, [](const State::Path& file) { return file == "/s/row.wav"; }};
}
State::View searching() {
    State::View view = inFolder();
    view.searching = true;
    return view;
}
State::View listing() {
    return {"/t", false, true, [](const State::Path&) { return false; }};
}

TEST(ChosenState, RevealsOnlyWhatThisWindowDidNotAskFor) {
    const std::vector<BrowserEntry> renamedRows = {{"/s/x.wav", false, {}}, {"/s/new.wav", false, {}}};
    const std::vector<BrowserEntry> otherRows = {{"/s/x.wav", false, {}}};
    const State asked{.requested = "/t/a.wav", .loaded = "/s/b.wav"};
    const State waiting{.revealed = "/t/a.wav"};
    const State renamed{.renamed = {"/s/new.wav", "/s/too.wav"}};
    struct Case {
        const char* what;
        State before;
        State::Event event;
        State::View view;
        State::Action action;
        State after;
    };
    const std::vector<Case> cases = {
        {"a choice is remembered", {}, State::Requested{"/t/a.wav"}, inFolder(), {}, {.requested = "/t/a.wav"}},
        {"the requested file stays where it is",
         asked,
         State::Loaded{"/t/a.wav"},
         inFolder(),
         {},
         {.loaded = "/t/a.wav"}},
        {"a file from outside opens its folder",
         asked,
         State::Loaded{"/t/c.wav"},
         inFolder(),
         {.openFolder = "/t"},
         {.loaded = "/t/c.wav", .revealed = "/t/c.wav"}},
        {"a change of the loaded file's state is none of the file",
         asked,
         State::Loaded{"/s/b.wav"},
         inFolder(),
         {},
         asked},
        {"a row on screen is marked at once",
         waiting,
         State::Reveal{"/s/row.wav"},
         inFolder(),
         {.mark = "/s/row.wav"},
         {}},
        {"a result on screen too", {}, State::Reveal{"/s/row.wav"}, searching(), {.mark = "/s/row.wav"}, {}},
        {"any other file ends the search",
         {},
         State::Reveal{"/s/b.wav"},
         searching(),
         {.openFolder = "/s"},
         {.revealed = "/s/b.wav"}},
        {"a listed folder without the file has nothing to wait for",
         waiting,
         State::Reveal{"/s/b.wav"},
         inFolder(),
         {},
         {}},
        {"a folder on its way isn't opened again", {}, State::Reveal{"/t/a.wav"}, listing(), {}, waiting},
        {"rows of a search mark nothing", waiting, State::RowsArrive{otherRows}, searching(), {}, waiting},
        {"nor do those of an unfinished list", waiting, State::RowsArrive{otherRows}, listing(), {}, waiting},
        {"a list marks the file once", waiting, State::RowsArrive{otherRows}, inFolder(), {.mark = "/t/a.wav"}, {}},
        {"a renamed file is loaded again, without a reveal",
         {.loaded = "/s/old.wav"},
         State::Renamed{{{"/s/x.wav", "/s/too.wav"}, {"/s/old.wav", "/s/new.wav"}}},
         inFolder(),
         {.load = "/s/new.wav"},
         {.requested = "/s/new.wav", .loaded = "/s/old.wav", .renamed = renamed.renamed}},
        {"new names are selected when they arrive",
         renamed,
         State::RowsArrive{renamedRows},
         searching(),
         {.select = renamed.renamed},
         {}},
        {"and waited for until then", renamed, State::RowsArrive{otherRows}, inFolder(), {}, renamed},
    };
    for (const auto& [what, before, event, view, action, after] : cases) {
        SCOPED_TRACE(what);
        const auto step = before.step(event, view);
        EXPECT_EQ(step.action, action);
        EXPECT_EQ(step.next, after);
    }
}

}  // namespace
}  // namespace brindlehum
