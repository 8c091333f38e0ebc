// X11Presser: presses a key in the window that holds the keyboard, and no other. For one thread.
#pragma once

#include <string>
#include <vector>

#include "platform/applications.h"
#include "x11_keyboard.h"

namespace brindlehum {

class X11Presser {
public:
    struct Target {
        xcb_window_t window = 0;
        std::string className;  // its other windows will do as well, when they are active
    };

    X11Presser();
    // Connected to a server that takes keys.
    bool isReady() const { return isReady_; }
    xcb_window_t active() const;
    // The target is active and has the input focus. Unlike within press, that may have changed at the return.
    bool isInFront(const Target& target) const;
    // Presses and releases the key if the target is in front. The server serves nobody else between the look at the
    // focus and the release, so no other window can get the key.
    KeyOutcome press(const Target& target, const Keystroke& stroke);
    // Asks the window manager, as a pager does.
    void activate(xcb_window_t window) const;
    // Returns when windows or the focus may have changed, or after this time.
    void wait(int milliseconds) const;
    // From now on `wait` hears of changes; 0: no longer.
    void watch(xcb_window_t window);

private:
    class ServerGrab;
    struct Held {
        std::vector<xcb_keycode_t> modifiers;
        bool key = false;  // the key of the chord
    };

    xcb_connection_t* x() const { return display_.connection(); }
    void hearEvents();
    bool isInside(xcb_window_t inner, xcb_window_t outer) const;
    bool isKeyboardFree() const;
    uint8_t group() const;
    Held held(const X11Chord& chord) const;
    KeyOutcome type(const X11Chord& chord);
    bool areOnlyHeld(const X11Chord& chord) const;
    std::vector<xcb_keycode_t> stillDown(const std::vector<xcb_keycode_t>& keys) const;
    void fake(xcb_keycode_t key, bool down) const;
    void setLocks(uint8_t which, uint8_t on, bool setsGroup, uint8_t group) const;

    X11Display display_;
    X11Keyboard keyboard_{display_};
    xcb_atom_t activeAtom_ = XCB_ATOM_NONE;
    bool isReady_ = false;
    xcb_window_t watched_ = 0;
};

}  // namespace brindlehum
