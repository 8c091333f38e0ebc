// Opens, draws and closes the windows of effects.
#include "effect_windows.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "base/error.h"

namespace brindlehum {
namespace {

constexpr double lookSeconds = 1.0 / 30;

// Whose code runs, for as long as it does.
class Busy {
public:
    Busy(std::atomic<const char*>& who, const std::string& lastWords) : who_(who) { who_ = lastWords.c_str(); }
    ~Busy() { who_ = nullptr; }
    Busy(const Busy&) = delete;
    Busy& operator=(const Busy&) = delete;

private:
    std::atomic<const char*>& who_;
};

}  // namespace

void EffectWindows::open(const UUID& id, uint64_t parent, double scale) {
    close(id);
    Window& window = windows_[id];
    window.parent = parent;
    window.scale = scale;
    window.lastWords = nlohmann::json({{"is", "crash"}, {"window", id.string()}}).dump();
    window.lastWords.insert(0, 1, '\n').append(1, '\n');
    if (!looks_) {
        looks_ = loop_.every(lookSeconds, [this] { look(); });
    }
    look();
}

void EffectWindows::close(const UUID& id) {
    const auto found = windows_.find(id);
    if (found == windows_.end()) { return; }
    {
        const Busy busy(busy_, found->second.lastWords);
        found->second.window.reset();
    }
    windows_.erase(found);
    if (windows_.empty()) { looks_.reset(); }
}

void EffectWindows::show(const UUID& id, const std::string& symbol, double value) {
    const auto found = windows_.find(id);
    if (found == windows_.end() || !found->second.window) { return; }
    const auto& controls = found->second.info.controls;
    const auto control = std::ranges::find(controls, symbol, &PluginControl::symbol);
    if (control == controls.end()) { return; }
    const Busy busy(busy_, found->second.lastWords);
    found->second.window->show(size_t(control - controls.begin()), value);
}

void EffectWindows::showBypassed(const UUID& id, bool on) {
    const auto found = windows_.find(id);
    if (found == windows_.end() || !found->second.window) { return; }
    const Busy busy(busy_, found->second.lastWords);
    found->second.window->showBypassed(on);
}

void EffectWindows::follow(const InsertRack* rack) {
    rack_ = rack;
    look();
}

void EffectWindows::look() {
    for (auto& [id, window] : windows_) {
        InsertRack::Running now = rack_ ? rack_->running(id) : InsertRack::Running();
        const Busy busy(busy_, window.lastWords);
        if (now.unit != window.unit) {
            window.window.reset();
            window.unit = std::move(now.unit);
            window.info = now.info ? *now.info : PluginInfo();
            reopen(id, window);
        }
        if (!window.window) { continue; }
        window.window->idle();
        tellSize(id, window);
    }
}

void EffectWindows::reopen(const UUID& id, Window& window) {
    window.told = {};
    if (!window.unit || window.unit->instances.empty()) { return; }
    PluginWindowPlace place{window.parent, window.scale, {}, {}, {}, {}};
    place.onSet = [this, id, controls = window.info.controls](size_t control, double value) {
        tell_({{"is", "set"}, {"id", id.string()}, {"symbol", controls[control].symbol}, {"value", value}});
    };
    place.onBypass = [this, id](bool on) { tell_({{"is", "bypass"}, {"id", id.string()}, {"on", on}}); };
    place.onFile = [this, id](const std::string& uri, const std::string& path) {
        tell_({{"is", "file"}, {"id", id.string()}, {"uri", uri}, {"path", path}});
    };
    place.onMessage = [this, id, unit = std::weak_ptr(window.unit)](std::span<const uint8_t> message) {
        const auto running = unit.lock();
        if (!running) { return; }
        for (const auto& each : running->instances) { each->sendMessage(message); }
        tell_({{"is", "edited"}});
    };
    try {
        window.window = window.unit->instances.front()->openWindow(window.info, place);
        window.window->showBypassed(window.unit->isBypassed);
    } catch (const Error& error) { tell_({{"is", "noWindow"}, {"id", id.string()}, {"why", error.what()}}); }
}

void EffectWindows::tellSize(const UUID& id, Window& window) {
    const PluginWindow::Size size = window.window->size();
    if (size == window.told || size.width == 0) { return; }
    window.told = size;
    tell_({{"is", "window"}, {"id", id.string()}, {"width", size.width}, {"height", size.height}});
}

}  // namespace brindlehum
