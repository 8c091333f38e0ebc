// PluginWindow: an effect's own window, drawn by its maker inside a window of ours.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string>

namespace brindlehum {

// Where it is shown, and what becomes of what its user does in it.
struct PluginWindowPlace {
    uint64_t parent = 0;                                      // X11 window, which may belong to another process
    double scale = 1;                                         // pixels of the screen for one of the desktop's
    std::function<void(size_t control, double value)> onSet;  // of PluginInfo::controls
    std::function<void(bool on)> onBypass;                    // its switch for that
    std::function<void(const std::string& uri, const std::string& storedPath)> onFile;  // of PluginInfo::files
    std::function<void(std::span<const uint8_t> message)> onMessage;  // for PluginInstance::sendMessage
};

// Main thread.
class PluginWindow {
public:
    struct Size {
        int width = 0, height = 0;  // pixels of the screen; 0 while it has none
        bool operator==(const Size&) const = default;
    };

    virtual ~PluginWindow() = default;
    // Shows what a control has been set to. What came from the window itself comes back once and is left out.
    virtual void show(size_t control, double value) = 0;
    virtual void showBypassed(bool on) = 0;
    // Lets it draw and shows it what its effect tells; to be called some 30 times a second.
    virtual void idle() = 0;
    virtual Size size() const = 0;
};

}  // namespace brindlehum
