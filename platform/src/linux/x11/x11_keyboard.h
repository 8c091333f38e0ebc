// X11Keyboard: which keys are to be pressed for a sign on the keyboard layout in use. For one thread.
#pragma once

#include <xkbcommon/xkbcommon.h>

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "platform/applications.h"
#include "x11_display.h"

namespace brindlehum {

// Masks are those of the core protocol: Shift 1, Lock 2, Control 4, Mod1 to Mod5.
struct X11Chord {
    xcb_keycode_t key = 0;
    std::vector<xcb_keycode_t> modifiers;  // to be held
    uint8_t held = 0;                      // their mask
    uint8_t group = 0;                     // the layout that must be chosen
    uint8_t locks = 0;                     // of Caps Lock and Num Lock: those that must be on
    uint8_t locksThatMatter = 0;           // all others of these two may stay as they are
};

class X11Keyboard {
public:
    explicit X11Keyboard(X11Display& display);
    // The server lets us read its keyboard.
    bool isReady() const { return device_ >= 0; }
    // Takes an event that may say that the layout has changed.
    void hear(const xcb_generic_event_t& event);
    // The layout has changed since it was read.
    bool isStale() const { return !keymap_; }
    void read();
    // None: no key gives this sign. Prefers the layout that is chosen now, then fewer modifiers.
    std::optional<X11Chord> chord(const Keystroke& stroke, uint8_t group) const;
    const std::vector<xcb_keycode_t>& modifierKeys() const { return modifierKeys_; }

private:
    struct Free {
        void operator()(xkb_context* context) const { xkb_context_unref(context); }
        void operator()(xkb_keymap* keymap) const { xkb_keymap_unref(keymap); }
    };
    // Of one modifier of the core protocol.
    struct Modifier {
        uint8_t mask = 0;
        xcb_keycode_t key = 0;
    };
    Modifier find(std::initializer_list<xkb_keysym_t> symbols) const;
    void search(X11Chord& best, int& cost, xkb_keysym_t symbol, xkb_layout_index_t group) const;
    bool hold(X11Chord& chord, const Modifier& modifier) const;

    X11Display& display_;
    std::unique_ptr<xkb_context, Free> context_;
    std::unique_ptr<xkb_keymap, Free> keymap_;
    int device_ = -1;
    uint8_t keyboardEvents_ = 0;
    std::array<std::vector<xcb_keycode_t>, 8> keysOf_;  // by modifier
    std::vector<xcb_keycode_t> modifierKeys_;           // of all of them
    Modifier shift_, control_, alt_, third_, numLock_;  // third: the third level, AltGr
};

}  // namespace brindlehum
