// DAWControl: turns a command word into the key that does the job in the DAW at hand, and has it pressed there.
#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "app/daw_tables.h"
#include "platform/applications.h"

namespace brindlehum {

// Main thread.
class DAWControl {
public:
    struct Found {
        DAW daw;
        ApplicationWindow window;
    };
    struct Reply {
        std::string message;    // one line for the caller
        bool isQueued = false;  // a key is about to be pressed
    };
    // Gets why the key wasn't pressed, as one line; empty: it was.
    using Done = std::function<void(const std::string& problem)>;

    // Without `applications` nothing can be driven. The user's table is read again when it has changed; an empty path:
    // none.
    DAWControl(Applications* applications, std::filesystem::path ownTable)
        : applications_(applications), ownTable_(std::move(ownTable)) {}

    // `command` is a word of the DAW's keys, or else a key string itself. `daw` is preferred if it runs; one that
    // nobody knows counts as none. Returns at once; calls `done` later if a key is queued.
    Reply send(const std::string& command, const std::optional<std::string>& daw, Done done = {});
    // The DAW in front; else the preferred one, else the first of the table that runs.
    std::optional<Found> runningDAW(const std::optional<std::string>& preferred);
    // Small letters or capitals, pieces joined by "+": cmd, shift, opt (alt), ctrl, and the key. The last piece that
    // isn't a modifier is the key; without one, or with an unknown one, there is none.
    static std::optional<Keystroke> parse(std::string_view text);
    // Why no key can be pressed on this desktop; empty: it can.
    std::string obstacle() const;
    // What is wrong with the user's table, a line each.
    const std::vector<std::string>& problems();

private:
    const DAWTable& table();

    Applications* applications_;
    std::filesystem::path ownTable_;
    std::optional<std::filesystem::file_time_type> read_;  // as the file was when it was read
    std::optional<DAWTable> table_;
};

// The choice alone. `windows`: topmost first.
std::optional<DAWControl::Found> chooseDAW(const DAWs& daws, const std::vector<ApplicationWindow>& windows,
                                           const std::optional<std::string>& preferred);

}  // namespace brindlehum
