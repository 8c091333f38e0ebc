// WaylandFront: whether a window of Files (Nautilus) has the keyboard, by what Files itself says of it.
#pragma once

#include <QDBusServiceWatcher>
#include <QObject>
#include <QTimer>
#include <map>
#include <set>

#include "accessible_bus.h"
#include "front_window.h"

namespace brindlehum {

// Main thread. Of other programs nothing is heard, so they are never in front here; no window has a place.
class WaylandFront : public QObject, public FrontWindow {
public:
    WaylandFront();
    const Active& active() const override { return active_; }
    bool seesPlaces() const override { return false; }
    void follow(bool /*follows*/) override {}
    const std::vector<DesktopWindow>& windows() const override { return noWindows_; }
    bool hasPopup() const override { return false; }

private:
    // `owner`: the program's own name on the session bus; empty when it has gone.
    void meet(const QString& owner);
    void look();
    void readFrames(const AccessibleRef& program);
    void publish();

    AccessibleBus bus_{QStringLiteral("brindlehum-front")};
    QDBusServiceWatcher service_;
    QTimer again_;
    int looks_ = 0;
    Active program_;
    std::map<AccessibleRef, uint32_t> numbers_;  // of its windows, in the order in which they were seen
    std::set<AccessibleRef> activeFrames_;       // two for a moment while one gives way to the other
    Active active_;
    const std::vector<DesktopWindow> noWindows_;
};

}  // namespace brindlehum
