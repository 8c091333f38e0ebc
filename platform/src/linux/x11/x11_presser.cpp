// Looks at the focus and presses the key while the server serves nobody else.
#include "x11_presser.h"

#include <poll.h>
#include <xcb/xinput.h>
#include <xcb/xtest.h>

#include <algorithm>
#include <string_view>

#include "xcb_xkb.h"

namespace brindlehum {
namespace {

constexpr int deepest = 16;  // windows between a focus and its top-level window
constexpr uint8_t capsLock = XCB_MOD_MASK_LOCK;

}  // namespace

// While it lives, the server serves this connection alone: to be kept for a millisecond or two.
class X11Presser::ServerGrab {
public:
    explicit ServerGrab(xcb_connection_t* connection) : connection_(connection) { xcb_grab_server(connection); }
    ~ServerGrab() {
        xcb_ungrab_server(connection_);
        xcb_flush(connection_);
    }
    ServerGrab(const ServerGrab&) = delete;
    ServerGrab& operator=(const ServerGrab&) = delete;

private:
    xcb_connection_t* connection_;
};

X11Presser::X11Presser() {
    if (!display_.isConnected() || !keyboard_.isReady()) { return; }
    const xcb_query_extension_reply_t* test = xcb_get_extension_data(x(), &xcb_test_id);
    isReady_ = test && test->present != 0;
    activeAtom_ = display_.atom("_NET_ACTIVE_WINDOW");
}

xcb_window_t X11Presser::active() const {
    const auto ids = display_.numbers(display_.askProperty(display_.root(), activeAtom_));
    return ids.empty() ? 0 : ids.front();
}

bool X11Presser::isInFront(const Target& target) const {
    const auto asked = xcb_get_input_focus(x());
    const xcb_window_t front = active();
    const XReply<xcb_get_input_focus_reply_t> reply(xcb_get_input_focus_reply(x(), asked, nullptr));
    if (front == 0 || !reply) { return false; }
    return (front == target.window || display_.windowClass(front) == target.className) && isInside(reply->focus, front);
}

bool X11Presser::isInside(xcb_window_t inner, xcb_window_t outer) const {
    for (int step = 0; step < deepest && inner > XCB_INPUT_FOCUS_POINTER_ROOT; ++step) {
        if (inner == outer) { return true; }
        const XReply<xcb_query_tree_reply_t> reply(xcb_query_tree_reply(x(), xcb_query_tree(x(), inner), nullptr));
        if (!reply) { return false; }
        inner = reply->parent;
    }
    return false;
}

KeyOutcome X11Presser::press(const Target& target, const Keystroke& stroke) {
    if (!isInFront(target)) { return xcb_connection_has_error(x()) ? KeyOutcome::ended : KeyOutcome::notInFront; }
    for (;;) {
        hearEvents();
        if (keyboard_.isStale()) { keyboard_.read(); }
        if (keyboard_.isStale()) { return KeyOutcome::ended; }
        const ServerGrab alone(x());
        if (!isInFront(target)) { return KeyOutcome::notInFront; }
        hearEvents();  // the replies have brought those that came before the grab
        if (keyboard_.isStale()) { continue; }
        if (!isKeyboardFree()) { return KeyOutcome::busy; }
        const auto chord = keyboard_.chord(stroke, group());
        return chord ? type(*chord) : KeyOutcome::noKey;
    }
}

void X11Presser::hearEvents() {
    while (const XReply<xcb_generic_event_t> event{xcb_poll_for_event(x())}) { keyboard_.hear(*event); }
}

// A menu, a window manager's key or a screen lock gets all keys, whoever has the focus.
bool X11Presser::isKeyboardFree() const {
    const auto cookie =
        xcb_grab_keyboard(x(), 0, display_.root(), XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    const XReply<xcb_grab_keyboard_reply_t> reply(xcb_grab_keyboard_reply(x(), cookie, nullptr));
    if (!reply || reply->status != XCB_GRAB_STATUS_SUCCESS) { return false; }
    xcb_ungrab_keyboard(x(), XCB_CURRENT_TIME);
    return true;
}

uint8_t X11Presser::group() const {
    const XReply<xcb_xkb_get_state_reply_t> state(
        xcb_xkb_get_state_reply(x(), xcb_xkb_get_state(x(), XCB_XKB_ID_USE_CORE_KBD), nullptr));
    return state ? state->group : 0;
}

X11Presser::Held X11Presser::held(const X11Chord& chord) const {
    const XReply<xcb_query_keymap_reply_t> reply(xcb_query_keymap_reply(x(), xcb_query_keymap(x()), nullptr));
    Held held;
    if (!reply) { return held; }
    const auto isDown = [&](xcb_keycode_t key) { return (reply->keys[key / 8] >> (key % 8) & 1) != 0; };
    held.key = isDown(chord.key);
    std::ranges::copy_if(keyboard_.modifierKeys(), std::back_inserter(held.modifiers), isDown);
    return held;
}

// Modifiers that the user holds are let go for the press, and held again only if his fingers still do.
KeyOutcome X11Presser::type(const X11Chord& chord) {
    const Held before = held(chord);
    if (before.key) { return KeyOutcome::busy; }
    const XReply<xcb_xkb_get_state_reply_t> state(
        xcb_xkb_get_state_reply(x(), xcb_xkb_get_state(x(), XCB_XKB_ID_USE_CORE_KBD), nullptr));
    if (!state) { return KeyOutcome::ended; }
    const bool setsLocks = (state->lockedMods & chord.locksThatMatter) != chord.locks;
    const bool setsGroup = state->group != chord.group;
    for (const auto key : before.modifiers) { fake(key, false); }
    if (setsLocks || setsGroup) { setLocks(chord.locksThatMatter, chord.locks, setsGroup, chord.group); }
    // The server still counts a key as down that an earlier press has restored, so it is let go first.
    for (const auto key : chord.modifiers) {
        fake(key, false);
        fake(key, true);
    }
    const bool ready = areOnlyHeld(chord);
    if (ready) {
        fake(chord.key, true);
        fake(chord.key, false);
    }
    for (const auto key : chord.modifiers) { fake(key, false); }
    if (setsLocks || setsGroup) { setLocks(chord.locksThatMatter, state->lockedMods, setsGroup, state->lockedGroup); }
    for (const auto key : stillDown(before.modifiers)) { fake(key, true); }
    return ready ? KeyOutcome::pressed : KeyOutcome::busy;
}

// A modifier that can't be let go, as one that another layer latches, would make another shortcut of the key.
bool X11Presser::areOnlyHeld(const X11Chord& chord) const {
    const XReply<xcb_xkb_get_state_reply_t> state(
        xcb_xkb_get_state_reply(x(), xcb_xkb_get_state(x(), XCB_XKB_ID_USE_CORE_KBD), nullptr));
    if (!state || state->group != chord.group) { return false; }
    const auto mods = uint8_t((state->baseMods | state->latchedMods) & 0xff);
    return mods == chord.held && (state->lockedMods & chord.locksThatMatter) == chord.locks;
}

// What the keyboards themselves say, whatever keys programs have let go.
std::vector<xcb_keycode_t> X11Presser::stillDown(const std::vector<xcb_keycode_t>& keys) const {
    std::vector<xcb_keycode_t> down;
    if (keys.empty()) { return down; }
    const XReply<xcb_input_list_input_devices_reply_t> list(
        xcb_input_list_input_devices_reply(x(), xcb_input_list_input_devices(x()), nullptr));
    if (!list) { return down; }
    auto names = xcb_input_list_input_devices_names_iterator(list.get());
    const xcb_input_device_info_t* devices = xcb_input_list_input_devices_devices(list.get());
    for (int i = 0; i < xcb_input_list_input_devices_devices_length(list.get()); ++i, xcb_str_next(&names)) {
        const std::string_view name(xcb_str_name(names.data), size_t(xcb_str_name_length(names.data)));
        const bool isFake = name.find("XTEST") != std::string_view::npos;
        if (devices[i].device_use != XCB_INPUT_DEVICE_USE_IS_X_EXTENSION_KEYBOARD || isFake) { continue; }
        const uint8_t id = devices[i].device_id;
        const XReply<xcb_input_open_device_reply_t> open(
            xcb_input_open_device_reply(x(), xcb_input_open_device(x(), id), nullptr));
        const XReply<xcb_input_query_device_state_reply_t> state(
            xcb_input_query_device_state_reply(x(), xcb_input_query_device_state(x(), id), nullptr));
        if (!open || !state) { continue; }
        auto classes = xcb_input_query_device_state_classes_iterator(state.get());
        for (; classes.rem > 0; xcb_input_input_state_next(&classes)) {
            if (classes.data->class_id != XCB_INPUT_INPUT_CLASS_KEY) { continue; }
            const auto* pressed = reinterpret_cast<const xcb_input_key_state_t*>(classes.data)->keys;
            std::ranges::copy_if(keys, std::back_inserter(down),
                                 [&](xcb_keycode_t key) { return (pressed[key / 8] >> (key % 8) & 1) != 0; });
        }
        xcb_discard_reply(x(), xcb_input_close_device(x(), id).sequence);
    }
    return down;
}

void X11Presser::fake(xcb_keycode_t key, bool down) const {
    xcb_test_fake_input(x(), down ? XCB_KEY_PRESS : XCB_KEY_RELEASE, key, XCB_CURRENT_TIME, XCB_NONE, 0, 0, 0);
}

void X11Presser::setLocks(uint8_t which, uint8_t on, bool setsGroup, uint8_t group) const {
    xcb_xkb_latch_lock_state(x(), XCB_XKB_ID_USE_CORE_KBD, which, uint8_t(on & which), setsGroup ? 1 : 0, group, 0, 0,
                             0);
}

void X11Presser::activate(xcb_window_t window) const {
    constexpr uint32_t pager = 2;
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = activeAtom_;
    message.data.data32[0] = pager;
    const uint32_t mask = XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
    xcb_send_event(x(), 0, display_.root(), mask, reinterpret_cast<const char*>(&message));
    xcb_flush(x());
}

void X11Presser::wait(int milliseconds) const {
    pollfd source{xcb_get_file_descriptor(x()), POLLIN, 0};
    poll(&source, 1, milliseconds);
}

void X11Presser::watch(xcb_window_t window) {
    const uint32_t nothing = 0;
    const uint32_t root = window != 0 ? uint32_t(XCB_EVENT_MASK_PROPERTY_CHANGE) : nothing;
    const uint32_t focus = XCB_EVENT_MASK_FOCUS_CHANGE;
    xcb_change_window_attributes(x(), display_.root(), XCB_CW_EVENT_MASK, &root);
    if (watched_ != 0) { xcb_change_window_attributes(x(), watched_, XCB_CW_EVENT_MASK, &nothing); }
    if (window != 0) { xcb_change_window_attributes(x(), window, XCB_CW_EVENT_MASK, &focus); }
    watched_ = window;
    xcb_flush(x());
}

}  // namespace brindlehum
