// X11Applications: the windows of an X11 desktop, and keys pressed in them.
#pragma once

#include "platform/applications.h"
#include "x11_keys.h"
#include "x11_windows.h"

namespace brindlehum {

class X11Applications : public Applications {
public:
    // Both outlive it.
    X11Applications(X11Windows& windows, MainLoop& loop) : windows_(windows), keys_(loop) {}
    KeyAccess access() const override { return keys_.isReady() ? KeyAccess::granted : KeyAccess::refused; }
    std::vector<ApplicationWindow> windows() override { return windows_.topLevel(); }
    void press(const ApplicationWindow& window, const Keystroke& stroke,
               std::function<void(KeyOutcome)> done) override {
        keys_.press({xcb_window_t(window.id), window.className}, stroke, std::move(done));
    }
    void finish() override { keys_.finish(); }

private:
    X11Windows& windows_;
    X11Keys keys_;
};

}  // namespace brindlehum
