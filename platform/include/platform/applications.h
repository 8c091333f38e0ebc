// Applications: the applications on the desktop, and keys that are pressed in one of them.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace brindlehum {

// A key by its place on an ANSI keyboard in the numbering of `DAWControl::codes`, and the modifiers held with it.
struct Keystroke {
    static constexpr uint64_t shift = 0x20000;
    static constexpr uint64_t control = 0x40000;
    static constexpr uint64_t alternate = 0x80000;
    static constexpr uint64_t command = 0x100000;  // here Control as well

    uint16_t code = 0;
    uint64_t flags = 0;
    bool operator==(const Keystroke&) const = default;
};

struct ApplicationWindow {
    uint64_t id = 0;  // of the display server
    std::string className;
    bool isActive = false;  // it has the user's attention
};

enum class KeyAccess : uint8_t {
    granted,
    refused,    // the display server takes no keys from programs
    wayland,    // no program may press keys in another one
    noDisplay,  // nothing is shown
};

enum class KeyOutcome : uint8_t {
    pressed,
    notInFront,  // the window didn't come to the front, or didn't get the keyboard
    noKey,       // no key of the keyboard layout gives this sign
    busy,        // another program, as a menu or a screen lock, holds the keyboard, or the user holds the same key
    ended,       // the display server is gone, or we are about to be
};

// Main thread.
class Applications {
public:
    virtual ~Applications() = default;
    virtual KeyAccess access() const = 0;
    // The windows that the window manager manages, topmost first.
    virtual std::vector<ApplicationWindow> windows() = 0;
    // Presses and releases a key in this window, or in the window of the same class that is active by then: returns at
    // once, presses in the order of the calls. Brings the window to the front if need be and gives the keyboard back
    // to the window that had it. Never presses a key that another window would get, nor those that
    // wait behind one that failed; `done` says how it went.
    virtual void press(const ApplicationWindow& window, const Keystroke& stroke,
                       std::function<void(KeyOutcome)> done) = 0;
    // Before the process ends without destroying anything: gives the keyboard back, and presses nothing any more.
    virtual void finish() = 0;
};

}  // namespace brindlehum
