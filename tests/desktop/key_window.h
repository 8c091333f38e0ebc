// KeyWindow: a window of another program on an X11 desktop, which notes the keys that it gets.
#pragma once

#include <poll.h>
#include <xcb/xcb.h>
#include <xcb/xinput.h>
#include <xcb/xtest.h>

#define explicit explicit_  // a field's name in this C header
#include <xcb/xkb.h>
#undef explicit

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace brindlehum::test {

template <typename Reply>
auto owned(Reply* reply) {
    return std::unique_ptr<Reply, decltype(&std::free)>(reply, &std::free);
}

class KeyWindow {
public:
    using Clock = std::chrono::steady_clock;
    struct Key {
        bool isPress;
        xcb_keycode_t code;
        uint16_t state;
        Clock::time_point at;
    };

    explicit KeyWindow(const std::string& className) {
        // Else the state of a key wouldn't name the layout.
        owned(xcb_xkb_use_extension_reply(x_, xcb_xkb_use_extension(x_, 1, 0), nullptr));
        const auto* screen = xcb_setup_roots_iterator(xcb_get_setup(x_)).data;
        root_ = screen->root;
        id_ = xcb_generate_id(x_);
        const uint32_t mask = XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_KEY_RELEASE | XCB_EVENT_MASK_FOCUS_CHANGE;
        xcb_create_window(x_, XCB_COPY_FROM_PARENT, id_, root_, 0, 0, 300, 200, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                          screen->root_visual, XCB_CW_EVENT_MASK, &mask);
        const std::string names = className + '\0' + className + '\0';
        xcb_change_property(x_, XCB_PROP_MODE_REPLACE, id_, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 8,
                            uint32_t(names.size()), names.data());
        xcb_map_window(x_, id_);
        xcb_flush(x_);
        thread_ = std::thread([this] { listen(); });
    }
    ~KeyWindow() {
        ends_ = true;
        thread_.join();
        xcb_disconnect(x_);
    }

    std::vector<Key> take() {
        const std::lock_guard guard(lock_);
        return std::exchange(keys_, {});
    }
    size_t count() {
        const std::lock_guard guard(lock_);
        return keys_.size();
    }
    // When it last got the focus.
    Clock::time_point focusedAt() {
        const std::lock_guard guard(lock_);
        return focusedAt_;
    }
    bool hasFocus() const {
        return owned(xcb_get_input_focus_reply(x_, xcb_get_input_focus(x_), nullptr))->focus == id_;
    }
    void activate() const {
        xcb_client_message_event_t message{};
        message.response_type = XCB_CLIENT_MESSAGE;
        message.format = 32;
        message.window = id_;
        message.type =
            owned(xcb_intern_atom_reply(x_, xcb_intern_atom(x_, 0, 18, "_NET_ACTIVE_WINDOW"), nullptr))->atom;
        message.data.data32[0] = 2;
        xcb_send_event(x_, 0, root_, XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                       reinterpret_cast<const char*>(&message));
        xcb_flush(x_);
    }
    // Without asking the window manager.
    void seizeFocus() const {
        xcb_set_input_focus(x_, XCB_INPUT_FOCUS_PARENT, id_, XCB_CURRENT_TIME);
        xcb_flush(x_);
    }
    bool seizeKeyboard() const {
        const auto cookie = xcb_grab_keyboard(x_, 0, id_, XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
        return owned(xcb_grab_keyboard_reply(x_, cookie, nullptr))->status == XCB_GRAB_STATUS_SUCCESS;
    }
    void releaseKeyboard() const {
        xcb_ungrab_keyboard(x_, XCB_CURRENT_TIME);
        xcb_flush(x_);
    }
    // Moves a key of the keyboard itself, or as a program does.
    void finger(xcb_keycode_t key, bool down) const {
        const uint8_t base = xcb_get_extension_data(x_, &xcb_input_id)->first_event;
        const uint8_t type = uint8_t(base + (down ? XCB_INPUT_DEVICE_KEY_PRESS : XCB_INPUT_DEVICE_KEY_RELEASE));
        const uint8_t device = keyboard();
        free(xcb_input_open_device_reply(x_, xcb_input_open_device(x_, device), nullptr));
        xcb_test_fake_input(x_, type, key, 0, XCB_NONE, 0, 0, device);
        modifiers();
    }
    void program(xcb_keycode_t key, bool down) const {
        xcb_test_fake_input(x_, down ? XCB_KEY_PRESS : XCB_KEY_RELEASE, key, 0, XCB_NONE, 0, 0, 0);
        modifiers();
    }
    uint16_t modifiers() const {
        return owned(xcb_query_pointer_reply(x_, xcb_query_pointer(x_, root_), nullptr))->mask;
    }

    // The layout as the core protocol has it: two signs for each key, the same of a second layout, and
    // four more behind AltGr.
    void readLayout() {
        const xcb_setup_t* setup = xcb_get_setup(x_);
        first_ = setup->min_keycode;
        const auto count = uint8_t(setup->max_keycode - first_ + 1);
        const auto reply =
            owned(xcb_get_keyboard_mapping_reply(x_, xcb_get_keyboard_mapping(x_, first_, count), nullptr));
        perKey_ = reply->keysyms_per_keycode;
        const auto* symbols = xcb_get_keyboard_mapping_keysyms(reply.get());
        symbols_.assign(symbols, symbols + size_t(count) * perKey_);
    }
    xcb_keysym_t symbol(xcb_keycode_t code, uint16_t state) const {
        const auto at = [&](size_t index) {
            return index < perKey_ ? symbols_[size_t(code - first_) * perKey_ + index] : 0;
        };
        const bool isPad = at(1) >= 0xff80 && at(1) <= 0xffb9;
        const bool second = (state & XCB_MOD_MASK_SHIFT) != 0 || (isPad && (state & XCB_MOD_MASK_2) != 0);
        const size_t group = (state >> 13 & 3) != 0 ? 2 : 0;
        return at((second ? 1 : 0) + group + ((state & XCB_MOD_MASK_5) != 0 ? 4 : 0));
    }
    bool hasSymbol(xcb_keysym_t wanted) const { return std::ranges::find(symbols_, wanted) != symbols_.end(); }

private:
    void listen() {
        while (!ends_) {
            pollfd source{xcb_get_file_descriptor(x_), POLLIN, 0};
            poll(&source, 1, 2);  // a reply may have brought events along
            while (const auto event = owned(xcb_poll_for_event(x_))) {
                const uint8_t type = event->response_type & 0x7f;
                const std::lock_guard guard(lock_);
                if (type == XCB_FOCUS_IN) { focusedAt_ = Clock::now(); }
                if (type != XCB_KEY_PRESS && type != XCB_KEY_RELEASE) { continue; }
                const auto& key = reinterpret_cast<const xcb_key_press_event_t&>(*event);
                keys_.push_back({type == XCB_KEY_PRESS, key.detail, key.state, Clock::now()});
            }
        }
    }
    // The one that no program moves.
    uint8_t keyboard() const {
        const auto list = owned(xcb_input_list_input_devices_reply(x_, xcb_input_list_input_devices(x_), nullptr));
        auto names = xcb_input_list_input_devices_names_iterator(list.get());
        const auto* devices = xcb_input_list_input_devices_devices(list.get());
        for (int i = 0; names.rem > 0; ++i, xcb_str_next(&names)) {
            const std::string name(xcb_str_name(names.data), size_t(xcb_str_name_length(names.data)));
            if (devices[i].device_use == XCB_INPUT_DEVICE_USE_IS_X_EXTENSION_KEYBOARD &&
                name.find("XTEST") == std::string::npos) {
                return devices[i].device_id;
            }
        }
        return 0;
    }

    xcb_connection_t* x_ = xcb_connect(nullptr, nullptr);
    xcb_window_t root_ = 0, id_ = 0;
    std::mutex lock_;
    std::vector<Key> keys_;
    Clock::time_point focusedAt_;
    std::vector<xcb_keysym_t> symbols_;
    size_t perKey_ = 1;
    xcb_keycode_t first_ = 0;
    std::atomic<bool> ends_ = false;
    std::thread thread_;
};

}  // namespace brindlehum::test
