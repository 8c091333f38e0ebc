// X11Windows: which window is active, and where the windows of its program are.
#pragma once

#include <QObject>
#include <QTimer>
#include <functional>
#include <set>
#include <string>
#include <vector>

#include "platform/applications.h"
#include "platform/file_manager_watch.h"
#include "x11_display.h"

class QSocketNotifier;

namespace brindlehum {

// Main thread. While no program is followed, only changes of the active window and the window list are heard.
class X11Windows : public QObject {
public:
    struct Active {
        xcb_window_t id = 0;
        std::string className;
        uint32_t pid = 0;        // as the window says; 0: it doesn't
        std::string objectPath;  // of the window on the session bus, if its toolkit says so
        std::string busName;
        bool operator==(const Active&) const = default;
    };

    X11Windows();
    bool isConnected() const { return display_.isConnected(); }
    // Now.
    bool isSpaceDown();
    // Whether a compositing manager blends windows, now.
    bool isComposited();
    // All that the window manager manages, topmost first, now.
    std::vector<ApplicationWindow> topLevel();
    std::function<void()> onActive;
    std::function<void()> onWindows;  // of the program that is followed
    std::function<void()> onPopups;

    const Active& active() const { return active_; }
    // From now on also follows the places of all windows, and keeps `windows` for the active program.
    void follow(bool follows);
    // Normal windows of the active program that aren't hidden, topmost first.
    const std::vector<DesktopWindow>& windows() const { return windows_; }
    // A menu, or a small field that takes letters, of the active program is up.
    bool hasPopup() const { return !popups_.empty(); }

private:
    void read();
    void handle(const xcb_generic_event_t& event);
    void readActive();
    void readWindows();
    std::vector<DesktopWindow> listWindows() const;
    void addPopup(xcb_window_t window);

    X11Display display_;
    struct Atoms {
        xcb_atom_t active, stacking, pid, type, normal, tooltip, state, hidden, opacity, frame, shadow, path, bus;
    } atoms_{};
    QSocketNotifier* notifier_ = nullptr;
    QTimer readSoon_;  // a reply may have brought events along, which the notifier doesn't see
    Active active_;
    bool follows_ = false;
    std::vector<DesktopWindow> windows_;
    std::set<xcb_window_t> popups_;
};

}  // namespace brindlehum
