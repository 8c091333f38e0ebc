// The rules of the chosen sound, one function an event.
#include "ui/browser/chosen_state.h"

#include <algorithm>

namespace brindlehum {
namespace {

using State = ChosenState;
using View = ChosenState::View;
using Step = ChosenState::Step;

Step after(State state, const State::Reveal& event, const View& view) {
    state.revealed.clear();
    if (view.hasRow(event.file)) { return {state, {.mark = event.file}}; }
    state.revealed = event.file;
    State::Action action{.deselect = true};
    if (view.searching || view.folder != event.file.parent_path()) {
        action.openFolder = event.file.parent_path();
    } else {
        action.relist = true;  // the file may be younger than the list
    }
    return {state, action};
}

Step after(State state, const State::Requested& event, const View& /*view*/) {
    state.requested = event.file;
    return {state, {}};
}

Step after(State state, const State::Selected& /*event*/, const View& /*view*/) {
    state.revealed.clear();
    return {state, {}};
}

Step after(State state, const State::Loaded& event, const View& view) {
    if (event.file == state.loaded) { return {state, {}}; }
    state.loaded = event.file;
    // If this window requested the file, don't reveal it: the user may be browsing elsewhere.
    const State::Path requested = std::exchange(state.requested, {});
    return event.file == requested || event.fromFileManager ? Step{state, {}}
                                                            : after(state, State::Reveal{event.file}, view);
}

// Renamed files stay selected and loaded.
Step after(State state, const State::Renamed& event, const View& /*view*/) {
    State::Action action;
    state.renamed.clear();
    for (const auto& [from, to] : event.moves) {
        state.renamed.insert(to);
        for (State::Path* file : {&state.loaded, &state.requested}) {
            if (*file != from || from.empty()) { continue; }
            *file = to;
            action.renames.insert({from, to});
        }
    }
    return {state, action};
}

Step after(State state, const State::RowsArrive& event, const View& view) {
    State::Action action;
    if (std::ranges::any_of(event.rows, [&](const auto& row) { return state.renamed.contains(row.url); })) {
        action.select = std::exchange(state.renamed, {});
    }
    const bool isThere = std::ranges::find(event.rows, state.revealed, &BrowserEntry::url) != event.rows.end();
    if (!view.searching && isThere) { action.mark = std::exchange(state.revealed, {}); }
    return {state, action};
}

}  // namespace

Step ChosenState::step(const Event& event, const View& view) const {
    return std::visit([&](const auto& one) { return after(*this, one, view); }, event);
}

}  // namespace brindlehum
