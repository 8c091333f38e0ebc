// EffectWindows: the inserts' own windows, inside windows of the monitor's program.
#pragma once

#include <atomic>
#include <functional>
#include <map>
#include <memory>
#include <nlohmann/json_fwd.hpp>
#include <string>

#include "monitor/inserts/insert_rack.h"
#include "platform/main_loop.h"

namespace brindlehum {

// Main thread. A window that is wanted opens as soon as its insert runs, and again when its effect is made anew. What
// is told stands in insert_session.h.
class EffectWindows {
public:
    using Tell = std::function<void(const nlohmann::json&)>;

    EffectWindows(MainLoop& loop, Tell tell) : loop_(loop), tell_(std::move(tell)) {}

    // `parent` is an X11 window of another process, `scale` the pixels of the screen for one of the desktop's.
    void open(const UUID& id, uint64_t parent, double scale);
    void close(const UUID& id);
    void show(const UUID& id, const std::string& symbol, double value);
    void showBypassed(const UUID& id, bool on);
    // The chain that runs now, which must outlive the next call; null for none.
    void follow(const InsertRack* rack);
    // What is to be said when the code of a window has crashed, as a line; null while none runs. Any thread.
    const char* lastWords() const noexcept { return busy_.load(); }

private:
    struct Window {
        uint64_t parent = 0;
        double scale = 1;
        PluginInfo info;
        std::shared_ptr<InsertUnit> unit;  // outlives its window
        std::unique_ptr<PluginWindow> window;
        PluginWindow::Size told;
        std::string lastWords;
    };
    void look();
    void reopen(const UUID& id, Window& window);
    void tellSize(const UUID& id, Window& window);

    MainLoop& loop_;
    const Tell tell_;
    const InsertRack* rack_ = nullptr;
    std::map<UUID, Window> windows_;
    std::atomic<const char*> busy_ = nullptr;
    TimerHandle looks_;
};

}  // namespace brindlehum
