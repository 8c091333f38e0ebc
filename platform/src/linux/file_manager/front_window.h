// FrontWindow: which window of the desktop has the keyboard, as far as its display server lets a program see it.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "platform/file_manager_watch.h"

namespace brindlehum {

// Main thread.
class FrontWindow {
public:
    struct Active {
        uint32_t id = 0;  // its own number; 0: none is known
        std::string className;
        uint32_t pid = 0;        // 0: unknown, as are empty texts
        std::string objectPath;  // of the window on the session bus
        std::string busName;
        bool operator==(const Active&) const = default;
    };
    virtual ~FrontWindow() = default;
    virtual const Active& active() const = 0;
    // Windows have known places, and menus are seen.
    virtual bool seesPlaces() const = 0;
    // From now on also follows the places of all windows, and keeps `windows` for the active program.
    virtual void follow(bool follows) = 0;
    // Normal windows of the active program that aren't hidden, topmost first.
    virtual const std::vector<DesktopWindow>& windows() const = 0;
    // A menu, or a small field that takes letters, of the active program is up.
    virtual bool hasPopup() const = 0;

    std::function<void()> onActive;
    std::function<void()> onWindows;  // of the program that is followed
    std::function<void()> onPopups;
};

}  // namespace brindlehum
