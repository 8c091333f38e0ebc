// ChosenState: the sound that this window asked for, the one that is loaded and the rows to mark, as pure steps.
#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <span>
#include <utility>
#include <variant>
#include <vector>

#include "library/model/browser_entry.h"

namespace brindlehum {

// An empty path stands for none, here and below.
struct ChosenState {
    using Path = std::filesystem::path;

    Path requested = {};          // this window asked the player for it
    Path loaded = {};             // the player has it
    Path revealed = {};           // to be marked as soon as a list of its folder has it
    std::set<Path> renamed = {};  // new names, to be selected as soon as rows with them arrive
    bool operator==(const ChosenState&) const = default;

    // What the browser shows.
    struct View {
        std::optional<Path> folder;
        bool searching = false;
        bool listing = false;  // the folder's rows are on their way
        std::function<bool(const Path&)> hasRow;
    };

    // The user chose a file in this window, or opened one with it.
    struct Requested {
        Path file;
    };
    // The user selected other rows.
    struct Selected {};
    struct Loaded {
        Path file;
        bool fromFileManager = false;  // where the user sees it, so that nothing moves here
    };
    struct Reveal {
        Path file;
    };
    struct Renamed {
        std::vector<std::pair<Path, Path>> moves;  // from, to
    };
    // Rows are about to be shown.
    struct RowsArrive {
        std::span<const BrowserEntry> rows;
    };
    using Event = std::variant<Requested, Selected, Loaded, Reveal, Renamed, RowsArrive>;

    // What to carry out, in this order.
    struct Action {
        std::map<Path, Path> renames = {};  // of the player's files, each by its old name
        bool deselect = false;              // so that the table names no other file than the player
        Path openFolder = {};               // and end the search
        bool relist = false;                // the folder shown may hold a file that its list doesn't
        std::set<Path> select = {};         // along with what is selected
        Path mark = {};                     // select this row alone and scroll to it
        bool operator==(const Action&) const = default;
    };
    struct Step;
    Step step(const Event& event, const View& view) const;
};

struct ChosenState::Step {
    ChosenState next;
    Action action;
};

}  // namespace brindlehum
