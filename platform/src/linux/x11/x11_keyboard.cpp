// Reads the server's keyboard through xkbcommon, and looks for the key of a sign.
#include "x11_keyboard.h"

#include <xkbcommon/xkbcommon-x11.h>

#include <algorithm>
#include <bit>
#include <limits>

#include "x11_key_symbols.h"
#include "xcb_xkb.h"

namespace brindlehum {
namespace {

constexpr uint8_t capsLock = XCB_MOD_MASK_LOCK;

xkb_keysym_t firstSymbol(xkb_keymap* keymap, xcb_keycode_t key) {
    const xkb_keysym_t* symbols = nullptr;
    return xkb_keymap_key_get_syms_by_level(keymap, key, 0, 0, &symbols) > 0 ? symbols[0] : XKB_KEY_NoSymbol;
}

}  // namespace

X11Keyboard::X11Keyboard(X11Display& display) : display_(display), context_(xkb_context_new(XKB_CONTEXT_NO_FLAGS)) {
    xcb_connection_t* const connection = display.connection();
    if (!context_ || xkb_x11_setup_xkb_extension(connection, XKB_X11_MIN_MAJOR_XKB_VERSION,
                                                 XKB_X11_MIN_MINOR_XKB_VERSION, XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS,
                                                 nullptr, nullptr, &keyboardEvents_, nullptr) == 0) {
        return;
    }
    device_ = xkb_x11_get_core_keyboard_device_id(connection);
    const uint16_t events = XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY | XCB_XKB_EVENT_TYPE_MAP_NOTIFY;
    const uint16_t parts = 0xff;
    xcb_xkb_select_events(connection, XCB_XKB_ID_USE_CORE_KBD, events, 0, events, parts, parts, nullptr);
}

void X11Keyboard::hear(const xcb_generic_event_t& event) {
    const uint8_t type = event.response_type & 0x7f;
    if (type == XCB_MAPPING_NOTIFY || type == keyboardEvents_) { keymap_.reset(); }
}

void X11Keyboard::read() {
    xcb_connection_t* const connection = display_.connection();
    keymap_.reset(xkb_x11_keymap_new_from_device(context_.get(), connection, device_, XKB_KEYMAP_COMPILE_NO_FLAGS));
    const XReply<xcb_get_modifier_mapping_reply_t> reply(
        xcb_get_modifier_mapping_reply(connection, xcb_get_modifier_mapping(connection), nullptr));
    keysOf_ = {};
    modifierKeys_.clear();
    if (!reply || !keymap_) { return; }
    const xcb_keycode_t* keys = xcb_get_modifier_mapping_keycodes(reply.get());
    for (size_t i = 0; i < size_t(8) * reply->keycodes_per_modifier; ++i) {
        if (keys[i] == 0) { continue; }
        keysOf_[i / reply->keycodes_per_modifier].push_back(keys[i]);
        modifierKeys_.push_back(keys[i]);
    }
    shift_ = find({XKB_KEY_Shift_L, XKB_KEY_Shift_R});
    control_ = find({XKB_KEY_Control_L, XKB_KEY_Control_R});
    alt_ = find({XKB_KEY_Alt_L, XKB_KEY_Alt_R});
    third_ = find({XKB_KEY_ISO_Level3_Shift, XKB_KEY_Mode_switch});
    numLock_ = find({XKB_KEY_Num_Lock});
}

X11Keyboard::Modifier X11Keyboard::find(std::initializer_list<xkb_keysym_t> symbols) const {
    for (const xkb_keysym_t symbol : symbols) {
        for (size_t modifier = 0; modifier < keysOf_.size(); ++modifier) {
            const auto& keys = keysOf_[modifier];
            const auto key = std::ranges::find_if(
                keys, [&](xcb_keycode_t each) { return firstSymbol(keymap_.get(), each) == symbol; });
            if (key != keys.end()) { return {uint8_t(1U << modifier), *key}; }
        }
    }
    return {};
}

// The cheapest key and level of this layout that gives the symbol, if it is cheaper than `cost`.
void X11Keyboard::search(X11Chord& best, int& cost, xkb_keysym_t symbol, xkb_layout_index_t group) const {
    const uint8_t usable = shift_.mask | third_.mask | numLock_.mask;
    const xkb_keycode_t last = std::min<xkb_keycode_t>(xkb_keymap_max_keycode(keymap_.get()), 255);
    for (xkb_keycode_t key = xkb_keymap_min_keycode(keymap_.get()); key <= last; ++key) {
        const xkb_layout_index_t groups = xkb_keymap_num_layouts_for_key(keymap_.get(), key);
        if (groups == 0) { continue; }
        const xkb_layout_index_t own = group % groups;
        const xkb_level_index_t levels = xkb_keymap_num_levels_for_key(keymap_.get(), key, own);
        for (xkb_level_index_t level = 0; level < levels; ++level) {
            const xkb_keysym_t* symbols = nullptr;
            const int count = xkb_keymap_key_get_syms_by_level(keymap_.get(), key, own, level, &symbols);
            if (count != 1 || symbols[0] != symbol) { continue; }
            std::array<xkb_mod_mask_t, 16> masks{};
            const size_t ways =
                xkb_keymap_key_get_mods_for_level(keymap_.get(), key, own, level, masks.data(), masks.size());
            for (size_t way = 0; way < ways; ++way) {
                const xkb_mod_mask_t mask = masks[way];
                if ((mask & ~xkb_mod_mask_t(usable)) != 0 || std::popcount(mask) >= cost) { continue; }
                cost = std::popcount(mask);
                best = {xcb_keycode_t(key),
                        {},
                        uint8_t(mask & ~xkb_mod_mask_t(numLock_.mask)),
                        uint8_t(group),
                        uint8_t(mask & numLock_.mask),
                        uint8_t(capsLock | (mask & numLock_.mask))};
            }
        }
    }
}

// False if the layout has no key for this modifier.
bool X11Keyboard::hold(X11Chord& chord, const Modifier& modifier) const {
    if (modifier.key == 0) { return false; }
    chord.held |= modifier.mask;
    chord.modifiers.push_back(modifier.key);
    return true;
}

std::optional<X11Chord> X11Keyboard::chord(const Keystroke& stroke, uint8_t group) const {
    const auto symbol = x11Symbol(stroke.code);
    if (!symbol || !keymap_) { return std::nullopt; }
    X11Chord chord;
    int cost = std::numeric_limits<int>::max();
    search(chord, cost, *symbol, group);
    for (xkb_layout_index_t other = 0; chord.key == 0 && other < xkb_keymap_num_layouts(keymap_.get()); ++other) {
        search(chord, cost, *symbol, other);
    }
    if (chord.key == 0) { return std::nullopt; }
    const uint8_t level = chord.held;
    const auto wants = [&](const Modifier& modifier, uint64_t flags) {
        const bool wanted = (level & modifier.mask) != 0 || (stroke.flags & flags) != 0;
        return !wanted || hold(chord, modifier);
    };
    const bool all = wants(control_, Keystroke::control | Keystroke::command) && wants(shift_, Keystroke::shift) &&
                     wants(alt_, Keystroke::alternate) && wants(third_, 0);
    return all ? std::optional(chord) : std::nullopt;
}

}  // namespace brindlehum
