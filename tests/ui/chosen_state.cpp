// What a window does when a sound is asked for, loaded, renamed or listed.
#include "ui/browser/chosen_state.h"

#include <gtest/gtest.h>

namespace brindlehum {
namespace {

using State = ChosenState;

TEST(ChosenState, RevealsOnlyWhatThisWindowDidNotAskFor) {
    using Path = State::Path;
    using Rows = std::vector<BrowserEntry>;
    const Path a = "/t/a.wav", b = "/s/b.wav", c = "/t/c.wav", old = "/s/old.wav", now = "/s/new.wav", x = "/s/x.wav";
    const Path row = "/s/row.wav";  // the folder /s has it on screen
    const State::View folder{"/s", false, false, [&](const Path& file) { return file == row; }};
    const State::View search{"/s", true, false, folder.hasRow};
    const State::View listing{"/t", false, true, [](const Path&) { return false; }};
    const Rows renamedRows = {{x, false, {}}, {now, false, {}}};
    const Rows otherRows = {{x, false, {}}};
    const Rows rowsWithIt = {{x, false, {}}, {a, false, {}}};
    const State asked{.requested = a, .loaded = b};
    const State waiting{.revealed = a};
    const State renamed{.renamed = {now, c}};
    struct Case {
        const char* what;
        State before;
        State::Event event;
        State::View view;
        State::Action action;
        State after;
    };
    const std::vector<Case> cases = {
        {"a choice is remembered", {}, State::Requested{a}, folder, {}, {.requested = a}},
        {"the requested file stays where it is", asked, State::Loaded{a}, folder, {}, {.loaded = a}},
        {"another opens its folder",
         asked,
         State::Loaded{c},
         folder,
         {.deselect = true, .openFolder = "/t"},
         {.loaded = c, .revealed = c}},
        {"nothing moves for a choice in the file manager", asked, State::Loaded{c, true}, search, {}, {.loaded = c}},
        {"the loaded file's state is none of the file", asked, State::Loaded{b}, folder, {}, asked},
        {"a row on screen is marked at once", waiting, State::Reveal{row}, folder, {.mark = row}, {}},
        {"a result on screen too", {}, State::Reveal{row}, search, {.mark = row}, {}},
        {"any other file ends the search",
         {},
         State::Reveal{b},
         search,
         {.deselect = true, .openFolder = "/s"},
         {.revealed = b}},
        {"a folder listed before the file came is listed again, with nothing selected",
         waiting,
         State::Reveal{b},
         folder,
         {.deselect = true, .relist = true},
         {.revealed = b}},
        {"a folder on its way isn't opened again",
         {},
         State::Reveal{a},
         listing,
         {.deselect = true, .relist = true},
         waiting},
        {"rows of a search mark nothing", waiting, State::RowsArrive{rowsWithIt}, search, {}, waiting},
        {"nor does a list without the file", waiting, State::RowsArrive{otherRows}, folder, {}, waiting},
        {"a list marks the file once", waiting, State::RowsArrive{rowsWithIt}, folder, {.mark = a}, {}},
        {"a choice of the user ends the wait", waiting, State::Selected{}, folder, {}, {}},
        {"a renamed file stays loaded, without a reveal",
         {.requested = old, .loaded = old},
         State::Renamed{{{x, c}, {old, now}}},
         folder,
         {.renames = {{old, now}}},
         {.requested = now, .loaded = now, .renamed = renamed.renamed}},
        {"new names are selected", renamed, State::RowsArrive{renamedRows}, search, {.select = renamed.renamed}, {}},
        {"and waited for until they arrive", renamed, State::RowsArrive{otherRows}, folder, {}, renamed},
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
