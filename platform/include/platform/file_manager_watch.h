// FileManagerWatch: what the user's file manager shows: whether it is in front, where its windows are, what is
// selected.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <vector>

#include "platform/screen_rect.h"

namespace brindlehum {

struct DesktopWindow {
    uint64_t id = 0;  // of the display server
    ScreenRect frame;
    double opacity = 1;  // 0 to 1
};

struct SelectionReading {
    // denied: the file manager lets nobody read; failed: no answer this time.
    enum class Outcome : uint8_t { read, denied, failed };
    Outcome outcome = Outcome::failed;
    // Existing files and folders, in the file manager's order. Items that aren't one existing file for sure are left
    // out.
    std::vector<std::filesystem::path> paths;
};

// Main thread. Reads nothing of other programs, and nothing at all while the file manager isn't in front.
class FileManagerWatch {
public:
    // Each says that the value may have changed.
    struct Heard {
        std::function<void()> front;
        std::function<void()> windows;
        std::function<void()> selection;
        std::function<void()> focus;  // of isEditing
    };
    virtual ~FileManagerWatch() = default;
    // Once.
    virtual void start(Heard heard) = 0;
    // The desktop lets selections be read.
    virtual bool isTrusted() const = 0;
    // Switches on what is needed for that, for all programs of the desktop: only after a click of the user.
    virtual void allow() = 0;
    virtual bool isFront() const = 0;
    // The desktop says where windows are; without it `windows` stays empty.
    virtual bool seesWindows() const { return true; }
    // The normal windows of the file manager in front, the topmost first.
    virtual std::vector<DesktopWindow> windows() const = 0;
    // The user types: a name, a search, a location. False when in doubt.
    virtual bool isEditing() const = 0;
    // The file manager in front asks a previewer when Space is pressed.
    virtual bool asksPreviewer() const = 0;
    // At most `limit` items. `done` is called within a second, unless the watch ends before.
    virtual void readSelection(int limit, std::function<void(const SelectionReading&)> done) = 0;
    // Connects to the file manager anew.
    virtual void attach() = 0;
};

}  // namespace brindlehum
