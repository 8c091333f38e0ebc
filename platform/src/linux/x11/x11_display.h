// X11Display: one connection to the X server, with what all its users ask for. For one thread.
#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

namespace brindlehum {

struct FreeReply {
    void operator()(void* reply) const { std::free(reply); }
};
// Null when the request failed, as for a window that is gone.
template <typename T>
using XReply = std::unique_ptr<T, FreeReply>;

class X11Display {
public:
    X11Display();
    ~X11Display();
    X11Display(const X11Display&) = delete;
    X11Display& operator=(const X11Display&) = delete;

    bool isConnected() const { return root_ != 0; }
    xcb_connection_t* connection() const { return connection_; }
    xcb_window_t root() const { return root_; }
    xcb_atom_t atom(const char* name) const;
    // Of any type, up to 4 KiB.
    xcb_get_property_cookie_t askProperty(xcb_window_t window, xcb_atom_t property) const;
    std::vector<uint32_t> numbers(xcb_get_property_cookie_t cookie) const;
    std::string text(xcb_get_property_cookie_t cookie) const;
    // The class of WM_CLASS.
    std::string className(xcb_get_property_cookie_t cookie) const;
    std::string windowClass(xcb_window_t window) const { return className(askProperty(window, XCB_ATOM_WM_CLASS)); }
    // The key that gives a blank, 0 if there is none.
    xcb_keycode_t spaceKey() const;
    bool isDown(xcb_keycode_t key) const;
    double keyRepeatDelay() const;  // seconds until a held key repeats

private:
    XReply<xcb_get_property_reply_t> property(xcb_get_property_cookie_t cookie) const;

    xcb_connection_t* connection_;
    xcb_window_t root_ = 0;
};

}  // namespace brindlehum
