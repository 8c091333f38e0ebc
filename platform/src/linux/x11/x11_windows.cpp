// Hears the window manager's properties on the root window, and the moves of windows.
#include "x11_windows.h"

#include <QSocketNotifier>
#include <algorithm>

namespace brindlehum {
namespace {

struct Asked {
    xcb_window_t id;
    xcb_get_property_cookie_t type, state, opacity, frame, shadow;
    xcb_get_geometry_cookie_t geometry;
    xcb_translate_coordinates_cookie_t place;
};

bool has(const std::vector<uint32_t>& values, uint32_t value) {
    return std::ranges::find(values, value) != values.end();
}

}  // namespace

X11Windows::X11Windows() {
    if (!isConnected()) { return; }
    atoms_ = {display_.atom("_NET_ACTIVE_WINDOW"),
              display_.atom("_NET_CLIENT_LIST_STACKING"),
              display_.atom("_NET_WM_PID"),
              display_.atom("_NET_WM_WINDOW_TYPE"),
              display_.atom("_NET_WM_WINDOW_TYPE_NORMAL"),
              display_.atom("_NET_WM_WINDOW_TYPE_TOOLTIP"),
              display_.atom("_NET_WM_STATE"),
              display_.atom("_NET_WM_STATE_HIDDEN"),
              display_.atom("_NET_WM_WINDOW_OPACITY"),
              display_.atom("_NET_FRAME_EXTENTS"),
              display_.atom("_GTK_FRAME_EXTENTS"),
              display_.atom("_GTK_WINDOW_OBJECT_PATH"),
              display_.atom("_GTK_UNIQUE_BUS_NAME")};
    notifier_ = new QSocketNotifier(xcb_get_file_descriptor(display_.connection()), QSocketNotifier::Read, this);
    connect(notifier_, &QSocketNotifier::activated, this, [this] { read(); });
    readSoon_.setSingleShot(true);
    connect(&readSoon_, &QTimer::timeout, this, [this] { read(); });
    follow(false);
    readActive();
    readSoon_.start();
}

bool X11Windows::isSpaceDown() {
    readSoon_.start();
    return display_.isDown(display_.spaceKey());
}

double X11Windows::keyRepeatDelay() {
    readSoon_.start();
    return display_.keyRepeatDelay();
}

// Its owner says so (Extended Window Manager Hints).
bool X11Windows::isComposited() {
    readSoon_.start();
    xcb_connection_t* const connection = display_.connection();
    const auto cookie = xcb_get_selection_owner(connection, display_.atom("_NET_WM_CM_S0"));
    const XReply<xcb_get_selection_owner_reply_t> reply(xcb_get_selection_owner_reply(connection, cookie, nullptr));
    return reply && reply->owner != XCB_NONE;
}

std::vector<ApplicationWindow> X11Windows::topLevel() {
    if (!isConnected()) { return {}; }
    readSoon_.start();
    const auto front = display_.askProperty(display_.root(), atoms_.active);
    const auto stacking = display_.askProperty(display_.root(), atoms_.stacking);
    const auto active = display_.numbers(front);
    auto ids = display_.numbers(stacking);
    std::ranges::reverse(ids);
    std::vector<xcb_get_property_cookie_t> names;
    for (const auto id : ids) { names.push_back(display_.askProperty(id, XCB_ATOM_WM_CLASS)); }
    std::vector<ApplicationWindow> windows;
    for (size_t i = 0; i < ids.size(); ++i) {
        windows.push_back({ids[i], display_.className(names[i]), !active.empty() && active.front() == ids[i]});
    }
    return windows;
}

void X11Windows::follow(bool follows) {
    if (!isConnected()) { return; }
    follows_ = follows;
    const uint32_t mask =
        XCB_EVENT_MASK_PROPERTY_CHANGE | (follows ? uint32_t(XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY) : 0U);
    xcb_change_window_attributes(display_.connection(), display_.root(), XCB_CW_EVENT_MASK, &mask);
    popups_.clear();
    windows_ = follows ? listWindows() : std::vector<DesktopWindow>();
    readSoon_.start();
}

void X11Windows::read() {
    while (const XReply<xcb_generic_event_t> event{xcb_poll_for_event(display_.connection())}) { handle(*event); }
    xcb_flush(display_.connection());
    if (xcb_connection_has_error(display_.connection()) != 0) { notifier_->setEnabled(false); }
}

void X11Windows::handle(const xcb_generic_event_t& event) {
    switch (event.response_type & 0x7f) {
        case XCB_PROPERTY_NOTIFY: {
            const auto changed = reinterpret_cast<const xcb_property_notify_event_t&>(event).atom;
            if (changed == atoms_.active) { readActive(); }
            if (changed == atoms_.stacking && follows_) { readWindows(); }
            break;
        }
        case XCB_MAP_NOTIFY: {
            const auto& map = reinterpret_cast<const xcb_map_notify_event_t&>(event);
            if (map.override_redirect != 0) { addPopup(map.window); }
            break;
        }
        case XCB_UNMAP_NOTIFY:
            if (popups_.erase(reinterpret_cast<const xcb_unmap_notify_event_t&>(event).window) > 0 && onPopups) {
                onPopups();
            }
            break;
        case XCB_CONFIGURE_NOTIFY:
            if (reinterpret_cast<const xcb_configure_notify_event_t&>(event).override_redirect == 0) { readWindows(); }
            break;
        default:
            break;
    }
}

// A window's id begins with the number of its program's connection.
void X11Windows::addPopup(xcb_window_t window) {
    const uint32_t mask = ~xcb_get_setup(display_.connection())->resource_id_mask;
    if ((window & mask) != (active_.id & mask)) { return; }
    if (has(display_.numbers(display_.askProperty(window, atoms_.type)), atoms_.tooltip)) { return; }
    popups_.insert(window);
    if (onPopups) { onPopups(); }
}

void X11Windows::readActive() {
    Active now;
    const auto ids = display_.numbers(display_.askProperty(display_.root(), atoms_.active));
    if (!ids.empty() && ids.front() != 0) {
        now.id = ids.front();
        const auto name = display_.askProperty(now.id, XCB_ATOM_WM_CLASS);
        const auto pid = display_.askProperty(now.id, atoms_.pid);
        const auto path = display_.askProperty(now.id, atoms_.path);
        const auto bus = display_.askProperty(now.id, atoms_.bus);
        now.className = display_.className(name);
        const auto pids = display_.numbers(pid);
        now.pid = pids.empty() ? 0 : pids.front();
        now.objectPath = display_.text(path);
        now.busName = display_.text(bus);
    }
    if (now == active_) { return; }
    active_ = now;
    if (onActive) { onActive(); }
}

void X11Windows::readWindows() {
    auto now = listWindows();
    const auto same = [](const DesktopWindow& a, const DesktopWindow& b) {
        return a.id == b.id && a.frame == b.frame && a.opacity == b.opacity;
    };
    if (std::ranges::equal(now, windows_, same)) { return; }
    windows_ = std::move(now);
    if (onWindows) { onWindows(); }
}

// All requests of a step are sent before the first reply is waited for.
std::vector<DesktopWindow> X11Windows::listWindows() const {
    xcb_connection_t* connection = display_.connection();
    auto ids = display_.numbers(display_.askProperty(display_.root(), atoms_.stacking));
    std::ranges::reverse(ids);
    std::vector<xcb_get_property_cookie_t> names;
    for (const auto id : ids) { names.push_back(display_.askProperty(id, XCB_ATOM_WM_CLASS)); }
    std::vector<Asked> asked;
    for (size_t i = 0; i < ids.size(); ++i) {
        if (display_.className(names[i]) != active_.className) { continue; }
        const auto ask = [&](xcb_atom_t property) { return display_.askProperty(ids[i], property); };
        asked.push_back({ids[i], ask(atoms_.type), ask(atoms_.state), ask(atoms_.opacity), ask(atoms_.frame),
                         ask(atoms_.shadow), xcb_get_geometry(connection, ids[i]),
                         xcb_translate_coordinates(connection, ids[i], display_.root(), 0, 0)});
    }
    std::vector<DesktopWindow> windows;
    for (const Asked& window : asked) {
        const auto types = display_.numbers(window.type);
        const auto states = display_.numbers(window.state);
        const auto opacity = display_.numbers(window.opacity);
        const auto frame = display_.numbers(window.frame);    // left, right, top, bottom around the window
        const auto shadow = display_.numbers(window.shadow);  // the same, inside it
        const XReply<xcb_get_geometry_reply_t> size(xcb_get_geometry_reply(connection, window.geometry, nullptr));
        const XReply<xcb_translate_coordinates_reply_t> place(
            xcb_translate_coordinates_reply(connection, window.place, nullptr));
        const bool isNormal = types.empty() || has(types, atoms_.normal);
        if (!isNormal || has(states, atoms_.hidden) || !size || !place) { continue; }
        const auto edge = [&](size_t side) {
            return (frame.size() == 4 ? int(frame[side]) : 0) - (shadow.size() == 4 ? int(shadow[side]) : 0);
        };
        windows.push_back({window.id,
                           {place->dst_x - edge(0), place->dst_y - edge(2), size->width + edge(0) + edge(1),
                            size->height + edge(2) + edge(3)},
                           opacity.empty() ? 1 : opacity.front() / double(UINT32_MAX)});
    }
    return windows;
}

}  // namespace brindlehum
