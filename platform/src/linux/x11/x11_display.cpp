// Requests to the X server and their replies.
#include "x11_display.h"

#include <algorithm>
#include <cstring>

#include "xcb_xkb.h"

namespace brindlehum {

X11Display::X11Display() {
    int screen = 0;
    connection_ = xcb_connect(nullptr, &screen);
    if (xcb_connection_has_error(connection_) != 0) { return; }
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(connection_));
    for (; screen > 0 && screens.rem > 1; --screen) { xcb_screen_next(&screens); }
    root_ = screens.data->root;
}

X11Display::~X11Display() {
    xcb_disconnect(connection_);
}

xcb_atom_t X11Display::atom(const char* name) const {
    const auto cookie = xcb_intern_atom(connection_, 0, uint16_t(std::strlen(name)), name);
    const XReply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(connection_, cookie, nullptr));
    return reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
}

xcb_get_property_cookie_t X11Display::askProperty(xcb_window_t window, xcb_atom_t property) const {
    return xcb_get_property(connection_, 0, window, property, XCB_GET_PROPERTY_TYPE_ANY, 0, 1024);
}

XReply<xcb_get_property_reply_t> X11Display::property(xcb_get_property_cookie_t cookie) const {
    return XReply<xcb_get_property_reply_t>(xcb_get_property_reply(connection_, cookie, nullptr));
}

std::vector<uint32_t> X11Display::numbers(xcb_get_property_cookie_t cookie) const {
    const auto reply = property(cookie);
    if (!reply || reply->format != 32) { return {}; }
    const auto* values = static_cast<const uint32_t*>(xcb_get_property_value(reply.get()));
    return {values, values + reply->value_len};
}

std::string X11Display::text(xcb_get_property_cookie_t cookie) const {
    const auto reply = property(cookie);
    if (!reply || reply->format != 8) { return {}; }
    return {static_cast<const char*>(xcb_get_property_value(reply.get())), reply->value_len};
}

// The second of two texts that end with a zero each.
std::string X11Display::className(xcb_get_property_cookie_t cookie) const {
    const std::string texts = text(cookie);
    const size_t start = std::min(texts.find('\0'), texts.size());
    std::string second = start < texts.size() ? texts.substr(start + 1) : std::string();
    second.resize(std::min(second.size(), second.find('\0')));
    return second;
}

xcb_keycode_t X11Display::spaceKey() const {
    constexpr xcb_keysym_t space = 0x20;
    const xcb_setup_t* setup = xcb_get_setup(connection_);
    const auto count = uint8_t(setup->max_keycode - setup->min_keycode + 1);
    const auto cookie = xcb_get_keyboard_mapping(connection_, setup->min_keycode, count);
    const XReply<xcb_get_keyboard_mapping_reply_t> reply(xcb_get_keyboard_mapping_reply(connection_, cookie, nullptr));
    if (!reply) { return 0; }
    const xcb_keysym_t* symbols = xcb_get_keyboard_mapping_keysyms(reply.get());
    for (int key = 0; key < count; ++key) {
        if (symbols[key * reply->keysyms_per_keycode] == space) { return xcb_keycode_t(setup->min_keycode + key); }
    }
    return 0;
}

bool X11Display::isDown(xcb_keycode_t key) const {
    const XReply<xcb_query_keymap_reply_t> reply(
        xcb_query_keymap_reply(connection_, xcb_query_keymap(connection_), nullptr));
    return reply && (reply->keys[key / 8] >> (key % 8) & 1) != 0;
}

double X11Display::keyRepeatDelay() const {
    constexpr double usual = 0.5;
    const auto use = xcb_xkb_use_extension(connection_, 1, 0);
    const auto controls = xcb_xkb_get_controls(connection_, XCB_XKB_ID_USE_CORE_KBD);
    const XReply<xcb_xkb_use_extension_reply_t> used(xcb_xkb_use_extension_reply(connection_, use, nullptr));
    const XReply<xcb_xkb_get_controls_reply_t> reply(xcb_xkb_get_controls_reply(connection_, controls, nullptr));
    return used && reply ? reply->repeatDelay / 1000.0 : usual;
}

}  // namespace brindlehum
