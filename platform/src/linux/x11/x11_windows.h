// X11Windows: which window is active, and where the windows of its program are.
#pragma once

#include <QObject>
#include <QTimer>
#include <set>
#include <vector>

#include "linux/file_manager/front_window.h"
#include "platform/applications.h"
#include "x11_display.h"

class QSocketNotifier;

namespace brindlehum {

// Main thread. While no program is followed, only changes of the active window and the window list are heard.
class X11Windows : public QObject, public FrontWindow {
public:
    X11Windows();
    bool isConnected() const { return display_.isConnected(); }
    // Now.
    bool isSpaceDown();
    double keyRepeatDelay();  // seconds until a held key repeats
    // Whether a compositing manager blends windows, now.
    bool isComposited();
    // All that the window manager manages, topmost first, now.
    std::vector<ApplicationWindow> topLevel();

    const Active& active() const override { return active_; }
    bool seesPlaces() const override { return true; }
    void follow(bool follows) override;
    const std::vector<DesktopWindow>& windows() const override { return windows_; }
    bool hasPopup() const override { return !popups_.empty(); }

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
